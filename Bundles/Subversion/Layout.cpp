#include "ExtensionTable.h"
#include "ExtensionTargets.h"

#include <svn_ra.h>
#if HSVN_LINE_MINOR >= 7
#include <svn_dirent_uri.h>
#endif

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 7
struct LayoutCall
{
    HSVNStatusFunctions::LayoutReceiver receiver;
    void* baton;
};

svn_error_t* report(void* baton, const HSVNStatusFunctions::LayoutItem& item, apr_pool_t* pool)
{
    const auto& call = *static_cast<LayoutCall*>(baton);
    return call.receiver(call.baton, &item, pool);
}

svn_error_t* setPath(void* baton, const char* path, svn_revnum_t revision, svn_depth_t depth, svn_boolean_t,
                     const char*, apr_pool_t* pool)
{
    return report(baton, {path, nullptr, revision, depth, TRUE}, pool);
}

svn_error_t* linkPath(void* baton, const char* path, const char* url, svn_revnum_t revision, svn_depth_t depth,
                      svn_boolean_t, const char*, apr_pool_t* pool)
{
    return report(baton, {path, url, revision, depth, TRUE}, pool);
}

svn_error_t* deletePath(void* baton, const char* path, apr_pool_t* pool)
{
    return report(baton, {path, nullptr, SVN_INVALID_REVNUM, svn_depth_unknown, FALSE}, pool);
}

svn_error_t* end(void*, apr_pool_t*) { return nullptr; }

/// Refuses what the repository does not have yet, which Subversion would tell nonsense of.
svn_error_t* requireCommitted(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_wc_status3_t* status = nullptr;
    SVN_ERR(svn_wc_status3(&status, ctx->wc_ctx, path, pool, pool));
    const bool isReplaced = status->node_status == svn_wc_status_replaced;
    if (status->node_status == svn_wc_status_added || (status->copied && !isReplaced)) {
        return svn_error_createf(SVN_ERR_WC_PATH_NOT_FOUND, nullptr, "The node '%s' was not found.",
                                 svn_dirent_local_style(path, pool));
    }
    return nullptr;
}

/// Has Subversion tell what it would tell a server before an update, without one.
svn_error_t* layout(const char* path, HSVNStatusFunctions::LayoutReceiver receiver, void* baton, svn_client_ctx_t* ctx,
                    apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    SVN_ERR(checkAbsoluteTarget(&path, pool));
    SVN_ERR(requireCommitted(path, ctx, pool));
    constexpr svn_ra_reporter3_t reporter{setPath, deletePath, linkPath, end, end};
    LayoutCall call{receiver, baton};
    return svn_wc_crawl_revisions5(ctx->wc_ctx, path, &reporter, &call, FALSE, svn_depth_infinity, TRUE, FALSE, FALSE,
                                   ctx->cancel_func, ctx->cancel_baton, ctx->notify_func2, ctx->notify_baton2, pool);
}
#endif

} // namespace

void fillLayout([[maybe_unused]] HSVNStatusFunctions& table)
{
#if HSVN_LINE_MINOR >= 7
    table.wc_layout = layout;
#endif
}

} // namespace HSVNAdapter
