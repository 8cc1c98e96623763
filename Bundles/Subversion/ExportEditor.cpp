#include "ExportEditor.h"

#include "ExportedFile.h"

#include <cstring>
#include <string_view>
#include <utf8.h>

#include <svn_props.h>

namespace HSVNAdapter {
namespace {

struct Folder
{
    ExportedTree* tree;
    const char* relativePath;
};

svn_error_t* setTargetRevision(void* baton, svn_revnum_t revision, apr_pool_t* /*pool*/)
{
    static_cast<ExportedTree*>(baton)->revision = revision;
    return SVN_NO_ERROR;
}

svn_error_t* openRoot(void* baton, svn_revnum_t /*baseRevision*/, apr_pool_t* pool, void** root)
{
    auto* const tree = static_cast<ExportedTree*>(baton);
    SVN_ERR(makeExportedFolder(*tree, tree->target, TRUE, pool));
    *root = new (apr_palloc(pool, sizeof(Folder))) Folder{tree, ""};
    return SVN_NO_ERROR;
}

/// The name that the path adds to its folder's; a server may send any path with any folder.
svn_error_t* checkChild(const Folder& folder, const char* path, apr_pool_t* pool)
{
    const std::string_view parent = folder.relativePath;
    const std::string_view whole = path;
    const bool isBelow = parent.empty() || (whole.starts_with(parent) && whole.substr(parent.size()).starts_with('/'));
    return requirePlainName(path + (isBelow && !parent.empty() ? parent.size() + 1 : 0),
                            isBelow ? folder.relativePath : "", pool);
}

svn_error_t* addFolder(const char* path, void* parent, const char* /*copyFromPath*/, svn_revnum_t /*copyFromRevision*/,
                       apr_pool_t* pool, void** baton)
{
    const auto& folder = *static_cast<Folder*>(parent);
    SVN_ERR(checkChild(folder, path, pool));
    SVN_ERR(makeExportedFolder(*folder.tree, pathBelow(folder.tree->target, path, pool), FALSE, pool));
    *baton = new (apr_palloc(pool, sizeof(Folder))) Folder{folder.tree, apr_pstrdup(pool, path)};
    return SVN_NO_ERROR;
}

svn_error_t* changeFolderProperty(void* baton, const char* name, const svn_string_t* value, apr_pool_t* pool)
{
    const auto& folder = *static_cast<Folder*>(baton);
    if (value != nullptr && std::strcmp(name, SVN_PROP_EXTERNALS) == 0) {
        const char* path = nullptr;
        SVN_ERR(svn_path_get_absolute(&path, pathBelow(folder.tree->target, folder.relativePath, pool), pool));
        folder.tree->externals[path] = std::string{value->data, value->len};
    }
    return SVN_NO_ERROR;
}

svn_error_t* addFile(const char* path, void* parent, const char* /*copyFromPath*/, svn_revnum_t /*copyFromRevision*/,
                     apr_pool_t* pool, void** baton)
{
    const auto& folder = *static_cast<Folder*>(parent);
    SVN_ERR(checkChild(folder, path, pool));
    *baton = ExportedFile::make(*folder.tree, pathBelow(folder.tree->target, path, pool),
                                svn_path_url_add_component(folder.tree->url, path, pool), pool);
    return SVN_NO_ERROR;
}

svn_error_t* changeFileProperty(void* baton, const char* name, const svn_string_t* value, apr_pool_t* /*pool*/)
{
    return static_cast<ExportedFile*>(baton)->setProperty(name, value);
}

svn_error_t* applyTextDelta(void* baton, const char* /*baseChecksum*/, apr_pool_t* pool,
                            svn_txdelta_window_handler_t* handler, void** handlerBaton)
{
    return static_cast<ExportedFile*>(baton)->openDelta(handler, handlerBaton, pool);
}

svn_error_t* closeFile(void* baton, const char* checksum, apr_pool_t* pool)
{
    return static_cast<ExportedFile*>(baton)->install(checksum, pool);
}

svn_error_t* refuse(const char* path)
{
    return svn_error_createf(SVN_ERR_INCOMPLETE_DATA, nullptr,
                             "The server changes '%s', which it has not sent for this export", path);
}

svn_error_t* openItem(const char* path, void* /*parent*/, svn_revnum_t /*baseRevision*/, apr_pool_t* /*pool*/,
                      void** /*baton*/)
{
    return refuse(path);
}

svn_error_t* deleteItem(const char* path, svn_revnum_t /*revision*/, void* /*parent*/, apr_pool_t* /*pool*/)
{
    return refuse(path);
}

} // namespace

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

svn_error_t* makeExportEditor(const svn_delta_editor_t** editor, void** baton, ExportedTree* tree, apr_pool_t* pool)
{
    svn_delta_editor_t* const writer = svn_delta_default_editor(pool);
    writer->set_target_revision = setTargetRevision;
    writer->open_root = openRoot;
    writer->add_directory = addFolder;
    writer->change_dir_prop = changeFolderProperty;
    writer->add_file = addFile;
    writer->change_file_prop = changeFileProperty;
    writer->apply_textdelta = applyTextDelta;
    writer->close_file = closeFile;
    writer->open_directory = openItem;
    writer->open_file = openItem;
    writer->delete_entry = deleteItem;
    return svn_delta_get_cancellation_editor(tree->ctx->cancel_func, tree->ctx->cancel_baton, writer, tree, editor,
                                             baton, pool);
}

} // namespace HSVNAdapter
