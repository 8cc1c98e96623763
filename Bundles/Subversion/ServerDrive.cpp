#include "ServerDrive.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <new>
#include <string_view>

#include <svn_dirent_uri.h>

namespace HSVNAdapter {
namespace {

/// The editor that is driven in the end.
struct Driven
{
    const svn_delta_editor_t* editor;
    void* baton;
};

struct Item
{
    const Driven* driven;
    Item* folder; ///< null for the root
    const char* path;
    void* baton = nullptr; ///< of the editor driven
    int openItems = 0;     ///< in it
    bool isInText = false;
    svn_txdelta_window_handler_t handler = nullptr; ///< of its text
    void* handlerBaton = nullptr;
};

const svn_delta_editor_t& editorOf(const Item& item) { return *item.driven->editor; }

svn_error_t* refuseChange(const char* path, const char* reason)
{
    return svn_error_createf(SVN_ERR_RA_SVN_MALFORMED_DATA, nullptr, "The server's changes are malformed: '%s' %s",
                             path, reason);
}

svn_error_t* passTargetRevision(void* baton, svn_revnum_t revision, apr_pool_t* pool)
{
    const auto& driven = *static_cast<Driven*>(baton);
    return driven.editor->set_target_revision(driven.baton, revision, pool);
}

svn_error_t* passRoot(void* baton, svn_revnum_t revision, apr_pool_t* pool, void** root)
{
    const auto& driven = *static_cast<Driven*>(baton);
    auto* const item = new (apr_palloc(pool, sizeof(Item))) Item{&driven, nullptr, ""};
    *root = item;
    return driven.editor->open_root(driven.baton, revision, pool, &item->baton);
}

svn_error_t* passDeletion(const char* path, svn_revnum_t revision, void* parent, apr_pool_t* pool)
{
    const auto& folder = *static_cast<Item*>(parent);
    SVN_ERR(requireChild(folder.path, path));
    return editorOf(folder).delete_entry(path, revision, folder.baton, pool);
}

/// An item in the folder, open until it is closed.
svn_error_t* makeItem(Item** item, const char* path, void* parent, apr_pool_t* pool)
{
    auto& folder = *static_cast<Item*>(parent);
    SVN_ERR(requireChild(folder.path, path));
    *item = new (apr_palloc(pool, sizeof(Item))) Item{folder.driven, &folder, apr_pstrdup(pool, path)};
    ++folder.openItems;
    return SVN_NO_ERROR;
}

// What is done with a folder or a file is a place of the editor's.

template <auto Place>
svn_error_t* addItem(const char* path, void* parent, const char* source, svn_revnum_t sourceRevision, apr_pool_t* pool,
                     void** baton)
{
    Item* item = nullptr;
    SVN_ERR(makeItem(&item, path, parent, pool));
    *baton = item;
    return (editorOf(*item).*Place)(path, item->folder->baton, source, sourceRevision, pool, &item->baton);
}

template <auto Place>
svn_error_t* openItem(const char* path, void* parent, svn_revnum_t revision, apr_pool_t* pool, void** baton)
{
    Item* item = nullptr;
    SVN_ERR(makeItem(&item, path, parent, pool));
    *baton = item;
    return (editorOf(*item).*Place)(path, item->folder->baton, revision, pool, &item->baton);
}

template <auto Place>
svn_error_t* tellAbsent(const char* path, void* parent, apr_pool_t* pool)
{
    const auto& folder = *static_cast<Item*>(parent);
    SVN_ERR(requireChild(folder.path, path));
    return (editorOf(folder).*Place)(path, folder.baton, pool);
}

template <auto Place>
svn_error_t* changeProperty(void* baton, const char* name, const svn_string_t* value, apr_pool_t* pool)
{
    const auto& item = *static_cast<Item*>(baton);
    return (editorOf(item).*Place)(item.baton, name, value, pool);
}

void leaveFolder(const Item& item)
{
    if (item.folder != nullptr) {
        --item.folder->openItems;
    }
}

svn_error_t* closeFolder(void* baton, apr_pool_t* pool)
{
    const auto& folder = *static_cast<Item*>(baton);
    if (folder.openItems > 0) {
        return refuseChange(folder.path, "is closed before what is in it");
    }
    leaveFolder(folder);
    return editorOf(folder).close_directory(folder.baton, pool);
}

svn_error_t* handleWindow(svn_txdelta_window_t* window, void* baton)
{
    auto& file = *static_cast<Item*>(baton);
    file.isInText = window != nullptr;
    return file.handler(window, file.handlerBaton);
}

svn_error_t* passTextDelta(void* baton, const char* checksum, apr_pool_t* pool, svn_txdelta_window_handler_t* handler,
                           void** handlerBaton)
{
    auto& file = *static_cast<Item*>(baton);
    SVN_ERR(editorOf(file).apply_textdelta(file.baton, checksum, pool, &file.handler, &file.handlerBaton));
    const bool isIgnored = file.handler == svn_delta_noop_window_handler; // which those who send texts look for
    file.isInText = !isIgnored;
    *handler = isIgnored ? file.handler : handleWindow;
    *handlerBaton = isIgnored ? file.handlerBaton : baton;
    return SVN_NO_ERROR;
}

svn_error_t* passEndOfFile(void* baton, const char* checksum, apr_pool_t* pool)
{
    const auto& file = *static_cast<Item*>(baton);
    if (file.isInText) {
        return refuseChange(file.path, "is closed before the end of its text");
    }
    leaveFolder(file);
    return editorOf(file).close_file(file.baton, checksum, pool);
}

template <auto Place>
svn_error_t* endDrive(void* baton, apr_pool_t* pool)
{
    const auto& driven = *static_cast<Driven*>(baton);
    return (driven.editor->*Place)(driven.baton, pool);
}

} // namespace

svn_error_t* requireChild(const char* folder, const char* path)
{
    std::string_view name = path;
    if (const std::string_view parent = folder; !parent.empty()) {
        const bool isBelow = name.starts_with(parent) && name.substr(parent.size()).starts_with('/');
        name.remove_prefix(isBelow ? parent.size() + 1 : name.size());
    }
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string_view::npos) {
        return svn_error_createf(SVN_ERR_RA_SVN_MALFORMED_DATA, nullptr,
                                 "The server tells of '%s' as of an item in the folder '%s'", path, folder);
    }
    return SVN_NO_ERROR;
}

