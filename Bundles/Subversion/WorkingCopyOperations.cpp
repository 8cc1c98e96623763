#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "OwnDatabases.h"
#include "StillbornAreas.h"
#include "WorkingCopyFormat.h"

#include <cstring>

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR < 7
bool isBelowWorkingCopy(const char* path, apr_pool_t* pool)
{
    while (std::strcmp(path, "/") != 0) {
        path = svn_path_dirname(path, pool);
        if (statedFormat(path, pool) > 0) {
            return true;
        }
    }
    return false;
}
#endif

svn_error_t* add3(const char* path, svn_boolean_t recursive, svn_boolean_t force, svn_boolean_t noIgnore,
                  svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    svn_error_t* error = svn_client_add3(path, recursive, force, noIgnore, ctx, pool);
#if HSVN_LINE_MINOR < 7
    // In a working copy, but in a folder that has no administrative area: newer lines look for the folder's entry.
    if (error != nullptr && error->apr_err == SVN_ERR_WC_NOT_DIRECTORY && isBelowWorkingCopy(path, pool)) {
        return withCode(SVN_ERR_ENTRY_NOT_FOUND, error);
    }
#endif
    return smoothed(error);
}

svn_error_t* checkout2(svn_revnum_t* result, const char* url, const char* path, const svn_opt_revision_t* pegRevision,
                       const svn_opt_revision_t* revision, svn_boolean_t recurse, svn_boolean_t ignoreExternals,
                       svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    HSVN_CANONICAL_PATH(path, pool);
    const auto wanted = revisionForTarget(url, revision);
    removeStillbornArea(path, pool);
    return smoothed(svn_client_checkout2(result, url, path, pegRevision, &wanted, recurse, ignoreExternals, ctx, pool));
}

svn_error_t* cleanup(const char* folder, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(folder, pool);
    svn_error_t* const error = cleanUpAnyFolder(ctx, pool, [&] { return svn_client_cleanup(folder, ctx, pool); });
    return formatChecked(folder, smoothed(error), pool);
}

svn_error_t* resolved(const char* path, svn_boolean_t recursive, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    return smoothed(svn_client_resolved(path, recursive, ctx, pool));
}

svn_error_t* revert(const apr_array_header_t* paths, svn_boolean_t recursive, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(canonicalizeAll(&paths, TargetKind::Path, pool));
    return smoothed(svn_client_revert(paths, recursive, ctx, pool));
}

/// Newer lines refuse an update of nothing; older ones answer as many revisions.
svn_error_t* updateOfNothing(apr_array_header_t** results, apr_pool_t* pool)
{
    *results = apr_array_make(pool, 0, sizeof(svn_revnum_t));
    return SVN_NO_ERROR;
}

svn_error_t* update2(apr_array_header_t** results, const apr_array_header_t* paths, const svn_opt_revision_t* revision,
                     svn_boolean_t recurse, svn_boolean_t ignoreExternals, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    if (paths->nelts == 0) {
        return updateOfNothing(results, pool);
    }
    SVN_ERR(canonicalizeAll(&paths, TargetKind::Path, pool));
    return smoothed(svn_client_update2(results, paths, revision, recurse, ignoreExternals, ctx, pool));
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* checkout3(svn_revnum_t* result, const char* url, const char* path, const svn_opt_revision_t* pegRevision,
                       const svn_opt_revision_t* revision, svn_depth_t depth, svn_boolean_t ignoreExternals,
                       svn_boolean_t allowObstructions, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    HSVN_CANONICAL_PATH(path, pool);
    const auto wanted = revisionForTarget(url, revision);
    removeStillbornArea(path, pool);
    return smoothed(svn_client_checkout3(result, url, path, pegRevision, &wanted, depth, ignoreExternals,
                                         allowObstructions, ctx, pool));
}

svn_error_t* update3(apr_array_header_t** results, const apr_array_header_t* paths, const svn_opt_revision_t* revision,
                     svn_depth_t depth, svn_boolean_t depthIsSticky, svn_boolean_t ignoreExternals,
                     svn_boolean_t allowObstructions, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    if (paths->nelts == 0) {
        return updateOfNothing(results, pool);
    }
    SVN_ERR(canonicalizeAll(&paths, TargetKind::Path, pool));
    SVN_ERR(smoothed(svn_client_update3(results, paths, revision, depth, depthIsSticky, ignoreExternals,
                                        allowObstructions, ctx, pool)));
    // What is taken out of the working copy has no revision: 1.6 leaves the numbers as it finds them.
    for (int index = 0; depth == svn_depth_exclude && index < (*results)->nelts; ++index) {
        APR_ARRAY_IDX(*results, index, svn_revnum_t) = SVN_INVALID_REVNUM;
    }
    return SVN_NO_ERROR;
}
#endif

} // namespace

void fillWorkingCopyOperations(HSVNBundleEntryPoints& table)
{
    table.client_add3 = add3;
    table.client_checkout2 = checkout2;
    table.client_cleanup = cleanup;
    table.client_resolved = resolved;
    table.client_revert = revert;
    table.client_update2 = update2;
#if HSVN_LINE_MINOR >= 5
    table.client_checkout3 = checkout3;
    table.client_update3 = update3;
#endif
}

} // namespace HSVNAdapter
