#include "Obstructions.h"

#if HSVN_LINE_MINOR >= 9

#include "CanonicalPaths.h"
#include "ErrorCodes.h"
#include "ItemsOnDisk.h"
#include "Notifications.h"
#include "ObstructedParents.h"

#include <cstring>
#include <optional>
#include <svn_dirent_uri.h>
#include <svn_io.h>

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

svn_error_t* refuseObstruction(const char* path, const char* what)
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
        return refuseObstruction(path, "A symbolic link in the place of the directory");
    }
    return kindOnDisk(status->local_abspath, pool) == svn_node_unknown
               ? refuseObstruction(path, "What is in the place of the directory")
               : SVN_NO_ERROR;
}

svn_error_t* refuseFile(void* /*baton*/, const char* path, const svn_client_status_t* status, apr_pool_t* pool)
{
    const bool isInTheWay = status->node_status == svn_wc_status_obstructed && status->kind == svn_node_file &&
                            kindOnDisk(status->local_abspath, pool) == svn_node_dir;
    return isInTheWay ? refuseObstruction(path, "A directory in the place") : SVN_NO_ERROR;
}

/// What is asked of the items that Subversion finds in the place of another.
struct Search
{
    svn_boolean_t ignoreExternals;
    svn_client_status_func_t receiver;
    void* baton;
    svn_client_ctx_t* ctx;
};

/// Errors are those of the function that goes there next, except the receiver's own.
svn_error_t* askSubversion(const Search& search, const char* path, svn_depth_t depth, apr_pool_t* pool)
{
    const SearchTap tap{search.ctx};
    const svn_opt_revision_t working{svn_opt_revision_working, {}};
    svn_error_t* const error =
        svn_client_status6(nullptr, search.ctx, path, &working, depth, FALSE, FALSE, TRUE, FALSE,
                           search.ignoreExternals, FALSE, nullptr, search.receiver, search.baton, pool);
    if (error == nullptr || hasCode(error, SVN_ERR_NODE_UNEXPECTED_KIND) || hasCode(error, SVN_ERR_CANCELLED)) {
        return error;
    }
    svn_error_clear(error);
    return SVN_NO_ERROR;
}

/// As Subversion knows an item, whatever is on disk.
svn_error_t* knownKind(svn_node_kind_t* kind, const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(svn_dirent_get_absolute(&path, path, pool));
    return svn_error_trace(svn_wc_read_kind2(kind, ctx->wc_ctx, path, FALSE, FALSE, pool));
}

struct ItemOnDisk
{
    const char* path;
    bool isDirectory;
};

/// What a folder holds beside files, its administrative area left out.
struct FolderOnDisk
{
    explicit FolderOnDisk(const char* path, apr_pool_t* pool);

    apr_array_header_t* items;
    bool hasArea = false;
};

FolderOnDisk::FolderOnDisk(const char* path, apr_pool_t* pool) : items{apr_array_make(pool, 0, sizeof(ItemOnDisk))}
{
    apr_dir_t* folder = nullptr;
    svn_error_t* error = svn_io_dir_open(&folder, path, pool);
    apr_finfo_t entry{};
    while (error == nullptr) {
        error = svn_io_dir_read(&entry, APR_FINFO_TYPE | APR_FINFO_NAME, folder, pool);
        const bool isItem = error == nullptr && entry.filetype != APR_REG && std::strcmp(entry.name, ".") != 0 &&
                            std::strcmp(entry.name, "..") != 0;
        if (isItem && svn_wc_is_adm_dir(entry.name, pool)) {
            hasArea = true;
        } else if (isItem) {
            APR_ARRAY_PUSH(items, ItemOnDisk) = {svn_dirent_join(path, entry.name, pool), entry.filetype == APR_DIR};
        }
    }
    svn_error_clear(error); // that of the end, or of a folder that cannot be read
    if (folder != nullptr) {
        svn_error_clear(svn_io_dir_close(folder));
    }
}

/// Whether an item on disk has to be looked at as its folder's: what Subversion knows there is of another kind, or is
/// hidden by another working copy's root.
///
/// @param inner  what is in a directory that is to be searched in its turn
bool isSuspect(const Search& search, const ItemOnDisk& item, std::optional<FolderOnDisk>& inner, apr_pool_t* pool)
{
    svn_node_kind_t known = svn_node_none;
    if (svn_error_t* const error = knownKind(&known, item.path, search.ctx, pool)) {
        svn_error_clear(error);
        return true;
    }
    if (known != svn_node_dir || !item.isDirectory) {
        return (known == svn_node_dir || known == svn_node_file) && item.isDirectory != (known == svn_node_dir);
    }
    inner.emplace(item.path, pool);
    return inner->hasArea;
}

/// Goes through a directory that is one to Subversion too. What is there instead of another kind is rare: only of the
/// folders around it Subversion is asked for the status, which of all takes as long as what the caller has to do.
svn_error_t* searchFolder(const Search& search, const FolderOnDisk& folder, const char* path, apr_pool_t* pool)
{
    if (search.ctx->cancel_func != nullptr) {
        SVN_ERR(search.ctx->cancel_func(search.ctx->cancel_baton));
    }
    bool hasSuspect = false;
    apr_pool_t* const itemPool = svn_pool_create(pool);
    for (int index = 0; index < folder.items->nelts; ++index) {
        svn_pool_clear(itemPool);
        const auto& item = APR_ARRAY_IDX(folder.items, index, ItemOnDisk);
        std::optional<FolderOnDisk> inner;
        if (isSuspect(search, item, inner, itemPool)) {
            hasSuspect = true;
        } else if (inner) {
            SVN_ERR(searchFolder(search, *inner, item.path, itemPool));
        }
    }
    svn_pool_destroy(itemPool);
    return hasSuspect ? askSubversion(search, path, svn_depth_immediates, pool) : SVN_NO_ERROR;
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
    const Search search{ignoreExternals, receiver, baton, ctx};
    svn_node_kind_t known = svn_node_none;
    const bool isTree = depth == svn_depth_infinity && ignoreExternals && kindOnDisk(path, pool) == svn_node_dir;
    if (isTree) {
        svn_error_clear(knownKind(&known, path, ctx, pool));
    }
    return known == svn_node_dir ? searchFolder(search, FolderOnDisk{path, pool}, path, pool)
                                 : askSubversion(search, path, depth, pool);
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
