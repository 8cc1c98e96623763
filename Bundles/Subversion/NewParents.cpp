#include "NewParents.h"

#if HSVN_LINE_MINOR >= 7

#include "Internal/ScopedValue.h"

#include <cstring>
#include <svn_dirent_uri.h>
#include <svn_io.h>
#include <svn_wc.h>

namespace HSVNAdapter {
namespace {

/// Whether an absolute path is of a versioned item; none is outside of a working copy.
bool isVersioned(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_node_kind_t kind = svn_node_none;
    svn_error_clear(svn_wc_read_kind(&kind, ctx->wc_ctx, path, FALSE, pool));
    return kind != svn_node_none;
}

} // namespace

svn_error_t* NewParents::look(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const char* directory = nullptr;
    SVN_ERR(svn_dirent_get_absolute(&directory, path, pool));
    for (; !svn_dirent_is_root(directory, std::strlen(directory)) && !isVersioned(directory, ctx, pool);
         directory = svn_dirent_dirname(directory, pool))
    {
        svn_node_kind_t kind = svn_node_none;
        svn_error_t* const error = svn_io_check_path(directory, &kind, pool); // of a name that is too long
        if (error == nullptr && kind == svn_node_none) {
            _absent.push_back(directory);
        }
        svn_error_clear(error);
        _topmost = directory;
    }
    return SVN_NO_ERROR;
}

svn_error_t* NewParents::takeBack(svn_client_ctx_t* ctx, apr_pool_t* pool) const
{
    const HSVNScopedValue unstoppable{ctx->cancel_func, nullptr};
    svn_error_t* error = SVN_NO_ERROR;
    if (_topmost != nullptr && isVersioned(_topmost, ctx, pool)) {
        auto* const targets = apr_array_make(pool, 1, sizeof(const char*));
        APR_ARRAY_PUSH(targets, const char*) = _topmost;
        error = svn_client_revert2(targets, svn_depth_infinity, nullptr, ctx, pool);
    }
    for (const char* const directory : _absent) {
        svn_error_clear(svn_io_dir_remove_nonrecursive(directory, pool)); // the lowest is not there
    }
    return error;
}

} // namespace HSVNAdapter

#endif
