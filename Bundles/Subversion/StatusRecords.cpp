#include "StatusRecords.h"

#ifdef HSVN_FAST_STATUS

#include "DatabaseConnections.h"
#include "FormerNodes.h"
#include "Internal/PathText.h"
#include "StatusEntries.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <sys/stat.h>
#include <system_error>

namespace HSVNAdapter {
namespace {

/// The walk asks once a folder whether it is cancelled; in a large folder that would be seldom.
constexpr std::size_t itemsBetweenQuestions = 256;

/// So many entries of a folder are read one by one before the rest are read together.
constexpr std::size_t mostSingleEntries = 6;

std::string_view folderOf(std::string_view path)
{
    const auto slash = HSVNPathText::lastSlash(path);
    return slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
}

std::string_view nameOf(std::string_view path) { return path.substr(HSVNPathText::lastSlash(path) + 1); }

bool isBelow(std::string_view path, std::string_view folder)
{
    return path.starts_with(folder) && (folder == "/" || (path.size() > folder.size() && path[folder.size()] == '/'));
}

svn_wc_status_kind withoutConflict(svn_wc_status_kind kind)
{
    return kind == svn_wc_status_normal || kind == svn_wc_status_modified ? kind : svn_wc_status_none;
}

bool isScheduled(svn_wc_status_kind kind)
{
    return kind == svn_wc_status_added || kind == svn_wc_status_deleted || kind == svn_wc_status_replaced;
}

bool isFolderOnDisk(const char* path)
{
    struct stat state
    {
    };
    return stat(path, &state) == 0 && S_ISDIR(state.st_mode);
}

/// All fields but the entry, the tree conflict, and what a conflict makes of the text and property status.
svn_wc_status2_t recordWithoutEntry(const svn_client_status_t& status)
{
    svn_wc_status2_t record{};
    record.copied = status.copied;
    record.switched = status.switched;
    record.locked = status.wc_is_locked;
    record.file_external = status.file_external;
    record.repos_lock = const_cast<svn_lock_t*>(status.repos_lock);
    record.ood_last_cmt_rev = status.ood_changed_rev;
    record.ood_last_cmt_date = status.ood_changed_date;
    record.ood_kind = status.ood_kind;
    record.ood_last_cmt_author = status.ood_changed_author;
    record.text_status = status.node_status == svn_wc_status_modified ? status.text_status : status.node_status;
    // The interface has no separate information for the properties of an addition.
    record.prop_status = status.node_status == svn_wc_status_added ? svn_wc_status_none : status.prop_status;
    record.repos_text_status =
        status.repos_node_status == svn_wc_status_modified || status.repos_node_status == svn_wc_status_conflicted
            ? status.repos_text_status
            : status.repos_node_status;
    record.repos_prop_status = status.repos_prop_status;
    record.pristine_text_status = withoutConflict(status.text_status);
    record.pristine_prop_status =
        isScheduled(status.node_status) ? svn_wc_status_none : withoutConflict(status.prop_status);
    return record;
}

} // namespace

/// A folder that the walk is in.
struct StatusRecords::Folder
{
    Folder(std::string_view folderPath, apr_pool_t* parentPool) : path{folderPath}, pool{svn_pool_create(parentPool)} {}
    ~Folder() { apr_pool_destroy(pool); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string path;
    apr_pool_t* pool;
    WorkingCopyDatabase* database = nullptr;
    std::optional<UnchangedNodes> nodes; ///< once it is read
    bool hasMore = false;                ///< of them, which come after these
    std::size_t entriesRead = 0;         ///< one by one
    svn_wc_adm_access_t* access = nullptr;
    apr_hash_t* entries = nullptr;
};

StatusRecords::StatusRecords(svn_client_ctx_t* ctx, const char* target, svn_boolean_t recurse, svn_boolean_t getAll,
                             svn_wc_status_func2_t receiver, void* baton, apr_pool_t* pool)
    : _ctx{ctx}, _target{target}, _readsFolders{getAll != FALSE}, _receiver{receiver}, _baton{baton}, _pool{pool}
{
    if (recurse && getAll) {
        startReadingAhead();
    }
}

StatusRecords::~StatusRecords() = default;

svn_error_t* StatusRecords::receive(void* baton, const char* path, const svn_client_status_t* status, apr_pool_t* pool)
{
    try {
        return static_cast<StatusRecords*>(baton)->receive(path, *status, pool);
    } catch (const std::exception& exception) { // out of memory: it must not pass through Subversion
        return svn_error_create(SVN_ERR_WC_CORRUPT, nullptr, exception.what());
    }
}

svn_error_t* StatusRecords::receive(const char* path, const svn_client_status_t& status, apr_pool_t* pool)
{
    if (++_received % itemsBetweenQuestions == 0 && _ctx->cancel_func != nullptr) {
        SVN_ERR(_ctx->cancel_func(_ctx->cancel_baton));
    }
    svn_wc_status2_t record = recordWithoutEntry(status);
    if (status.repos_relpath != nullptr) {
        record.url = _urls.url(status.repos_root_url, status.repos_relpath, pool);
    }
    std::optional<svn_wc_entry_t> entry;
    svn_error_t* error = SVN_NO_ERROR;
    if (status.conflicted) {
        error = readConflicts(record, path, status, pool);
    } else if (status.versioned) {
        entry = makeEntry(path, record.url, status, pool);
        if (entry) {
            record.entry = &*entry;
        } else {
            error = readEntry(&record.entry, path, status, pool);
        }
    }
    if (svn_error_find_cause(error, SVN_ERR_ASSERTION_FAIL) != nullptr) {
        svn_error_clear(error);
        error = completeAsReported(record, entry, path, status, pool);
    }
    SVN_ERR(error);
    _receiver(_baton, path, &record);
    return SVN_NO_ERROR;
}

/// The older functions stop at a tree conflict over what is neither file nor folder, and at its neighbours.
svn_error_t* StatusRecords::completeAsReported(svn_wc_status2_t& record, std::optional<svn_wc_entry_t>& entry,
                                               const char* path, const svn_client_status_t& status, apr_pool_t* pool)
{
    if (status.versioned) {
        svn_client_status_t completed = status;
        if (isScheduled(status.node_status) && status.node_status != svn_wc_status_added && !status.copied) {
            FormerNodes{pool}.complete(completed, pool);
        }
        entry = reportedEntry(path, record.url, completed);
        record.entry = &*entry;
    }
    if (!status.conflicted) {
        return SVN_NO_ERROR;
    }
    svn_boolean_t isTree = FALSE;
    SVN_ERR(svn_wc_conflicted_p3(nullptr, nullptr, &isTree, _ctx->wc_ctx, path, pool));
    if (isTree) {
        record.tree_conflict = svn_wc_conflict_description_create_tree(path, nullptr, status.kind,
                                                                       svn_wc_operation_none, nullptr, nullptr, pool);
    }
    if (status.node_status == svn_wc_status_conflicted) {
        record.text_status = status.text_status;
    }
    return SVN_NO_ERROR;
}

std::optional<svn_wc_entry_t> StatusRecords::makeEntry(const char* path, const char* url,
                                                       const svn_client_status_t& status, apr_pool_t* pool)
{
    if (status.file_external || url == nullptr) {
        return std::nullopt;
    }
    if (status.copied) {
        return makeCopiedEntry(path, url, status, pool);
    }
    switch (status.node_status) {
    case svn_wc_status_normal:
    case svn_wc_status_modified:
        return makeUnchangedEntry(path, url, status, pool);
    case svn_wc_status_missing:
        return status.kind == svn_node_file ? makeUnchangedEntry(path, url, status, pool) : std::nullopt;
    case svn_wc_status_added:
        return makeAdditionEntry(path, url, status);
    case svn_wc_status_replaced:
        return makeReplacementEntry(path, url, status);
    case svn_wc_status_deleted:
        return makeDeletionEntry(path, status, pool);
    default:
        return std::nullopt;
    }
}

std::optional<svn_wc_entry_t> StatusRecords::makeUnchangedEntry(const char* path, const char* url,
                                                                const svn_client_status_t& status, apr_pool_t* pool)
{
    UnchangedNode single;
    const auto* node = unchangedNode(single, path, status.kind);
    if (node == nullptr || node->revision != status.revision || node->changedRevision != status.changed_rev) {
        return std::nullopt;
    }
    return unchangedEntry(*node, path, url, status, pool);
}

std::optional<svn_wc_entry_t> StatusRecords::makeAdditionEntry(const char* path, const char* url,
                                                               const svn_client_status_t& status)
{
    auto* database = folder(folderOf(path)).database;
    if (database == nullptr || !database->isPlainAddition(database->relativePathOf(path))) {
        return std::nullopt;
    }
    return additionEntry(path, url, status);
}

std::optional<svn_wc_entry_t> StatusRecords::makeReplacementEntry(const char* path, const char* url,
                                                                  const svn_client_status_t& status)
{
    auto* database = folder(folderOf(path)).database;
    const auto replaced =
        database != nullptr ? database->plainlyReplaced(database->relativePathOf(path)) : std::nullopt;
    return replaced ? std::optional{replacementEntry(*replaced, path, url, status)} : std::nullopt;
}

std::optional<svn_wc_entry_t> StatusRecords::makeCopiedEntry(const char* path, const char* url,
                                                             const svn_client_status_t& status, apr_pool_t* pool)
{
    auto* database = folder(folderOf(path)).database;
    const bool isAsCopied = status.node_status == svn_wc_status_normal || status.node_status == svn_wc_status_modified;
    const auto node =
        database != nullptr && isAsCopied ? database->copiedNode(database->relativePathOf(path)) : std::nullopt;
    return node && node->changedRevision == status.changed_rev
               ? std::optional{copiedEntry(*node, path, url, status, pool)}
               : std::nullopt;
}

std::optional<svn_wc_entry_t> StatusRecords::makeDeletionEntry(const char* path, const svn_client_status_t& status,
                                                               apr_pool_t* pool)
{
    auto* database = folder(folderOf(path)).database;
    if (database == nullptr || isFolderOnDisk(path)) {
        return std::nullopt;
    }
    const auto node = database->deletedNode(database->relativePathOf(path), pool);
    if (!node || std::strcmp(node->repositoryRoot, status.repos_root_url) != 0) {
        return std::nullopt;
    }
    return deletionEntry(*node, path, status, pool);
}

const UnchangedNode* StatusRecords::unchangedNode(UnchangedNode& single, const char* path, svn_node_kind_t kind)
{
    const bool isFolder = kind == svn_node_dir;
    if (_readsFolders && path != _target) {
        auto& parent = folder(folderOf(path));
        if (const auto* node = nodeIn(parent, nameOf(path))) {
            if (isFolder) { // another working copy's root would be in the way of its parent's item
                _asked = {path, false};
            }
            return node;
        }
    }
    const bool isRootItself = isFolder && isRoot(path);
    if (_readsFolders && path != _target && !isRootItself) {
        return nullptr;
    }
    const auto& holder = folder(isRootItself ? std::string_view{path} : folderOf(path));
    const auto found =
        holder.database != nullptr ? holder.database->node(holder.database->relativePathOf(path)) : std::nullopt;
    single = found.value_or(UnchangedNode{});
    return found ? &single : nullptr;
}

/// The unchanged item of that name; null for none.
const UnchangedNode* StatusRecords::nodeIn(Folder& folder, std::string_view name)
{
    if (folder.database == nullptr) {
        return nullptr;
    }
    if (!folder.nodes) {
        takeNodes(folder);
    }
    while (folder.hasMore && folder.nodes->endBefore(name)) {
        takeNodes(folder);
    }
    return folder.nodes->find(name);
}

svn_error_t* StatusRecords::readEntry(const svn_wc_entry_t** entry, const char* path, const svn_client_status_t& status,
                                      apr_pool_t* pool)
{
    svn_node_kind_t kindOnDisk = svn_node_none;
    svn_boolean_t isSpecial = FALSE;
    SVN_ERR(svn_io_check_special_path(path, &kindOnDisk, &isSpecial, pool));
    // A folder on disk tells of itself; whatever is missing or in another's way is told of by its folder. A root that a
    // link leads to is a folder on disk, and what the link lies in knows nothing of it.
    const bool tellsOfItself = status.kind == svn_node_dir && (kindOnDisk == svn_node_dir || isRoot(path));
    // One by one as long as reading all of the folder's would take longer.
    if (!tellsOfItself && ++folder(folderOf(path)).entriesRead > mostSingleEntries) {
        *entry = entryInFolder(path);
        if (*entry != nullptr) {
            return SVN_NO_ERROR;
        }
    }
    svn_wc_status2_t* record = nullptr;
    SVN_ERR(readRecord(&record, path, pool));
    // Of what a copy lacks, such as what the server withholds, its folder alone tells.
    *entry = record->entry != nullptr ? record->entry : entryInFolder(path);
    return SVN_NO_ERROR;
}

const svn_wc_entry_t* StatusRecords::entryInFolder(const char* path)
{
    auto& teller = folder(folderOf(path));
    svn_error_t* const error = readEntries(teller);
    svn_error_clear(error);
    return error != nullptr ? nullptr
                            : static_cast<const svn_wc_entry_t*>(
                                  apr_hash_get(teller.entries, nameOf(path).data(), APR_HASH_KEY_STRING));
}

svn_error_t* StatusRecords::openFolder(Folder& folder)
{
    if (folder.access == nullptr && _opener != nullptr && _openerPath == folder.path) {
        folder.access = _opener;
    }
    if (folder.access != nullptr) {
        return SVN_NO_ERROR;
    }
    // All share the first one's database.
    SVN_ERR(svn_wc_adm_open3(&folder.access, _opener, folder.path.c_str(), FALSE, 0, _ctx->cancel_func,
                             _ctx->cancel_baton, _opener != nullptr ? folder.pool : _pool));
    if (_opener == nullptr) {
        _opener = folder.access;
        _openerPath = folder.path;
    }
    return SVN_NO_ERROR;
}

svn_error_t* StatusRecords::readEntries(Folder& folder)
{
    if (folder.entries == nullptr) {
        SVN_ERR(openFolder(folder));
        SVN_ERR(svn_wc_entries_read(&folder.entries, folder.access, TRUE, folder.pool));
    }
    return SVN_NO_ERROR;
}

svn_error_t* StatusRecords::readConflicts(svn_wc_status2_t& record, const char* path, const svn_client_status_t& status,
                                          apr_pool_t* pool)
{
    // A root that a link leads to is only a link to the older function.
    if (status.kind == svn_node_file && folder(folderOf(path)).entriesRead < mostSingleEntries) {
        ++folder(folderOf(path)).entriesRead;
        return readConflictedRecord(record, path, status, pool);
    }
    svn_boolean_t isText = FALSE;
    svn_boolean_t isProperty = FALSE;
    svn_boolean_t isTree = FALSE;
    SVN_ERR(svn_wc_conflicted_p3(&isText, &isProperty, &isTree, _ctx->wc_ctx, path, pool));
    if (status.node_status == svn_wc_status_conflicted && !isTree && (isText || isProperty)) {
        SVN_ERR(readEntry(&record.entry, path, status, pool));
    }
    if (record.entry == nullptr || record.entry->schedule != svn_wc_schedule_normal) {
        return readConflictedRecord(record, path, status, pool);
    }
    record.text_status = isText ? svn_wc_status_conflicted : status.text_status;
    if (isText) {
        svn_boolean_t isModified = FALSE;
        SVN_ERR(svn_wc_text_modified_p2(&isModified, _ctx->wc_ctx, path, FALSE, pool));
        record.pristine_text_status = isModified ? svn_wc_status_modified : svn_wc_status_normal;
    }
    if (isProperty) {
        record.prop_status = svn_wc_status_conflicted;
        record.pristine_prop_status = record.entry->has_prop_mods ? svn_wc_status_modified
                                      : record.entry->has_props   ? svn_wc_status_normal
                                                                  : svn_wc_status_none;
    }
    return SVN_NO_ERROR;
}

svn_error_t* StatusRecords::readConflictedRecord(svn_wc_status2_t& record, const char* path,
                                                 const svn_client_status_t& status, apr_pool_t* pool)
{
    svn_wc_status2_t* local = nullptr;
    SVN_ERR(readRecord(&local, path, pool));
    record.entry = local->entry;
    record.tree_conflict = local->tree_conflict;
    // A victim that is nowhere is missing to whoever looks for it.
    const bool isNowhere = local->text_status == svn_wc_status_none && local->tree_conflict != nullptr;
    record.text_status = isNowhere ? svn_wc_status_missing : local->text_status;
    record.prop_status = local->prop_status;
    record.pristine_text_status = local->pristine_text_status;
    record.pristine_prop_status = local->pristine_prop_status;
    // What is in the way of an item does not end its conflict.
    if (local->text_status == svn_wc_status_obstructed && status.node_status == svn_wc_status_conflicted) {
        record.text_status = status.text_status;
        record.prop_status = status.prop_status;
    }
    return SVN_NO_ERROR;
}

svn_error_t* StatusRecords::readRecord(svn_wc_status2_t** record, const char* path, apr_pool_t* pool)
{
    if (_opener == nullptr) {
        SVN_ERR(openNear(path));
    }
    return svn_wc_status2(record, path, _opener, pool);
}

/// Opens the folder of an item that is asked for, whose database answers for all others.
svn_error_t* StatusRecords::openNear(const char* path)
{
    // Any folder of the working copy that is on disk opens it; a root may be reached through a link from outside.
    std::string_view opener = isRoot(path) ? std::string_view{path} : folderOf(path);
    svn_error_t* const error = openFolder(folder(opener));
    bool isOpen = error == nullptr;
    while (!isOpen && opener != "/") {
        opener = folderOf(opener);
        svn_error_t* const further = openFolder(folder(opener)); // the nearest folder's tells most
        isOpen = further == nullptr;
        svn_error_clear(further);
    }
    if (isOpen) {
        svn_error_clear(error);
        return SVN_NO_ERROR;
    }
    return error;
}

void StatusRecords::startReadingAhead()
{
    const auto* database = databaseFor(_target);
    if (database == nullptr || !isWorthThreads(database->file())) {
        return;
    }
    try {
        _ahead = std::make_unique<NodesAhead>(*database, std::string{database->relativePathOf(_target)});
    } catch (const std::system_error&) {
        // No thread to be had: the walk reads for itself.
    }
}

void StatusRecords::takeNodes(Folder& folder)
{
    const std::string path{folder.database->relativePathOf(folder.path)};
    auto portion = _ahead && _ahead->root() == folder.database->root() ? _ahead->take(path) : std::nullopt;
    folder.nodes = portion ? std::move(portion->nodes) : folder.database->takeNodesInFolder(path);
    folder.hasMore = portion && !portion->isLast;
}

/// Whether a working copy has its root in the folder.
bool StatusRecords::isRoot(std::string_view path)
{
    // A folder is asked for as an item and then for what it holds.
    if (_asked.first != path) {
        struct stat state
        {
        };
        _asked.first = path;
        _asked.second = stat((_asked.first + "/" + svn_wc_get_adm_dir(_pool)).c_str(), &state) == 0;
    }
    return _asked.second;
}

StatusRecords::Folder& StatusRecords::folder(std::string_view path)
{
    while (!_folders.empty() && _folders.back()->path != path && !isBelow(path, _folders.back()->path)) {
        _folders.pop_back();
    }
    if (_folders.empty() || _folders.back()->path != path) {
        auto added = std::make_unique<Folder>(path, _pool);
        added->database = databaseFor(path);
        _folders.push_back(std::move(added));
    }
    return *_folders.back();
}

WorkingCopyDatabase* StatusRecords::databaseFor(std::string_view folderPath)
{
    std::string_view root = folderPath;
    while (!isRoot(root)) {
        if (root == "/") {
            return nullptr;
        }
        root = folderOf(root);
        // The walk's present folder has been looked at.
        if (!_folders.empty() && _folders.back()->path == root) {
            return _folders.back()->database;
        }
    }
    for (const auto& [knownRoot, database] : _databases) {
        if (knownRoot == root) {
            return database.get();
        }
    }
    return _databases.emplace_back(root, WorkingCopyDatabase::open(std::string{root}, _pool)).second.get();
}

} // namespace HSVNAdapter

#endif
