#include "CanonicalPaths.h"
#include "CommitInformation.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTargets.h"
#include "LineEnds.h"
#include "Notifications.h"

namespace HSVNAdapter {
namespace {

svn_error_t* commit3(svn_commit_info_t** info, const apr_array_header_t* targets, svn_boolean_t recurse,
                     svn_boolean_t keepLocks, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    const LogMessageTap messages{ctx};
    SVN_ERR(canonicalizeAll(&targets, TargetKind::Path, pool));
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
    const LogMessageTap messages{ctx};
    SVN_ERR(canonicalizeAll(&targets, TargetKind::Path, pool));
    SVN_ERR(settleWalkDepth(&depth));
#if HSVN_LINE_MINOR < 6
    const CommitTap tap{ctx, targets, depth == svn_depth_infinity, pool};
#endif
    return smoothed(svn_client_commit4(info, targets, depth, keepLocks, keepChangelists, changelists,
                                       revisionProperties, ctx, pool));
}
#endif

svn_error_t* import2(svn_commit_info_t** info, const char* path, const char* url, svn_boolean_t nonRecursive,
                     svn_boolean_t noIgnore, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    const LogMessageTap messages{ctx};
    HSVN_CANONICAL_PATH(path, pool);
    HSVN_CANONICAL_URL(url, pool);
    return smoothed(svn_client_import2(info, path, url, nonRecursive, noIgnore, ctx, pool));
}

svn_error_t* mkdir2(svn_commit_info_t** info, const apr_array_header_t* paths, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    const LogMessageTap messages{ctx};
    SVN_ERR(canonicalizeAll(&paths, TargetKind::PathOrURL, pool));
    SVN_ERR(checkNewFolders(paths));
    return paths->nelts == 0 ? SVN_NO_ERROR : smoothed(svn_client_mkdir2(info, paths, ctx, pool));
}

} // namespace

void fillCommitOperations(HSVNBundleEntryPoints& table)
{
    table.client_commit3 = commit3;
#if HSVN_LINE_MINOR >= 5
    table.client_commit4 = commit4;
#endif
    table.client_import2 = import2;
    table.client_mkdir2 = mkdir2;
}

} // namespace HSVNAdapter
