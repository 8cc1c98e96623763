#include "FormerAreas.h"

#if HSVN_LINE_MINOR >= 7

#include "ItemsOnDisk.h"
#include "WorkingCopyPlace.h"

#include <svn_dirent_uri.h>
#include <svn_io.h>

namespace HSVNAdapter {

FormerAreas::FormerAreas(svn_client_ctx_t* ctx, apr_pool_t* pool)
    : _ctx{ctx}, _pool{pool}, _notify{ctx->notify_func2}, _baton{ctx->notify_baton2}
{
    ctx->notify_func2 = notify;
    ctx->notify_baton2 = this;
}

FormerAreas::~FormerAreas()
{
    _ctx->notify_func2 = _notify;
    _ctx->notify_baton2 = _baton;
}

void FormerAreas::notify(void* baton, const svn_wc_notify_t* record, apr_pool_t* pool)
{
    auto& areas = *static_cast<FormerAreas*>(baton);
    if (record->action == svn_wc_notify_upgraded_path) {
        const char* path = nullptr;
        svn_error_t* const error = svn_dirent_get_absolute(&path, record->path, areas._pool);
        if (error == nullptr) {
            areas._upgraded.push_back(path);
        }
        svn_error_clear(error);
    }
    if (areas._notify != nullptr) {
        areas._notify(areas._baton, record, pool);
    }
}

svn_error_t* FormerAreas::remove() const
{
    for (const char* const directory : _upgraded) {
        const char* const area = svn_dirent_join(directory, svn_wc_get_adm_dir(_pool), _pool);
        const bool isRoot = identityOf(databaseOf(directory, _pool)) != FileIdentity{};
        if (isRoot || kindOnDisk(area, _pool) != svn_node_dir) {
            continue;
        }
        if (svn_error_t* const error = svn_io_remove_dir2(area, TRUE, nullptr, nullptr, _pool)) {
            return svn_error_createf(SVN_ERR_INCOMPLETE_DATA, error,
                                     "The working copy is upgraded, but '%s', which it needs no longer, could not be "
                                     "removed: remove it, or '%s' is taken for a working copy of the former format",
                                     area, directory);
        }
    }
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter

#endif
