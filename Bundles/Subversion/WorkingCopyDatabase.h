#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

#include "PristineChecksums.h"
#include "SQLiteHandles.h"
#include "UnchangedNodes.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace HSVNAdapter {

/// What a status walk does not tell of a deleted item. The texts live in the caller's pool.
struct DeletedNode
{
    const char* repositoryRoot = nullptr;
    const char* repositoryPath = nullptr;
    svn_revnum_t revision = SVN_INVALID_REVNUM;
    svn_revnum_t changedRevision = SVN_INVALID_REVNUM;
    apr_time_t changedDate = 0;
    const char* changedAuthor = nullptr; ///< may be null
    bool hasProperties = false;
    std::optional<MD5Digest> checksum; ///< none for folders
};

/// Where a row has what is known of an unchanged item.
struct NodeColumns;

/// Reads a working copy's database, read-only, beside the library that owns it; for one thread.
///
/// Only the format whose tables are known is opened. Items that anything is scheduled for, that are incomplete, absent,
/// conflicted or file externals are not answered as unchanged, nor are folders with a tree conflict among their
/// children: of those an entry tells more than a row does.
class WorkingCopyDatabase
{
  public:
    /// The database of the working copy with this root; null when it cannot be used. A connection left in the pool is
    /// taken.
    static std::unique_ptr<WorkingCopyDatabase> open(const std::string& root, apr_pool_t* pool);
    /// The same with the database's file, without Subversion's help.
    static std::unique_ptr<WorkingCopyDatabase> openFile(const std::string& root, const std::string& file);

    const std::string& root() const { return _root; }
    const std::string& file() const { return _file; }
    /// The name by which the database knows an item of the working copy; empty for the root.
    std::string_view relativePathOf(std::string_view path) const;

    /// Prepares for reading all items rather than a few of them.
    void expectAllNodes() { _checksums.expectAll(); }

    /// One item, by its path below the root ("" for the root itself).
    std::optional<UnchangedNode> node(std::string_view relativePath);
    /// The base of an item that is deleted, with nothing else in its place and no history of copies; by its path below
    /// the root.
    std::optional<DeletedNode> deletedNode(std::string_view relativePath, apr_pool_t* pool);
    /// The base of an item for which one thing alone is scheduled, whatever it is and also in conflict; without a
    /// revision when there is no such base. Nothing when the item cannot be read.
    std::optional<DeletedNode> baseBelow(std::string_view relativePath, apr_pool_t* pool);
    /// What is scheduled for an item, whatever it is and also in conflict. Nothing when it cannot be read.
    std::optional<svn_wc_schedule_t> scheduleOf(std::string_view relativePath);
    /// Whether an item was added without a history where nothing was before.
    bool isPlainAddition(std::string_view relativePath);
    /// The revision of what an item was in whose place another was added without a history.
    std::optional<svn_revnum_t> plainlyReplaced(std::string_view relativePath);
    /// One item that came with the copy of a folder, whole and of one revision with it.
    std::optional<UnchangedNode> copiedNode(std::string_view relativePath);
    /// All unchanged items of a folder; nothing when reading fails.
    ///
    /// Folders are read in batches, in the order in which a walk goes on, so that a walk makes few queries.
    UnchangedNodes takeNodesInFolder(const std::string& relativePath);

    /// Takes nodes of a folder, in ascending order, and whether they are its last; false then ends the reading.
    using FolderReceiver = std::function<bool(const std::string& folder, UnchangedNodes&& nodes, bool isLast)>;
    /// Reads folders from the one on, in the order of the paths' bytes, until all below the top have been read, and
    /// whatever comes between them. What follows the last portion of a folder that could not be read to its end is not
    /// handed over.
    ///
    /// @param most  nodes that are handed over at once; not 0
    /// @return the folder to go on with when the receiver ended the reading; none after the last or a failure
    std::optional<std::string> readFolders(const std::string& top, const std::string& from, std::size_t most,
                                           const FolderReceiver& receiver);

  private:
    static std::unique_ptr<WorkingCopyDatabase> withConnection(const std::string& root, const std::string& file,
                                                               SQLiteDatabase connection);
    bool prepare();
    bool readConflicts();
    /// The rows of an item, for `ScheduledColumn`; null when they cannot be read.
    sqlite3_stmt* scheduledRows(std::string_view relativePath);
    /// What a function finds in the rows of an item, which it steps through.
    template <class Read>
    auto readRows(std::string_view relativePath, Read read);
    /// The same; nothing for an item in conflict.
    template <class Read>
    auto readScheduled(std::string_view relativePath, Read read);
    bool hasConflict(std::string_view relativePath) const;
    bool isUnchanged(sqlite3_stmt* row, std::string_view relativePath) const;
    /// Whether the item is a copy, which is then in `_copy`.
    bool copiedFrom(std::string_view copy);
    DeletedNode deletedNodeIn(sqlite3_stmt* row, apr_pool_t* pool);
    void addRow(UnchangedNodes& nodes, sqlite3_stmt* row, std::size_t folderLength);
    UnchangedNode nodeIn(sqlite3_stmt* row, const NodeColumns& columns);
    void readBatch(const std::string& first);

    std::string _root;
    std::string _file;
    SQLiteDatabase _database;
    SQLiteStatement _node;
    SQLiteStatement _scheduled; ///< prepared when first needed
    SQLiteStatement _folders;
    struct Copy
    {
        std::string path;
        std::string source; ///< in the repository; empty when it is none
        svn_revnum_t revision = SVN_INVALID_REVNUM;
    };
    Copy _copy; ///< the last asked for
    PristineChecksums _checksums;
    struct TextHash
    {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };
    std::unordered_set<std::string, TextHash, std::equal_to<>> _conflicted; ///< paths
    std::unordered_map<std::string, UnchangedNodes> _batch;                 ///< those not yet taken
    std::size_t _foldersInBatch = 0;
    std::size_t _nodesInBatch = 128; ///< wanted; grows while batches are used, shrinks when they are not
};

} // namespace HSVNAdapter

#endif
