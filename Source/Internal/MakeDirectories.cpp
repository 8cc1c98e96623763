#include "Internal/MakeDirectories.h"

HSVNCommitResult HSVNMakeDirectories(HSVNRevisionChange& change, const apr_array_header_t* targets,
                                     const HSVNMakeDirectoriesChoices& choices)
{
    auto& operation = change.operation();
    if (const auto make = operation.newest(&HSVNCommitFunctions::client_mkdir)) {
        return change.finish(make(targets, choices.makeParents, change.properties(), HSVNRevisionChange::noted, &change,
                                  operation.ctx(), operation.pool()));
    }
    operation.refuse(choices.makeParents, "makeParents");
    change.refuseProperties();
    svn_commit_info_t* info = nullptr;
    svn_error_t* const error = operation->client_mkdir2(&info, targets, operation.ctx(), operation.pool());
    return change.finish(error, info);
}
