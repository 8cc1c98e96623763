#pragma once

#include "HSVNContext.h"
#include "HSVNForward.h"
#include "HSVNStatusKind.h"
#include "HSVNStatusOptions.h"
#include "HSVNVersion.h"
#include "Internal/BundleExtensions.h"
#include "Internal/SharedText.h"
#include "Internal/Subversion.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/// An open folder, for the sizes of the files in it; closed with the object.
class HSVNFolderHandle
{
  public:
    HSVNFolderHandle() = default;
    ~HSVNFolderHandle();
    HSVNFolderHandle(const HSVNFolderHandle&) = delete;
    HSVNFolderHandle& operator=(const HSVNFolderHandle&) = delete;

    /// Opens another folder; one that cannot be opened leaves none open.
    void open(const std::string& folder);
    /// The open descriptor, or AT_FDCWD when there is none.
    int descriptor() const;

  private:
    int _descriptor = -1;
};

/// Makes nodes from Subversion's status records. Keeps what neighbouring items share: their folder and the authors'
/// names.
class HSVNStatusNodeMaker
{
  public:
    /// Needs the context's bundle to be current, and `pool` to outlive the maker.
    HSVNStatusNodeMaker(HSVNVersion version, apr_pool_t* pool);

    /// From now on a node that nobody kept is filled anew for the next item, its status record, too.
    void refillNodes() { _refills = true; }
    /// The node of one item. A failure to read the item on disk is logged and thrown.
    HSVNNodeRef makeNode(const HSVNLocalPathRef& path, const svn_wc_status2_t& status);
    /// The same of the record of lines from 1.9 on, which tells more of an item's state, but not what it was copied
    /// from, the files that a conflict left, and its checksum.
    ///
    /// @param pool  for the item
    HSVNNodeRef makeNode(const HSVNLocalPathRef& path, const HSVNStatusFunctions::ItemStatus& item, apr_pool_t* pool);
    /// The item's path as Subversion reports it, with its folder remembered for `makeNode`.
    HSVNLocalPathRef makePath(const char* text);

  private:
    struct Directory
    {
        HSVNPathRef path;
        HSVNURLRef url; // nil until known
    };

    /// An empty node of either kind with its place.
    HSVNNodeRef newNode(bool isDirectory, const HSVNLocalPathRef& path);
    HSVNNodeRef nodeOfKind(const HSVNLocalPathRef& path, const svn_wc_status2_t& status);
    HSVNNodeRef nodeOfKind(const HSVNLocalPathRef& path, const svn_client_status_t& status, apr_pool_t* pool);
    /// Remembers the item's directory, and of those of the items before it the ones above.
    void enterDirectoryOf(const HSVNLocalPathRef& path);
    std::uint64_t sizeOnDisk(const HSVNLocalPathRef& path);
    void takeURL(HSVNNode& node, std::string_view url);

    HSVNVersion _version;
    apr_pool_t* _pool;
    HSVNTextCache _texts;
    std::vector<Directory> _directories; // the last item's and those above it
    HSVNPathRef _location;               // of the last item
    HSVNFolderHandle _folder;
    std::size_t _sizesAsked = 0; // in that folder
    bool _refills = false;
    // The last ones, while nodes are refilled.
    HSVNFileRef _file;
    HSVNDirectoryRef _directory;
    HSVNStatusRef _record;
};

/// The kinds that occur below each folder of a scan.
///
/// Each item is added to its folder alone; the folders are then combined once, from the deepest up, so the cost does
/// not grow with the depth of the tree.
class HSVNStatusAggregates
{
  public:
    struct Kinds
    {
        HSVNStatusKinds local = HSVNStatusKindNone;
        HSVNStatusKinds repository = HSVNStatusKindNone;
        std::uint32_t treeConflicts = 0;
    };

    /// The kinds of one item.
    static Kinds kindsOf(const svn_wc_status2_t& status, const HSVNVersion& version);
    /// Puts kinds together.
    static void unite(Kinds& into, const Kinds& kinds);

    /// Adds an item's kinds to its folder.
    void add(std::string_view itemPath, Kinds kinds);
    /// Carries every folder's kinds up to the root, which must be an ancestor of every item.
    void combine(std::string_view rootPath);
    /// The kinds below a folder; none when nothing below it was added.
    Kinds kindsBelow(const std::string& folder) const;

  private:
    // Ordered so that a folder comes after everything below it.
    std::map<std::string, Kinds, std::greater<>> _kinds;
    std::map<std::string, Kinds, std::greater<>>::iterator _last = _kinds.end();
};

/// The lock that a working copy holds on an item; nil without a lock token.
HSVNLockRef HSVNLockOfEntry(const HSVNPathRef& path, const svn_wc_entry_t& entry);

/// What a definition that cannot be parsed does.
enum class HSVNBrokenExternals
{
    Refused, ///< it is an exception
    Skipped  ///< its folder has no externals: one broken property does not keep a scan from the rest
};

class HSVNOperation;

/// The local paths at which the externals definitions below a path place their working copies.
std::set<std::string> HSVNExternalPathsBelow(HSVNOperation& operation, const std::string& path,
                                             HSVNBrokenExternals broken);

/// The state that the per-item callback shares with a scan; one per scan, on the caller's stack.
struct HSVNStatusScan
{
    HSVNStatusScan(HSVNContextRef scanContext, apr_pool_t* scanPool, const HSVNVersion& scanVersion,
                   HSVNLocalPathRef scanRootPath);

    HSVNContextRef context;
    apr_pool_t* pool;
    HSVNVersion version;
    HSVNStatusNodeMaker maker;
    HSVNNodeRef rootNode;
    HSVNLocalPathRef rootPath;
    std::vector<HSVNNodeRef> nodes;
    std::set<std::string> externals;
    bool propagatesStatus = false;
    bool comparesAgainstRepository = false;
    bool keepsConflictFiles = true;
    bool aggregatesOnly = false;
    std::size_t abnormalCount = 0;
    std::unordered_set<std::string> conflictFiles;
    std::unordered_set<std::string> unversionedPaths;
    HSVNStatusAggregates aggregates;
};

/// Subversion's status callback of a scan; the baton is an `HSVNStatusScan`.
void HSVNStatusFunc(void* baton, const char* path, svn_wc_status2_t* status);
