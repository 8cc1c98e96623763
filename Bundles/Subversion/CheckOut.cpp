#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "StillbornAreas.h"

namespace HSVNAdapter {
namespace {

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

#if HSVN_LINE_MINOR >= 5
/// A check-out between canonical places.
svn_error_t* checkOut(svn_revnum_t* result, const char* url, const char* path, const svn_opt_revision_t* pegRevision,
                      const svn_opt_revision_t* revision, svn_depth_t depth, svn_boolean_t ignoreExternals,
                      svn_boolean_t allowObstructions, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkWalkDepth(depth));
    const auto wanted = revisionForTarget(url, revision);
    removeStillbornArea(path, pool);
    return svn_client_checkout3(result, url, path, pegRevision, &wanted, depth, ignoreExternals, allowObstructions, ctx,
                                pool);
}

svn_error_t* checkout3(svn_revnum_t* result, const char* url, const char* path, const svn_opt_revision_t* pegRevision,
                       const svn_opt_revision_t* revision, svn_depth_t depth, svn_boolean_t ignoreExternals,
                       svn_boolean_t allowObstructions, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    HSVN_CANONICAL_PATH(path, pool);
    return smoothed(
        checkOut(result, url, path, pegRevision, revision, depth, ignoreExternals, allowObstructions, ctx, pool));
}

svn_error_t* checkout(svn_revnum_t* result, const char* url, const char* path, const svn_opt_revision_t* pegRevision,
                      const svn_opt_revision_t* revision, const HSVNUpdateFunctions::Updating* choices,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(checkLocalTarget(&path, pool));
    return checkOut(result, url, path, pegRevision, revision, choices->depth, choices->ignoreExternals,
                    choices->allowObstructions, ctx, pool);
}
#endif

} // namespace

void fillCheckOut(HSVNBundleEntryPoints& table)
{
    table.client_checkout2 = checkout2;
#if HSVN_LINE_MINOR >= 5
    table.client_checkout3 = checkout3;
#endif
}

void fillCheckOut([[maybe_unused]] HSVNUpdateFunctions& table)
{
#if HSVN_LINE_MINOR >= 5
    table.client_checkout = checkout;
#endif
}

} // namespace HSVNAdapter
