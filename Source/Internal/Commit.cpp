#include "Internal/Commit.h"

#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"

namespace {

svn_error_t* callPlace(HSVNRevisionChange& change, svn_commit_info_t** info, const apr_array_header_t* targets,
                       const HSVNCommitChoices& choices)
{
    auto& operation = change.operation();
    operation.refuse(choices.includeExternals, "includeExternals");
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return operation->client_commit4(info, targets, HSVNDepthForSubversion(choices.depth), choices.keepLocks,
                                         choices.keepChangelists, HSVNFilterArray(operation, choices.changelists),
                                         change.properties(), operation.ctx(), operation.pool());
    }
    operation.refuse(choices.keepChangelists, "keepChangelists");
    operation.refuse(!choices.changelists.empty(), "changelists");
    change.refuseProperties();
    return operation->client_commit3(info, targets, HSVNRecurseForDepth(choices.depth, HSVNDepthEmpty),
                                     choices.keepLocks, operation.ctx(), operation.pool());
}

} // namespace

HSVNCommitResult HSVNCommit(HSVNRevisionChange& change, const apr_array_header_t* targets,
                            const HSVNCommitChoices& choices)
{
    auto& operation = change.operation();
    if (const auto commit = operation.newest(&HSVNCommitFunctions::client_commit)) {
        return change.finish(commit(targets, HSVNDepthForSubversion(choices.depth), choices.keepLocks,
                                    choices.keepChangelists, choices.includeExternals,
                                    HSVNFilterArray(operation, choices.changelists), change.properties(),
                                    HSVNRevisionChange::noted, &change, operation.ctx(), operation.pool()));
    }
    svn_commit_info_t* info = nullptr;
    svn_error_t* const error = callPlace(change, &info, targets, choices);
    return change.finish(error, info);
}
