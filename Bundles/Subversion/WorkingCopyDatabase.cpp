#include "WorkingCopyDatabase.h"

#ifdef HSVN_FAST_STATUS

#include "DatabaseConnections.h"
#include "WorkingCopyPlace.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace HSVNAdapter {

struct NodeColumns
{
    int revision;
    int changedRevision;
    int textTime;
    int textSize;
    int pristine;
};

namespace {

constexpr std::size_t smallestBatch = 16;
constexpr std::size_t largestBatch = 8192;

enum Column
{
    ColumnRelativePath,
    ColumnParentPath,
    ColumnOperationDepth,
    ColumnPresence,
    ColumnFileExternal,
    ColumnRevision,
    ColumnChangedRevision,
    ColumnTextTime,
    ColumnTextSize,
    ColumnPristine
};

#define HSVN_NODES                                                                                                     \
    "SELECT local_relpath, parent_relpath, op_depth, presence, file_external, revision, changed_revision,"             \
    " last_mod_time, translated_size, checksum FROM nodes WHERE wc_id = 1 AND "

constexpr const char* nodeQuery = HSVN_NODES "local_relpath = ?1 ORDER BY op_depth";
constexpr const char* foldersQuery = HSVN_NODES "parent_relpath >= ?1 ORDER BY parent_relpath, local_relpath, op_depth";
// A folder tells of the tree conflicts of what it holds. A conflict of another kind that only mentions the words sends
// the folder the slow way.
constexpr const char* conflictQuery =
    "SELECT local_relpath FROM actual_node WHERE wc_id = 1 AND conflict_data IS NOT NULL UNION ALL"
    " SELECT parent_relpath FROM actual_node WHERE wc_id = 1 AND instr(conflict_data, CAST('(tree ' AS BLOB)) > 0";

enum ScheduledColumn
{
    ScheduledOperationDepth,
    ScheduledPresence,
    ScheduledFileExternal,
    ScheduledRepositoryRoot,
    ScheduledRepositoryPath,
    ScheduledRevision,
    ScheduledChangedRevision,
    ScheduledChangedDate,
    ScheduledChangedAuthor,
    ScheduledPropertiesLength,
    ScheduledDepth,
    ScheduledTextTime,
    ScheduledTextSize,
    ScheduledPristine
};

constexpr const char* scheduledQuery =
    "SELECT op_depth, presence, file_external, root, repos_path, revision, changed_revision, changed_date,"
    " changed_author, length(properties), depth, last_mod_time, translated_size, checksum"
    " FROM nodes LEFT JOIN repository ON repository.id = repos_id"
    " WHERE wc_id = 1 AND local_relpath = ?1 ORDER BY op_depth";

constexpr NodeColumns plainColumns{ColumnRevision, ColumnChangedRevision, ColumnTextTime, ColumnTextSize,
                                   ColumnPristine};
constexpr NodeColumns scheduledColumns{ScheduledRevision, ScheduledChangedRevision, ScheduledTextTime,
                                       ScheduledTextSize, ScheduledPristine};

/// Properties of so many bytes, "()", are none.
constexpr int lengthOfNoProperties = 2;

bool isNull(sqlite3_stmt* row, int column) { return sqlite3_column_type(row, column) == SQLITE_NULL; }

std::int64_t numberIn(sqlite3_stmt* row, int column, std::int64_t forNull)
{
    const std::int64_t number = sqlite3_column_int64(row, column);
    return number == 0 && isNull(row, column) ? forNull : number;
}

/// The column's text in the pool; null for NULL.
const char* copiedText(sqlite3_stmt* row, int column, apr_pool_t* pool)
{
    const auto text = textInColumn(row, column);
    return isNull(row, column) ? nullptr : apr_pstrmemdup(pool, text.data(), text.size());
}

bool hasNext(sqlite3_stmt* row) { return sqlite3_step(row) == SQLITE_ROW; }
bool isLast(sqlite3_stmt* row) { return sqlite3_step(row) == SQLITE_DONE; }

bool hasPresence(sqlite3_stmt* row, std::string_view presence)
{
    return textInColumn(row, ScheduledPresence) == presence;
}

/// Whether the row is of an item as it came from the repository, and whole.
bool isPlainBase(sqlite3_stmt* row)
{
    const auto depth = textInColumn(row, ScheduledDepth);
    return sqlite3_column_int(row, ScheduledOperationDepth) == 0 && hasPresence(row, "normal") &&
           isNull(row, ScheduledFileExternal) && !isNull(row, ScheduledRepositoryRoot) &&
           !isNull(row, ScheduledRepositoryPath) && (depth.empty() || depth == "infinity");
}

bool isAddedWithoutHistory(sqlite3_stmt* row)
{
    return sqlite3_column_int(row, ScheduledOperationDepth) > 0 && hasPresence(row, "normal") &&
           isNull(row, ScheduledRepositoryPath) && isNull(row, ScheduledPristine);
}

bool isCopied(sqlite3_stmt* row)
{
    return sqlite3_column_int(row, ScheduledOperationDepth) > 0 && hasPresence(row, "normal") &&
           isNull(row, ScheduledFileExternal) && !isNull(row, ScheduledRepositoryPath);
}

/// The path's so many first components; all of them when there are fewer.
std::string_view upperPath(std::string_view path, int components)
{
    std::size_t end = 0;
    for (int count = 0; count < components && end != std::string_view::npos; ++count) {
        end = path.find('/', count == 0 ? 0 : end + 1);
    }
    return path.substr(0, end);
}

/// The name of a folder's item; empty in the row of a damaged database, where an item's path may not be longer.
std::string_view nameIn(sqlite3_stmt* row, std::size_t folderLength)
{
    const auto path = textInColumn(row, ColumnRelativePath);
    return path.substr(std::min(path.size(), folderLength == 0 ? 0 : folderLength + 1));
}

/// Whether no folder that comes after this one in the order of bytes can lie below the first.
bool isBeyond(std::string_view folder, std::string_view first)
{
    return !first.empty() && !folder.starts_with(first) && folder > first;
}

} // namespace

