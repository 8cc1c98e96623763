#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"

namespace HSVNAdapter {
namespace {

using CheckTarget = svn_error_t* (*)(const char** target, apr_pool_t* pool);

svn_error_t* canonicalTarget(const char** target, apr_pool_t* pool)
{
    return canonicalize(target, TargetKind::PathOrURL, pool);
}

/// A path, or a URL that paths relative to it may follow.
///
/// @param check  what makes a path or a URL canonical
svn_error_t* checkLogTargets(const apr_array_header_t** targets, CheckTarget check, apr_pool_t* pool)
{
    if ((*targets)->nelts == 0) {
        return svn_error_create(SVN_ERR_ILLEGAL_TARGET, nullptr, "A log needs a target");
    }
    auto* const checked = apr_array_copy(pool, *targets);
    SVN_ERR(check(&APR_ARRAY_IDX(checked, 0, const char*), pool));
    const bool isRelative = isURL(APR_ARRAY_IDX(checked, 0, const char*));
    for (int index = 1; index < checked->nelts; ++index) {
        SVN_ERR((isRelative ? checkRelativeTarget : check)(&APR_ARRAY_IDX(checked, index, const char*), pool));
    }
    *targets = checked;
    return SVN_NO_ERROR;
}

svn_error_t* log3(const apr_array_header_t* targets, const svn_opt_revision_t* pegRevision,
                  const svn_opt_revision_t* start, const svn_opt_revision_t* end, int limit,
                  svn_boolean_t discoverChangedPaths, svn_boolean_t strictNodeHistory,
                  svn_log_message_receiver_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLogTargets(&targets, canonicalTarget, pool));
    return smoothed(svn_client_log3(targets, pegRevision, start, end, limit, discoverChangedPaths, strictNodeHistory,
                                    receiver, baton, ctx, pool));
}

#if HSVN_LINE_MINOR >= 6
svn_error_t* log5(const apr_array_header_t* targets, const svn_opt_revision_t* pegRevision,
                  const apr_array_header_t* ranges, int limit, svn_boolean_t changedPaths, svn_boolean_t stopOnCopy,
                  svn_boolean_t mergedRevisions, const apr_array_header_t* revisionProperties,
                  HSVNReadingFunctions::LogReceiver receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLogTargets(&targets, checkTarget, pool));
    return svn_client_log5(targets, pegRevision, rangePointers(ranges, pool), limit, changedPaths, stopOnCopy,
                           mergedRevisions, revisionProperties, receiver, baton, ctx, pool);
}
#endif

} // namespace

void fillLog(HSVNBundleEntryPoints& table) { table.client_log3 = log3; }

void fillLog([[maybe_unused]] HSVNReadingFunctions& table)
{
#if HSVN_LINE_MINOR >= 6
    table.client_log = log5;
#endif
}

} // namespace HSVNAdapter
