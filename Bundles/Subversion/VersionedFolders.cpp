#include "VersionedFolders.h"

#include <functional>

namespace HSVNAdapter {
namespace {

/// What a walk meets.
struct Visitor
{
    /// A folder itself and the files in it; the pool lives as long as the folder is open.
    std::function<svn_error_t*(const char* path, svn_wc_adm_access_t* access, apr_pool_t* pool)> item;
    /// A folder on disk that is no working copy, in the place of a versioned one; takes the error.
    std::function<svn_error_t*(svn_error_t* error)> obstruction;
};

bool isFolder(const char* path, apr_pool_t* pool)
{
    svn_node_kind_t kind = svn_node_none;
    svn_boolean_t isSpecial = FALSE;
    svn_error_clear(svn_io_check_special_path(path, &kind, &isSpecial, pool));
    return kind == svn_node_dir && !isSpecial;
}

svn_error_t* walk(const char* folder, const Visitor& visitor, svn_client_ctx_t* ctx, apr_pool_t* pool);

svn_error_t* visit(const char* folder, const svn_wc_entry_t& entry, svn_wc_adm_access_t* access, const Visitor& visitor,
                   svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    if (entry.schedule == svn_wc_schedule_delete) {
        return SVN_NO_ERROR;
    }
    const char* path = svn_path_join(folder, entry.name, pool);
    if (entry.kind != svn_node_dir || *entry.name == '\0') {
        return visitor.item(path, access, pool);
    }
    if (!isFolder(path, pool)) {
        return SVN_NO_ERROR;
    }
    svn_error_t* error = walk(path, visitor, ctx, pool);
    return error != nullptr && error->apr_err == SVN_ERR_WC_NOT_DIRECTORY ? visitor.obstruction(error) : error;
}

svn_error_t* walk(const char* folder, const Visitor& visitor, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    apr_pool_t* const own = svn_pool_create(pool);
    svn_wc_adm_access_t* access = nullptr;
    SVN_ERR(svn_wc_adm_open3(&access, nullptr, folder, FALSE, 0, ctx->cancel_func, ctx->cancel_baton, own));
    apr_hash_t* entries = nullptr;
    SVN_ERR(svn_wc_entries_read(&entries, access, FALSE, own));
    for (auto* index = apr_hash_first(own, entries); index != nullptr; index = apr_hash_next(index)) {
        void* entry = nullptr;
        apr_hash_this(index, nullptr, nullptr, &entry);
        SVN_ERR(visit(folder, *static_cast<const svn_wc_entry_t*>(entry), access, visitor, ctx, own));
    }
    SVN_ERR(svn_wc_adm_close(access));
    svn_pool_destroy(own);
    return SVN_NO_ERROR;
}

} // namespace

svn_error_t* readPropertyBelow(apr_hash_t* values, const char* name, const char* folder, svn_client_ctx_t* ctx,
                               apr_pool_t* pool)
{
    const auto read = [&](const char* path, svn_wc_adm_access_t* access, apr_pool_t* itemPool) -> svn_error_t* {
        const svn_string_t* value = nullptr;
        SVN_ERR(svn_wc_prop_get(&value, name, path, access, itemPool));
        if (value != nullptr) {
            apr_hash_set(values, apr_pstrdup(pool, path), APR_HASH_KEY_STRING, svn_string_dup(value, pool));
        }
        return SVN_NO_ERROR;
    };
    const auto pass = [](svn_error_t* error) -> svn_error_t* {
        svn_error_clear(error);
        return SVN_NO_ERROR;
    };
    return walk(folder, {read, pass}, ctx, pool);
}

svn_error_t* refuseObstructedFolders(const char* folder, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const auto ignore = [](const char*, svn_wc_adm_access_t*, apr_pool_t*) -> svn_error_t* { return SVN_NO_ERROR; };
    bool isObstructed = false;
    const auto refuse = [&isObstructed](svn_error_t* error) {
        isObstructed = true;
        return error;
    };
    svn_error_t* error = isFolder(folder, pool) ? walk(folder, {ignore, refuse}, ctx, pool) : SVN_NO_ERROR;
    if (isObstructed) {
        return error;
    }
    // Whatever else there is the operation itself answers.
    svn_error_clear(error);
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter
