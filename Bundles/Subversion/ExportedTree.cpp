#include "ExportedTree.h"

#include <string_view>
#include <utf8.h>

namespace HSVNAdapter {

svn_error_t* requirePlainName(const char* name, const char* folder, apr_pool_t* pool)
{
    const std::string_view text = name;
    const bool isPlain = !text.empty() && text != "." && text != ".." && text.find('/') == std::string_view::npos &&
                         utf8::is_valid(text) && !svn_wc_is_adm_dir(name, pool);
    return isPlain
               ? SVN_NO_ERROR
               : svn_error_createf(SVN_ERR_BAD_FILENAME, nullptr,
                                   "The server names an item '%s' in the directory '%s': that is no name to write to",
                                   name, folder);
}

const char* pathBelow(const char* base, const char* relativePath, apr_pool_t* pool)
{
    const std::string_view text = base;
    return text.empty() || *relativePath == '\0'
               ? apr_pstrcat(pool, base, relativePath, nullptr)
               : apr_pstrcat(pool, base, text.ends_with('/') ? "" : "/", relativePath, nullptr);
}

void notifyExported(const svn_client_ctx_t* ctx, const char* path, svn_node_kind_t kind, apr_pool_t* pool)
{
    if (ctx->notify_func2 != nullptr) {
        auto* const notification = svn_wc_create_notify(path, svn_wc_notify_update_add, pool);
        notification->kind = kind;
        ctx->notify_func2(ctx->notify_baton2, notification, pool);
    }
}

svn_error_t* makeExportedFolder(const ExportedTree& tree, const char* path, svn_boolean_t withParents, apr_pool_t* pool)
{
    const char* absolute = nullptr;
    SVN_ERR(svn_path_get_absolute(&absolute, path, pool));
    svn_node_kind_t kind = svn_node_none;
    SVN_ERR(svn_io_check_path(path, &kind, pool));
    if (kind == svn_node_none) {
        SVN_ERR(withParents ? svn_io_make_dir_recursively(path, pool) : svn_io_dir_make(path, APR_OS_DEFAULT, pool));
    } else if (kind == svn_node_file) {
        return svn_error_createf(SVN_ERR_WC_NOT_DIRECTORY, nullptr, "'%s' exists and is not a directory",
                                 svn_path_local_style(path, pool));
    } else if (kind != svn_node_dir || !tree.choices.overwrite || tree.links->contains(absolute)) {
        return svn_error_createf(SVN_ERR_WC_OBSTRUCTED_UPDATE, nullptr, "'%s' already exists",
                                 svn_path_local_style(path, pool));
    }
    notifyExported(tree.ctx, path, svn_node_dir, pool);
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter
