#include "Internal/Lock.h"

void HSVNLockTargets(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNLockChoices& choices)
{
    const char* const comment = choices.comment ? operation.cString(*choices.comment) : nullptr;
    const auto newest = operation.newest(&HSVNCommitFunctions::client_lock);
    const auto lock = newest ? newest : operation->client_lock;
    operation.check(lock(targets, comment, choices.steal, operation.ctx(), operation.pool()));
}

void HSVNUnlockTargets(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNUnlockChoices& choices)
{
    const auto newest = operation.newest(&HSVNCommitFunctions::client_unlock);
    const auto unlock = newest ? newest : operation->client_unlock;
    operation.check(unlock(targets, choices.breakLocks, operation.ctx(), operation.pool()));
}
