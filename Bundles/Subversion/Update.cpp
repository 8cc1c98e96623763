#include "CanonicalPaths.h"
#include "ConflictSettler.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "WorkingCopyFormat.h"

namespace HSVNAdapter {
namespace {

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

#if HSVN_LINE_MINOR >= 5 && HSVN_LINE_MINOR < 7
/// 1.6 removes a whole working copy that is to leave its own root out.
svn_error_t* refuseRoots(const apr_array_header_t* paths, apr_pool_t* pool)
{
    for (int index = 0; index < paths->nelts; ++index) {
        const char* const path = APR_ARRAY_IDX(paths, index, const char*);
        if (statedFormat(path, pool) > 0 && statedFormat(svn_path_dirname(path, pool), pool) == 0) {
            return svn_error_createf(SVN_ERR_UNSUPPORTED_FEATURE, nullptr,
                                     "Cannot exclude '%s': it is the root of a working copy", path);
        }
    }
    return SVN_NO_ERROR;
}
#endif

#if HSVN_LINE_MINOR >= 5
svn_error_t* update3(apr_array_header_t** results, const apr_array_header_t* paths, const svn_opt_revision_t* revision,
                     svn_depth_t depth, svn_boolean_t depthIsSticky, svn_boolean_t ignoreExternals,
                     svn_boolean_t allowObstructions, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    if (paths->nelts == 0) {
        return updateOfNothing(results, pool);
    }
    SVN_ERR(canonicalizeAll(&paths, TargetKind::Path, pool));
#if HSVN_LINE_MINOR < 7
    if (depth == svn_depth_exclude) {
        SVN_ERR(refuseRoots(paths, pool));
    }
#endif
    SVN_ERR(smoothed(svn_client_update3(results, paths, revision, depth, depthIsSticky, ignoreExternals,
                                        allowObstructions, ctx, pool)));
    // What is taken out of the working copy has no revision: 1.6 leaves the numbers as it finds them.
    for (int index = 0; depth == svn_depth_exclude && index < (*results)->nelts; ++index) {
        APR_ARRAY_IDX(*results, index, svn_revnum_t) = SVN_INVALID_REVNUM;
    }
    return SVN_NO_ERROR;
}
#endif

#if HSVN_LINE_MINOR >= 7
svn_error_t* update(apr_array_header_t** revisions, const apr_array_header_t* targets,
                    const svn_opt_revision_t* revision, const HSVNUpdateFunctions::Updating* choices,
                    svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTargets(&targets, pool));
    const ConflictSettler settler{ctx, choices->choosing};
    return svn_client_update4(revisions, targets, revision, choices->depth, choices->depthIsSticky,
                              choices->ignoreExternals, choices->allowObstructions, choices->addsAsModification,
                              choices->makeParents, ctx, pool);
}
#endif

} // namespace

void fillUpdate(HSVNBundleEntryPoints& table)
{
    table.client_update2 = update2;
#if HSVN_LINE_MINOR >= 5
    table.client_update3 = update3;
#endif
}

void fillUpdate([[maybe_unused]] HSVNUpdateFunctions& table)
{
#if HSVN_LINE_MINOR >= 7
    table.client_update = update;
#endif
}

} // namespace HSVNAdapter
