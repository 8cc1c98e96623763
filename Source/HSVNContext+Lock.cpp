#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Lock.h"

void HSVNContext::lock(const HSVNTargets& targets, const HSVNLockChoices& choices)
{
    HSVNOperation operation{*this, "lock", {{"targets", targets.texts()}}};
    HSVNLockTargets(operation, HSVNChangedArray(operation, targets.texts()), choices);
}

void HSVNContext::unlock(const HSVNTargets& targets, const HSVNUnlockChoices& choices)
{
    HSVNOperation operation{*this, "unlock", {{"targets", targets.texts()}}};
    HSVNUnlockTargets(operation, HSVNChangedArray(operation, targets.texts()), choices);
}
