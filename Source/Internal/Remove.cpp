#include "Internal/Remove.h"

HSVNCommitResult HSVNRemove(HSVNRevisionChange& change, const apr_array_header_t* targets,
                            const HSVNDeleteChoices& choices, apr_pool_t* pool)
{
    auto& operation = change.operation();
    if (const auto remove = operation.newest(&HSVNCommitFunctions::client_delete)) {
        return change.finish(remove(targets, choices.force, choices.keepLocal, change.properties(),
                                    HSVNRevisionChange::received, &change, operation.ctx(), pool));
    }
    operation.refuse(choices.keepLocal, "keepLocal");
    change.refuseProperties();
    svn_commit_info_t* info = nullptr;
    svn_error_t* const error = operation->client_delete2(&info, targets, choices.force, operation.ctx(), pool);
    return change.finish(error, info);
}