std::unique_ptr<WorkingCopyDatabase> WorkingCopyDatabase::open(const std::string& root, apr_pool_t* pool)
{
    const std::string file = databaseOf(root, pool);
    return withConnection(root, file, takeDatabase(file, pool));
}

std::unique_ptr<WorkingCopyDatabase> WorkingCopyDatabase::openFile(const std::string& root, const std::string& file)
{
    return withConnection(root, file, openDatabase(file));
}

std::unique_ptr<WorkingCopyDatabase>
WorkingCopyDatabase::withConnection(const std::string& root, const std::string& file, SQLiteDatabase connection)
{
    auto database = std::make_unique<WorkingCopyDatabase>();
    database->_root = root;
    database->_file = file;
    database->_database = std::move(connection);
    return database->_database && database->prepare() ? std::move(database) : nullptr;
}

std::string_view WorkingCopyDatabase::relativePathOf(std::string_view path) const
{
    path.remove_prefix(std::min(_root.size(), path.size()));
    return path.starts_with('/') ? path.substr(1) : path;
}

bool WorkingCopyDatabase::prepare()
{
    _node = prepareStatement(_database.get(), nodeQuery);
    _folders = prepareStatement(_database.get(), foldersQuery);
    return _node && _folders && _checksums.open(_database.get()) && readConflicts();
}

bool WorkingCopyDatabase::readConflicts()
{
    const auto rows = prepareStatement(_database.get(), conflictQuery);
    if (!rows) {
        return false;
    }
    int result = SQLITE_DONE;
    while ((result = sqlite3_step(rows.get())) == SQLITE_ROW) {
        _conflicted.emplace(textInColumn(rows.get(), 0));
    }
    return result == SQLITE_DONE;
}

bool WorkingCopyDatabase::hasConflict(std::string_view relativePath) const
{
    return !_conflicted.empty() && _conflicted.contains(relativePath);
}

bool WorkingCopyDatabase::isUnchanged(sqlite3_stmt* row, std::string_view relativePath) const
{
    return sqlite3_column_int(row, ColumnOperationDepth) == 0 && textInColumn(row, ColumnPresence) == "normal" &&
           isNull(row, ColumnFileExternal) && !hasConflict(relativePath);
}

std::optional<UnchangedNode> WorkingCopyDatabase::node(std::string_view relativePath)
{
    auto* row = _node.get();
    sqlite3_bind_text(row, 1, relativePath.data(), static_cast<int>(relativePath.size()), SQLITE_STATIC);
    std::optional<UnchangedNode> result;
    if (sqlite3_step(row) == SQLITE_ROW && isUnchanged(row, relativePath)) {
        result = nodeIn(row, plainColumns);
        // Any further row is of something scheduled.
        if (sqlite3_step(row) != SQLITE_DONE) {
            result.reset();
        }
    }
    sqlite3_reset(row);
    return result;
}

sqlite3_stmt* WorkingCopyDatabase::scheduledRows(std::string_view relativePath)
{
    if (!_scheduled) {
        _scheduled = prepareStatement(_database.get(), scheduledQuery);
    }
    if (_scheduled) {
        sqlite3_bind_text(_scheduled.get(), 1, relativePath.data(), static_cast<int>(relativePath.size()),
                          SQLITE_STATIC);
    }
    return _scheduled.get();
}

template <class Read>
auto WorkingCopyDatabase::readRows(std::string_view relativePath, Read read)
{
    auto* row = scheduledRows(relativePath);
    auto result = row == nullptr ? decltype(read(row)){} : read(row);
    sqlite3_reset(row);
    return result;
}

