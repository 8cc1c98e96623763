#include "Obstructions.h"

#if HSVN_LINE_MINOR >= 9

#include "CanonicalPaths.h"
#include "ErrorCodes.h"
#include "ItemsOnDisk.h"
#include "Notifications.h"
#include "ObstructedParents.h"

namespace HSVNAdapter {
namespace {

/// Keeps the search's own notifications back; those of calls within its callbacks go out.
class SearchTap : public NotificationTap
{
  public:
    using NotificationTap::NotificationTap;

  protected:
    const svn_wc_notify_t* heard(const svn_wc_notify_t* notification, apr_pool_t*) override
    {
        const bool isOfSearch = notification->action == svn_wc_notify_status_external ||
                                notification->action == svn_wc_notify_status_completed;
        return isOfSearch ? nullptr : notification;
    }
};

svn_error_t* refuse(const char* path, const char* what)
{
    return svn_error_createf(SVN_ERR_NODE_UNEXPECTED_KIND, nullptr, "%s of '%s' is in the way: move it away first",
                             what, path);
}

svn_error_t* refuseDirectory(void* /*baton*/, const char* path, const svn_client_status_t* status, apr_pool_t* pool)
{
    const bool isRestored = status->node_status == svn_wc_status_obstructed && status->kind == svn_node_dir &&
                            SVN_IS_VALID_REVNUM(status->revision); // else it was added
    if (!isRestored) {
        return SVN_NO_ERROR;
    }
    if (isSymbolicLink(status->local_abspath, pool)) {
        return refuse(path, "A symbolic link in the place of the directory");
    }
    return kindOnDisk(status->local_abspath, pool) == svn_node_unknown
               ? refuse(path, "What is in the place of the directory")
               : SVN_NO_ERROR;
}

svn_error_t* refuseFile(void* /*baton*/, const char* path, const svn_client_status_t* status, apr_pool_t* pool)
{
    const bool isInTheWay = status->node_status == svn_wc_status_obstructed && status->kind == svn_node_file &&
                            kindOnDisk(status->local_abspath, pool) == svn_node_dir;
    return isInTheWay ? refuse(path, "A directory in the place") : SVN_NO_ERROR;
}

svn_error_t* refuseEach(const apr_array_header_t* targets, svn_depth_t depth, svn_client_status_func_t receiver,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    apr_pool_t* const targetPool = svn_pool_create(pool);
    svn_error_t* error = SVN_NO_ERROR;
    for (int index = 0; error == nullptr && index < targets->nelts; ++index) {
        const char* const target = APR_ARRAY_IDX(targets, index, const char*);
        if (!isURL(target)) {
            svn_pool_clear(targetPool);
            error = findObstructions(target, depth, TRUE, receiver, nullptr, ctx, targetPool);
        }
    }
    svn_pool_destroy(targetPool);
    return error;
}

} // namespace

svn_error_t* findObstructions(const char* path, svn_depth_t depth, svn_boolean_t ignoreExternals,
                              svn_client_status_func_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const SearchTap tap{ctx};
    const svn_opt_revision_t working{svn_opt_revision_working, {}};
    svn_error_t* const error = svn_client_status6(nullptr, ctx, path, &working, depth, FALSE, FALSE, TRUE, FALSE,
                                                  ignoreExternals, FALSE, nullptr, receiver, baton, pool);
    if (error == nullptr || hasCode(error, SVN_ERR_NODE_UNEXPECTED_KIND) || hasCode(error, SVN_ERR_CANCELLED)) {
        return error;
    }
    svn_error_clear(error);
    return SVN_NO_ERROR;
}

svn_error_t* refuseObstructedDirectories(const apr_array_header_t* targets, svn_depth_t depth, svn_client_ctx_t* ctx,
                                         apr_pool_t* pool)
{
    SVN_ERR(refuseBelowDirectoryLinks(targets, pool));
    return refuseEach(targets, depth, refuseDirectory, ctx, pool);
}

svn_error_t* refuseObstructedFiles(const apr_array_header_t* targets, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    return refuseEach(targets, svn_depth_infinity, refuseFile, ctx, pool);
}

} // namespace HSVNAdapter

#endif
