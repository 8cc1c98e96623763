#pragma once

#include "HSVNSubversionPrivate.h"

#ifdef HSVN_FAST_STATUS

#include "PristineChecksums.h"
#include "SQLiteHandles.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace HSVNAdapter {

/// What a status walk does not tell of an unchanged item.
struct UnchangedNode
{
    std::string name;
    svn_revnum_t revision = SVN_INVALID_REVNUM;
    svn_revnum_t changedRevision = SVN_INVALID_REVNUM;
    apr_time_t textTime = 0;
    svn_filesize_t textSize = -1;
    std::optional<SHA1Digest> pristine; ///< none for folders
};

/// Reads a working copy's database, read-only, beside the library that owns it.
///
/// Only the format whose tables are known is opened. Items that anything is scheduled for, that are incomplete, absent,
/// conflicted or file externals are not answered, nor are folders with a tree conflict among their children: of those
/// an entry tells more than a row does.
class WorkingCopyDatabase
{
  public:
    /// The database of the working copy with this root; null when it cannot be used.
    static std::unique_ptr<WorkingCopyDatabase> open(const std::string& root, apr_pool_t* pool);

    const std::string& root() const { return _root; }
    /// One item, by its path below the root ("" for the root itself).
    std::optional<UnchangedNode> node(std::string_view relativePath);
    /// All items of a folder, sorted by name; nothing when reading fails.
    ///
    /// Folders are read in batches, in the order in which a walk goes on, so that a walk makes few queries.
    std::vector<UnchangedNode> takeNodesInFolder(const std::string& relativePath);
    /// MD5 of the item's pristine text in hexadecimal, in the pool; null for none.
    const char* checksum(const UnchangedNode& node, apr_pool_t* pool);

  private:
    bool openFile(const std::string& file);
    bool readConflicts();
    bool isUnchanged(sqlite3_stmt* row, std::string_view relativePath) const;
    void addRow(std::vector<UnchangedNode>& nodes, sqlite3_stmt* row) const;
    void readBatch(const std::string& firstFolder);

    std::string _root;
    SQLiteDatabase _database;
    SQLiteStatement _node;
    SQLiteStatement _folders;
    PristineChecksums _checksums;
    std::unordered_set<std::string> _conflicted;
    std::unordered_map<std::string, std::vector<UnchangedNode>> _batch; ///< those not yet taken
    std::size_t _foldersInBatch = 0;
    int _batchRows = 128; ///< grows while batches are used, shrinks when they are not
};

} // namespace HSVNAdapter

#endif