void checkDrive(const svn_delta_editor_t** editor, void** baton, apr_pool_t* pool)
{
    auto* const checked = svn_delta_default_editor(pool);
    checked->set_target_revision = passTargetRevision;
    checked->open_root = passRoot;
    checked->delete_entry = passDeletion;
    checked->add_directory = addItem<&svn_delta_editor_t::add_directory>;
    checked->open_directory = openItem<&svn_delta_editor_t::open_directory>;
    checked->change_dir_prop = changeProperty<&svn_delta_editor_t::change_dir_prop>;
    checked->close_directory = closeFolder;
    checked->absent_directory = tellAbsent<&svn_delta_editor_t::absent_directory>;
    checked->add_file = addItem<&svn_delta_editor_t::add_file>;
    checked->open_file = openItem<&svn_delta_editor_t::open_file>;
    checked->apply_textdelta = passTextDelta;
    checked->change_file_prop = changeProperty<&svn_delta_editor_t::change_file_prop>;
    checked->close_file = passEndOfFile;
    checked->absent_file = tellAbsent<&svn_delta_editor_t::absent_file>;
    checked->close_edit = endDrive<&svn_delta_editor_t::close_edit>;
    checked->abort_edit = endDrive<&svn_delta_editor_t::abort_edit>;
    *baton = new (apr_palloc(pool, sizeof(Driven))) Driven{*editor, *baton};
    *editor = checked;
}

} // namespace HSVNAdapter

#endif
