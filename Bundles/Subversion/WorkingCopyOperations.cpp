#include "CanonicalPaths.h"
#include "ConfiguredTypes.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "Obstructions.h"
#include "OwnDatabases.h"
#include "WorkingCopyFormat.h"

#include <cstring>
#include <vector>

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

#if HSVN_LINE_MINOR < 8
/// The items of a working copy's folder that its forced addition adds, or goes on below.
svn_error_t* itemsToAdd(std::vector<const char*>& names, const char* folder, svn_boolean_t noIgnore,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_wc_adm_access_t* access = nullptr;
    SVN_ERR(svn_wc_adm_open3(&access, nullptr, folder, FALSE, 0, ctx->cancel_func, ctx->cancel_baton, pool));
    apr_array_header_t* ignored = nullptr;
    SVN_ERR(svn_wc_get_ignores(&ignored, ctx->config, access, pool));
    SVN_ERR(svn_wc_adm_close(access));
    apr_hash_t* items = nullptr;
    SVN_ERR(svn_io_get_dirents2(&items, folder, pool));
    for (auto* index = apr_hash_first(pool, items); index != nullptr; index = apr_hash_next(index)) {
        const void* key = nullptr;
        void* item = nullptr;
        apr_hash_this(index, &key, nullptr, &item);
        const auto* const name = static_cast<const char*>(key);
        if (static_cast<const svn_io_dirent_t*>(item)->kind != svn_node_unknown && !svn_wc_is_adm_dir(name, pool) &&
            (noIgnore || !svn_cstring_match_glob_list(name, ignored)))
        {
            names.push_back(name);
        }
    }
    return SVN_NO_ERROR;
}

/// The addition of a working copy's root: these lines look for the root's entry in the folder above.
svn_error_t* addRoot(const char* root, svn_boolean_t recursive, svn_boolean_t force, svn_boolean_t noIgnore,
                     svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    std::vector<const char*> names;
    SVN_ERR(itemsToAdd(names, root, noIgnore, ctx, pool));
    if (!force) {
        return svn_error_createf(SVN_ERR_ENTRY_EXISTS, nullptr, "'%s' is already under version control", root);
    }
    apr_pool_t* const own = svn_pool_create(pool);
    for (const char* const name : recursive ? names : std::vector<const char*>{}) {
        svn_pool_clear(own);
        SVN_ERR(svn_client_add3(svn_path_join(root, name, own), TRUE, TRUE, noIgnore, ctx, own));
    }
    svn_pool_destroy(own);
    return SVN_NO_ERROR;
}
#endif

svn_error_t* addItems(const char* path, svn_boolean_t recursive, svn_boolean_t force, svn_boolean_t noIgnore,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_error_t* error = svn_client_add3(path, recursive, force, noIgnore, ctx, pool);
#if HSVN_LINE_MINOR < 8
    if (error != nullptr && error->apr_err == SVN_ERR_WC_NOT_DIRECTORY && statedFormat(path, pool) > 0) {
        svn_error_clear(error);
        return smoothed(addRoot(path, recursive, force, noIgnore, ctx, pool));
    }
#endif
#if HSVN_LINE_MINOR < 7
    // In a working copy, but in a folder that has no administrative area: newer lines look for the folder's entry.
    if (error != nullptr && error->apr_err == SVN_ERR_WC_NOT_DIRECTORY && isBelowWorkingCopy(path, pool)) {
        return withCode(SVN_ERR_ENTRY_NOT_FOUND, error);
    }
#endif
    return smoothed(error);
}

svn_error_t* add3(const char* path, svn_boolean_t recursive, svn_boolean_t force, svn_boolean_t noIgnore,
                  svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    return withConfiguredTypes(ctx, pool, [&] { return addItems(path, recursive, force, noIgnore, ctx, pool); });
}

svn_error_t* cleanup(const char* folder, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(folder, pool);
    svn_error_t* const error =
        cleanUpAnyFolder(folder, true, ctx, pool, [&] { return svn_client_cleanup(folder, ctx, pool); });
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
#if HSVN_LINE_MINOR >= 9
    SVN_ERR(refuseObstructedDirectories(paths, recursive ? svn_depth_infinity : svn_depth_empty, ctx, pool));
#endif
    return smoothed(svn_client_revert(paths, recursive, ctx, pool));
}

} // namespace

void fillWorkingCopyOperations(HSVNBundleEntryPoints& table)
{
    table.client_add3 = add3;
    table.client_cleanup = cleanup;
    table.client_resolved = resolved;
    table.client_revert = revert;
}

} // namespace HSVNAdapter
