#include "Relocation.h"

#include <string_view>

#if HSVN_LINE_MINOR >= 7

#include <svn_dirent_uri.h>
#include <svn_hash.h>
#include <svn_props.h>

namespace HSVNAdapter {
namespace {

/// The folders of the externals that are defined in a working copy, whether they are there or not.
svn_error_t* externalsIn(apr_array_header_t** folders, const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    *folders = apr_array_make(pool, 0, sizeof(const char*));
    svn_opt_revision_t working{};
    working.kind = svn_opt_revision_working;
    apr_hash_t* properties = nullptr;
    SVN_ERR(svn_client_propget4(&properties, SVN_PROP_EXTERNALS, path, &working, &working, nullptr, svn_depth_infinity,
                                nullptr, ctx, pool, pool));
    for (auto* entry = apr_hash_first(pool, properties); entry != nullptr; entry = apr_hash_next(entry)) {
        const void* folder = nullptr;
        void* value = nullptr;
        apr_hash_this(entry, &folder, nullptr, &value);
        apr_array_header_t* items = nullptr;
        SVN_ERR(svn_wc_parse_externals_description3(&items, static_cast<const char*>(folder),
                                                    static_cast<const svn_string_t*>(value)->data, FALSE, pool));
        for (int index = 0; index < items->nelts; ++index) {
            const auto* const item = APR_ARRAY_IDX(items, index, const svn_wc_external_item2_t*);
            APR_ARRAY_PUSH(*folders, const char*) =
                svn_dirent_join(static_cast<const char*>(folder), item->target_dir, pool);
        }
    }
    return SVN_NO_ERROR;
}

/// Takes what both prefixes end in away: with it they are too long for most externals.
void keepWhatChanges(std::string_view& from, std::string_view& to)
{
    while (from.size() > 1 && to.size() > 1 && from.back() == to.back()) {
        from.remove_suffix(1);
        to.remove_suffix(1);
    }
}

/// The repository that a folder is a working copy of; null for any other folder.
svn_error_t* repositoryOf(const char** root, const char* folder, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    *root = nullptr;
    svn_node_kind_t kind = svn_node_none;
    SVN_ERR(svn_io_check_path(folder, &kind, pool));
    return kind == svn_node_dir ? svn_client_root_url_from_path(root, folder, ctx, pool) : SVN_NO_ERROR;
}

} // namespace

svn_error_t* relocateTree(const char* path, const char* from, const char* to, svn_boolean_t ignoreExternals,
                          svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(svn_dirent_get_absolute(&path, path, pool));
    const char* root = nullptr;
    SVN_ERR(repositoryOf(&root, path, ctx, pool));
    SVN_ERR(svn_client_relocate2(path, from, to, TRUE, ctx, pool));
    if (ignoreExternals || root == nullptr) {
        return SVN_NO_ERROR;
    }
    std::string_view shortFrom = from;
    std::string_view shortTo = to;
    keepWhatChanges(shortFrom, shortTo);
    apr_array_header_t* folders = nullptr;
    SVN_ERR(externalsIn(&folders, path, ctx, pool));
    for (int index = 0; index < folders->nelts; ++index) {
        const char* const folder = APR_ARRAY_IDX(folders, index, const char*);
        const char* ownRoot = nullptr;
        SVN_ERR(repositoryOf(&ownRoot, folder, ctx, pool));
        if (ownRoot != nullptr && std::string_view{ownRoot} == root) {
            SVN_ERR(relocateTree(folder, apr_pstrmemdup(pool, shortFrom.data(), shortFrom.size()),
                                 apr_pstrmemdup(pool, shortTo.data(), shortTo.size()), FALSE, ctx, pool));
        }
    }
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter

#else

#include "CanonicalPaths.h"

namespace HSVNAdapter {
namespace {

/// These lines put the one in the other's place, and what comes of it on record; beginnings such as "http://" stay.
svn_error_t* canonicalPrefix(const char** prefix, apr_pool_t* pool)
{
    const std::string_view text = *prefix;
    return isURL(*prefix) && !text.ends_with("://") ? canonicalize(prefix, TargetKind::URL, pool) : SVN_NO_ERROR;
}

} // namespace

svn_error_t* relocateTree(const char* path, const char* from, const char* to, svn_boolean_t /*ignoreExternals*/,
                          svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(canonicalPrefix(&from, pool));
    SVN_ERR(canonicalPrefix(&to, pool));
    return svn_client_relocate(path, from, to, TRUE, ctx, pool);
}

} // namespace HSVNAdapter

#endif
