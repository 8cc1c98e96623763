#include "CanonicalPaths.h"
#include "CommitInformation.h"
#include "CommitQuestions.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "Notifications.h"
#include "ObstructedParents.h"

namespace HSVNAdapter {
namespace {

svn_error_t* commit3(svn_commit_info_t** info, const apr_array_header_t* targets, svn_boolean_t recurse,
                     svn_boolean_t keepLocks, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    CommitQuestions questions{ctx};
    SVN_ERR(canonicalizeAll(&targets, TargetKind::Path, pool));
    SVN_ERR(refuseBelowDirectoryLinks(targets, pool));
#if HSVN_LINE_MINOR < 6
    const CommitTap tap{ctx, targets, recurse, pool};
#endif
    return smoothed(svn_client_commit3(info, targets, recurse, keepLocks, ctx, pool));
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* commit4(svn_commit_info_t** info, const apr_array_header_t* targets, svn_depth_t depth,
                     svn_boolean_t keepLocks, svn_boolean_t keepChangelists, const apr_array_header_t* changelists,
                     const apr_hash_t* revisionProperties, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    CommitQuestions questions{ctx};
    SVN_ERR(canonicalizeAll(&targets, TargetKind::Path, pool));
    SVN_ERR(refuseBelowDirectoryLinks(targets, pool));
    SVN_ERR(settleWalkDepth(&depth));
#if HSVN_LINE_MINOR < 6
    const CommitTap tap{ctx, targets, depth == svn_depth_infinity, pool};
#endif
    return smoothed(svn_client_commit4(info, targets, depth, keepLocks, keepChangelists, changelists,
                                       revisionProperties, ctx, pool));
}
#endif

#if HSVN_LINE_MINOR >= 8
svn_error_t* commit(const apr_array_header_t* targets, svn_depth_t depth, svn_boolean_t keepLocks,
                    svn_boolean_t keepChangelists, svn_boolean_t includeExternals,
                    const apr_array_header_t* changelists, const apr_hash_t* revisionProperties,
                    svn_commit_callback2_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    CommitQuestions questions{ctx};
    SVN_ERR(checkLocalTargets(&targets, pool));
    SVN_ERR(refuseBelowDirectoryLinks(targets, pool));
    SVN_ERR(settleWalkDepth(&depth));
    return svn_client_commit6(targets, depth, keepLocks, keepChangelists, TRUE, includeExternals, includeExternals,
                              changelists, revisionProperties, receiver, baton, ctx, pool);
}
#endif

} // namespace

void fillCommit(HSVNBundleEntryPoints& table)
{
    table.client_commit3 = commit3;
#if HSVN_LINE_MINOR >= 5
    table.client_commit4 = commit4;
#endif
}

void fillCommit([[maybe_unused]] HSVNCommitFunctions& table)
{
#if HSVN_LINE_MINOR >= 8
    table.client_commit = commit;
#endif
}

} // namespace HSVNAdapter