template <class Read>
auto WorkingCopyDatabase::readScheduled(std::string_view relativePath, Read read)
{
    return hasConflict(relativePath) ? std::invoke_result_t<Read, sqlite3_stmt*>{} : readRows(relativePath, read);
}

std::optional<DeletedNode> WorkingCopyDatabase::deletedNode(std::string_view relativePath, apr_pool_t* pool)
{
    return readScheduled(relativePath, [&](sqlite3_stmt* row) {
        std::optional<DeletedNode> node;
        if (hasNext(row) && isPlainBase(row)) {
            node = deletedNodeIn(row, pool);
        }
        return node && hasNext(row) && hasPresence(row, "base-deleted") && isLast(row) ? node : std::nullopt;
    });
}

std::optional<DeletedNode> WorkingCopyDatabase::baseBelow(std::string_view relativePath, apr_pool_t* pool)
{
    return readRows(relativePath, [&](sqlite3_stmt* row) -> std::optional<DeletedNode> {
        if (!hasNext(row)) {
            return std::nullopt;
        }
        const bool isBase = sqlite3_column_int(row, ScheduledOperationDepth) == 0;
        const auto base = isBase ? deletedNodeIn(row, pool) : DeletedNode{};
        return hasNext(row) && isLast(row) ? base : DeletedNode{};
    });
}

std::optional<svn_wc_schedule_t> WorkingCopyDatabase::scheduleOf(std::string_view relativePath)
{
    return readRows(relativePath, [&](sqlite3_stmt* row) {
        std::optional<svn_wc_schedule_t> schedule;
        for (bool wasThere = false; hasNext(row);) {
            const int depth = sqlite3_column_int(row, ScheduledOperationDepth);
            const bool isThere = hasPresence(row, "normal") || hasPresence(row, "incomplete");
            // What came with a folder is scheduled with it alone.
            const bool isItself = depth > 0 && upperPath(relativePath, depth) == relativePath;
            schedule = depth > 0 && !isThere ? svn_wc_schedule_delete
                       : !isItself           ? svn_wc_schedule_normal
                       : wasThere            ? svn_wc_schedule_replace
                                             : svn_wc_schedule_add;
            wasThere = isThere;
        }
        return schedule;
    });
}

bool WorkingCopyDatabase::isPlainAddition(std::string_view relativePath)
{
    return readScheduled(relativePath,
                         [](sqlite3_stmt* row) { return hasNext(row) && isAddedWithoutHistory(row) && isLast(row); });
}

std::optional<svn_revnum_t> WorkingCopyDatabase::plainlyReplaced(std::string_view relativePath)
{
    return readScheduled(relativePath, [](sqlite3_stmt* row) {
        std::optional<svn_revnum_t> revision;
        if (hasNext(row) && isPlainBase(row)) {
            revision = static_cast<svn_revnum_t>(numberIn(row, ScheduledRevision, SVN_INVALID_REVNUM));
        }
        return revision && hasNext(row) && isAddedWithoutHistory(row) && isLast(row) ? revision : std::nullopt;
    });
}

std::optional<UnchangedNode> WorkingCopyDatabase::copiedNode(std::string_view relativePath)
{
    std::string_view copy;
    std::string source;
    const auto node = readScheduled(relativePath, [&](sqlite3_stmt* row) {
        std::optional<UnchangedNode> only;
        if (hasNext(row) && isCopied(row)) {
            copy = upperPath(relativePath, sqlite3_column_int(row, ScheduledOperationDepth));
            source = textInColumn(row, ScheduledRepositoryPath);
            only = nodeIn(row, scheduledColumns);
        }
        return only && isLast(row) ? only : std::nullopt;
    });
    // What was copied from elsewhere or another revision than the copy's root tells of itself.
    const bool isOfTheCopy = node && copy.size() < relativePath.size() && copiedFrom(copy) &&
                             _copy.revision == node->revision &&
                             source == _copy.source + std::string{relativePath.substr(copy.size())};
    return isOfTheCopy ? node : std::nullopt;
}

bool WorkingCopyDatabase::copiedFrom(std::string_view copy)
{
    if (_copy.path != copy) {
        _copy = {};
        _copy.path = copy;
        auto* row = hasConflict(copy) ? nullptr : scheduledRows(copy);
        while (row != nullptr && sqlite3_step(row) == SQLITE_ROW) {
            if (upperPath(copy, sqlite3_column_int(row, ScheduledOperationDepth)) == copy && isCopied(row)) {
                _copy.source = textInColumn(row, ScheduledRepositoryPath);
                _copy.revision = static_cast<svn_revnum_t>(numberIn(row, ScheduledRevision, SVN_INVALID_REVNUM));
            }
        }
        sqlite3_reset(row);
    }
    return !_copy.source.empty();
}

