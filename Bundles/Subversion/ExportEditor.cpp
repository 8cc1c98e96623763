#include "ExportEditor.h"

#include "ExportedFile.h"

#include <cstring>
#include <string_view>

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
    *baton =
        ExportedFile::make(*folder.tree, pathBelow(folder.tree->target, path, pool), apr_pstrdup(pool, path), pool);
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