UnchangedNodes WorkingCopyDatabase::takeNodesInFolder(const std::string& relativePath)
{
    auto found = _batch.find(relativePath);
    if (found == _batch.end()) {
        readBatch(relativePath);
        found = _batch.find(relativePath);
    }
    if (found == _batch.end()) {
        return {};
    }
    auto nodes = std::move(found->second);
    _batch.erase(found);
    return nodes;
}

void WorkingCopyDatabase::readBatch(const std::string& first)
{
    const bool lastWasUsed = 2 * _batch.size() <= _foldersInBatch;
    _nodesInBatch = std::clamp(lastWasUsed ? 2 * _nodesInBatch : _nodesInBatch / 2, smallestBatch, largestBatch);
    _batch.clear();
    std::size_t nodesRead = 0;
    const auto whole = std::numeric_limits<std::size_t>::max();
    readFolders(first, first, whole, [&](const std::string& folder, UnchangedNodes&& nodes, bool) {
        nodesRead += nodes.size() + 1;
        _batch[folder] = std::move(nodes);
        return nodesRead < _nodesInBatch;
    });
    _foldersInBatch = _batch.size();
}

std::optional<std::string> WorkingCopyDatabase::readFolders(const std::string& top, const std::string& from,
                                                            std::size_t most, const FolderReceiver& receiver)
{
    auto* row = _folders.get();
    sqlite3_bind_text(row, 1, from.data(), static_cast<int>(from.size()), SQLITE_STATIC);
    std::string folder = from;
    UnchangedNodes nodes;
    std::optional<std::string> next;
    int result = SQLITE_DONE;
    while (!next && (result = sqlite3_step(row)) == SQLITE_ROW) {
        if (const auto parent = textInColumn(row, ColumnParentPath); parent != folder) {
            if (isBeyond(parent, top)) {
                break;
            }
            UnchangedNodes following;
            following.reserveAs(nodes);
            if (!receiver(folder, std::exchange(nodes, std::move(following)), true)) {
                next = parent;
            }
            folder = parent;
        } else if (nodes.size() >= most && !nodes.isLast(nameIn(row, folder.size()))) {
            receiver(folder, std::exchange(nodes, {}), false);
        }
        addRow(nodes, row, folder.size());
    }
    sqlite3_reset(row);
    if (!next && (result == SQLITE_DONE || result == SQLITE_ROW)) {
        receiver(folder, std::move(nodes), true);
    }
    return next;
}

void WorkingCopyDatabase::addRow(UnchangedNodes& nodes, sqlite3_stmt* row, std::size_t folderLength)
{
    const auto name = nameIn(row, folderLength);
    if (name.empty()) {
        return;
    }
    if (isUnchanged(row, textInColumn(row, ColumnRelativePath))) {
        nodes.add(name, nodeIn(row, plainColumns));
    } else if (nodes.isLast(name)) { // something is scheduled for the item
        nodes.dropLast();
    }
}

UnchangedNode WorkingCopyDatabase::nodeIn(sqlite3_stmt* row, const NodeColumns& columns)
{
    UnchangedNode node;
    node.revision = static_cast<svn_revnum_t>(numberIn(row, columns.revision, SVN_INVALID_REVNUM));
    node.changedRevision = static_cast<svn_revnum_t>(numberIn(row, columns.changedRevision, SVN_INVALID_REVNUM));
    node.textTime = numberIn(row, columns.textTime, 0);
    node.textSize = numberIn(row, columns.textSize, -1);
    if (const auto sha1 = sha1DigestFromText(textInColumn(row, columns.pristine))) {
        node.checksum = _checksums.md5(*sha1);
    }
    return node;
}

DeletedNode WorkingCopyDatabase::deletedNodeIn(sqlite3_stmt* row, apr_pool_t* pool)
{
    DeletedNode node;
    node.repositoryRoot = copiedText(row, ScheduledRepositoryRoot, pool);
    node.repositoryPath = copiedText(row, ScheduledRepositoryPath, pool);
    node.revision = static_cast<svn_revnum_t>(numberIn(row, ScheduledRevision, SVN_INVALID_REVNUM));
    node.changedRevision = static_cast<svn_revnum_t>(numberIn(row, ScheduledChangedRevision, SVN_INVALID_REVNUM));
    node.changedDate = numberIn(row, ScheduledChangedDate, 0);
    node.changedAuthor = copiedText(row, ScheduledChangedAuthor, pool);
    node.hasProperties = sqlite3_column_int(row, ScheduledPropertiesLength) > lengthOfNoProperties;
    if (const auto sha1 = sha1DigestFromText(textInColumn(row, ScheduledPristine))) {
        node.checksum = _checksums.md5(*sha1);
    }
    return node;
}

} // namespace HSVNAdapter

#endif
