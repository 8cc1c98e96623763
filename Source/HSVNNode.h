#pragma once

#include "HSVNCoder.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNRareFields.h"
#include "HSVNTypes.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

struct apr_pool_t;
struct svn_dirent_t;
struct svn_lock_t;
struct svn_wc_status2_t;

class HSVNAddOptions;
class HSVNCommitOptions;
class HSVNCopyOptions;
class HSVNDeleteOptions;
class HSVNExportOptions;
class HSVNExternalDefinition;
class HSVNImportOptions;
class HSVNLockOptions;
class HSVNLogDelegate;
class HSVNLogOptions;
class HSVNMergeOptions;
class HSVNMoveHandler;
class HSVNMoveOptions;
class HSVNOptions;
class HSVNProperties;
class HSVNResolveOptions;
class HSVNRevertOptions;
class HSVNUnlockOptions;
class HSVNUpdateOptions;

/// The repository's lock on an item against the working copy's own lock token.
enum HSVNLockStatus : std::int32_t
{
    HSVNLockStatusNone = 0,            ///< locked nowhere
    HSVNLockStatusLockedElsewhere = 1, ///< locked in the repository, no token here
    HSVNLockStatusLockedHere = 2,      ///< the token here is the repository's lock
    HSVNLockStatusStolen = 3,          ///< the repository has another lock than the token here
    HSVNLockStatusBroken = 4,          ///< a token here, and the repository, which changed the item, has no lock
    HSVNLockStatusLockedLocally = 5    ///< a token here, and the repository was not asked or reports no change
};

/// One versioned item, a file or a folder, in a working copy or in a repository: which of the two, the kind of its
/// `path` tells (an HSVNLocalPath or an HSVNURL).
///
/// A plain object without locks: once built it may be read by several threads, but not while one of them changes it.
/// Nodes have no value equality. The operations are static and run on the calling thread.
class HSVN_EXPORT HSVNNode : public HSVNArchivable
{
  public:
    /// Every object nil, size 0, no properties, revision `HSVNInvalidRevision`.
    HSVNNode();
    /// A node of a repository listing; `location` is the path's parent.
    ///
    /// @param dirent  size, revision, date, author and whether there are properties; read, not kept
    /// @param lock    the item's lock; null for none; read, not kept
    HSVNNode(std::optional<std::string> name, HSVNPathRef path, HSVNURLRef url, const svn_dirent_t* dirent,
             const svn_lock_t* lock);
    /// The same with the path's parent and the entry's author as objects that the nodes of a listing share.
    HSVNNode(std::optional<std::string> name, HSVNPathRef path, HSVNURLRef url, const svn_dirent_t* dirent,
             const svn_lock_t* lock, HSVNPathRef location, std::shared_ptr<const std::string> author);
    /// The node that an archive holds.
    ///
    /// @throws HSVNInvalidArgumentException "Keyed unarchiver required", or for a value that does not fit its field
    explicit HSVNNode(HSVNCoder* decoder);
    /// Shares the status record; `copy` does not.
    HSVNNode(const HSVNNode& other);
    HSVNNode& operator=(const HSVNNode&) = delete;
    ~HSVNNode() override;

    std::string className() const override { return "HSVNNode"; }
    /// Keys: "name", "path", "location", "url", "size", "revision", "date", "author", "lock", "hasProperties",
    /// "status"; of the nodes that have it also "exactDate", "sizeIsUnknown", "externalParentURL", "externalTarget".
    void encodeWithCoder(HSVNCoder* encoder) const override;
    /// A new node of the same class; the status record is copied, other objects are shared. A subclass overrides it:
    /// the node is of its base class otherwise.
    virtual HSVNNodeRef copy() const;
    /// Whether this is an HSVNDirectory.
    virtual bool isDirectory() const { return false; }

    /// The sort order of node lists: folders first, then by path, revision, date (nil first) and size, then by the
    /// status records' last changed revision and text status.
    ///
    /// @param other  may be nil, which sorts first
    ///
    /// A node without a status record is always greater: of two such nodes that are otherwise equal each compares
    /// greater than the other, so std::sort must not be used on lists that may hold such pairs.
    HSVNComparisonResult compare(const HSVNNode* other) const;
    /// The same for a node that is shared.
    HSVNComparisonResult compare(const HSVNNodeRef& other) const { return compare(other.get()); }

    /// Identity: a node equals itself alone.
    bool isEqual(const HSVNNode* other) const { return this == other; }
    /// The same for a node that is shared.
    bool isEqual(const HSVNNodeRef& other) const { return isEqual(other.get()); }
    /// That of the object itself, whatever its fields are.
    std::size_t hash() const { return std::hash<const HSVNNode*>{}(this); }
    /// `isEqual` as an operator.
    friend bool operator==(const HSVNNode& a, const HSVNNode& b) { return a.isEqual(&b); }

    /// The last path component as shown to the user.
    std::optional<std::string> name() const;
    void setName(std::optional<std::string> name);
    /// Makes the path's last component the name; the path must be set.
    void setNameFromPath();
    /// Where the item is, as it was asked for: a local path or a URL; nil when not set.
    const HSVNPathRef& path() const { return _path; }
    void setPath(HSVNPathRef path);
    /// The folder or URL that contains the item.
    const HSVNPathRef& location() const { return _location; }
    void setLocation(HSVNPathRef location) { _location = std::move(location); }
    /// Where the item is in the repository, for a working-copy item too; may be nil.
    const HSVNURLRef& URL() const { return _url.of(*this); }
    void setURL(HSVNURLRef url) { _url.set(std::move(url)); }
    /// Makes the URL that of the path's last component, escaped, within a directory, when it is first asked for. The
    /// path must be set then ("path != nil").
    void setURLBelow(HSVNURLRef directory) { _url.setDirectory(std::move(directory)); }
    /// In bytes; 0 when unknown.
    std::uint64_t size() const { return _size; }
    void setSize(std::uint64_t size);
    /// Whether Subversion told no size: of a directory, of a file that is not there, or because it was not asked.
    bool sizeIsUnknown() const { return _sizeIsUnknown; }
    void setSizeUnknown();
    /// Revision, date and author of the last change; `HSVNInvalidRevision` and nil when unknown.
    HSVNRevisionNumber revision() const { return _revision; }
    void setRevision(HSVNRevisionNumber revision) { _revision = revision; }
    /// When the item last changed; nil when unknown.
    std::optional<HSVNDate> date() const;
    void setDate(const std::optional<HSVNDate>& date);
    /// The same to the microsecond, where Subversion's record leaves `date` the whole seconds.
    std::optional<HSVNDate> exactDate() const;
    /// Sets `date`, too, to the whole seconds.
    void setExactDate(const std::optional<HSVNDate>& date);
    /// Who changed it last; nil when unknown.
    std::optional<std::string> author() const;
    void setAuthor(std::optional<std::string> author);
    /// The repository's lock for a repository node, the working copy's lock token for a working-copy node; may be nil.
    const HSVNLockRef& lock() const;
    void setLock(HSVNLockRef lock);
    /// Whether the item has any versioned property.
    bool hasProperties() const { return _hasProperties; }
    void setHasProperties(bool hasProperties) { _hasProperties = hasProperties; }
    /// Of an item that an externals definition brings into a listing: the URL of the directory that has the
    /// definition; nil for every other.
    std::optional<std::string> externalParentURL() const;
    /// Where the definition places what it brings, relative to that directory; nil for an item that no definition
    /// brings.
    std::optional<std::string> externalTarget() const;
    void setExternal(std::optional<std::string> parentURL, std::optional<std::string> target);
    /// The working-copy status record; nil for nodes that no status scan made.
    const HSVNStatusRef& status() const { return _status; }
    void setStatus(HSVNStatusRef status) { _status = std::move(status); }

    // Working-copy status. A node without a status record answers as if every kind were none and every object nil.

    /// Whether the item can be put under version control: unversioned, ignored, or a file scheduled for deletion that
    /// is on disk.
    bool canBeAdded() const;
    /// Whether the repository was asked and reports a change.
    bool hasNewerRevisionInRepository() const;
    /// The repository's lock, as the status record knows it, against the node's own `lock`.
    HSVNLockStatus lockStatus() const;

    // Factory

    /// The file or folder at a path in a revision, without a status record.
    ///
    /// @param path      a local path or a URL; not nil ("path != nil")
    /// @param revision  not nil ("revision != nil")
    /// @param context   not nil ("context != nil")
    /// @return an HSVNDirectory or an HSVNFile
    /// @throws what `isDirectoryAtPath`, `HSVNDirectory::directoryAtPath` and `HSVNFile::fileAtPath` throw
    static HSVNNodeRef nodeAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                  const HSVNContextRef& context);

    // Working copy

    /// Puts an item under version control with the default options.
    static void add(const HSVNPathRef& path, const HSVNContextRef& context);
    /// Puts an item under version control.
    ///
    /// @param path     the item; not nil ("path != nil")
    /// @param options  recursion, force and ignore patterns; not nil ("options != nil")
    /// @param context  not nil ("context != nil")
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_add3.
    static void add(const HSVNPathRef& path, const std::shared_ptr<const HSVNAddOptions>& options,
                    const HSVNContextRef& context);

    /// Undoes local changes.
    ///
    /// @param nodePaths  items of working copies
    /// @param options    recursion; not nil ("options != nil")
    /// @param context    not nil ("context != nil")
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_revert.
    static void revertNodes(const std::vector<HSVNPathRef>& nodePaths,
                            const std::shared_ptr<const HSVNRevertOptions>& options, const HSVNContextRef& context);

    /// Marks the conflicts of an item as resolved and removes the files that they left.
    ///
    /// @param path     the item; not nil ("path != nil")
    /// @param options  recursion; not nil ("options != nil")
    /// @param context  not nil ("context != nil")
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_resolved.
    static void resolveNodeAtPath(const HSVNPathRef& path, const std::shared_ptr<const HSVNResolveOptions>& options,
                                  const HSVNContextRef& context);

    /// Brings working-copy items to a revision.
    ///
    /// @param nodePaths   versioned items, any number, in one or several working copies
    /// @param toRevision  the revision wanted; not nil ("revision != nil")
    /// @param options     depth, externals and obstruction choices; not nil ("options != nil")
    /// @param context     not nil ("context != nil")
    /// @return the revision that each path was brought to, in the order of `nodePaths`
    /// @throws HSVNException for every Subversion error; HSVNInvalidArgumentException "Invalid revision" for a kind of
    ///         revision that an update cannot reach, "Invalid depth" for a depth that Subversion 1.4 cannot express
    ///
    /// Sends HSVNNotifyActionUpdateStarted, Subversion's own notifications, then HSVNNotifyActionUpdateSucceeded or
    /// HSVNNotifyActionUpdateFailed. Stands for svn_client_update3 (svn_client_update2 on a 1.4 bundle).
    static std::vector<HSVNRevisionNumber> updateNodes(const std::vector<HSVNPathRef>& nodePaths,
                                                       const HSVNRevisionRef& toRevision,
                                                       const std::shared_ptr<const HSVNUpdateOptions>& options,
                                                       const HSVNContextRef& context);

    /// Commits local changes; the log message comes from the context's delegate.
    ///
    /// @param nodePaths  the items to commit; none commits nothing
    /// @param options    depth and lock handling; not nil ("options != nil")
    /// @param context    the client to work through
    /// @return the new revision, or `HSVNInvalidRevision` when nothing was committed
    /// @throws HSVNException for every Subversion error; HSVNInvalidArgumentException "Invalid depth" for a depth that
    ///         Subversion 1.4 cannot express
    ///
    /// Sends HSVNNotifyActionCommitStarted, Subversion's own notifications, then HSVNNotifyActionCommitSucceeded or
    /// HSVNNotifyActionCommitFailed. Stands for svn_client_commit4 (svn_client_commit3 on a 1.4 bundle).
    static HSVNRevisionNumber commitChangesToNodes(const std::vector<HSVNPathRef>& nodePaths,
                                                   const std::shared_ptr<const HSVNCommitOptions>& options,
                                                   const HSVNContextRef& context);

    // Working-copy status

    /// The node of one Subversion status, at the item's path.
    ///
    /// @param path     the item; not nil ("path != nil")
    /// @param status   as Subversion's status callback receives it; not null ("status != NULL"); read, not kept
    /// @param context  whose bundle made the status; not nil ("context != nil")
    /// @param pool     a pool of that bundle; not null ("pool != NULL")
    /// @throws HSVNException when the item on disk cannot be read, after two lines in the log
    static HSVNNodeRef nodeAtPath(const HSVNPathRef& path, const svn_wc_status2_t* status,
                                  const HSVNContextRef& context, apr_pool_t* pool);
    /// The node of one working-copy item with its status.
    ///
    /// @param path                      not nil ("path != nil")
    /// @param revision                  what the repository is compared at; not nil ("revision != nil")
    /// @param compareAgainstRepository  whether the repository is asked what is out of date
    /// @param context                   not nil ("context != nil")
    /// @return nil when Subversion reports nothing of the item
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_status2.
    static HSVNNodeRef nodeWithStatusAtPath(const HSVNPathRef& path, const HSVNRevisionRef& revision,
                                            bool compareAgainstRepository, const HSVNContextRef& context);
    /// The first node of that name, or nil; the list has no nil ones ("node != nil").
    static HSVNNodeRef nodeWithName(const std::string& name, const std::vector<HSVNNodeRef>& nodes);
    /// Takes the files that conflicts left beside their items out of a list of nodes with status, none nil ("node !=
    /// nil").
    static void removeVersionConflictFilesFromArray(std::vector<HSVNNodeRef>& nodes);
    /// A node for an item on disk that Subversion does not know, with the status unversioned or ignored.
    ///
    /// @param path            the item; not nil ("path != nil")
    /// @param ignorePatterns  glob patterns of names to be ignored
    /// @param context         whose bundle matches the patterns; not nil ("context != nil")
    /// @throws HSVNException when the item cannot be read
    static HSVNNodeRef nodeForUnversionedFileAtPath(const HSVNPathRef& path,
                                                    const std::vector<std::string>& ignorePatterns,
                                                    const HSVNContextRef& context);

    // Properties

    /// Sets a versioned property of a working-copy item.
    ///
    /// @param propName  not empty ("propName != nil && [propName length] > 0")
    /// @param value     UTF-8 for the standard properties, any bytes for others; nil deletes the property
    /// @param path      not nil ("path != nil")
    /// @param context   not nil ("context != nil")
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_propset2.
    static void setProperty(const std::string& propName, const std::optional<std::string>& value,
                            const HSVNPathRef& path, const HSVNContextRef& context);
    /// One versioned property of an item; nil when the item has none of that name. Arguments as above.
    ///
    /// @throws HSVNException for every Subversion error, such as an item that is not versioned, and for a name that no
    ///         property has (`HSVNIsPropertyName`)
    /// Stands for svn_client_propget2.
    static std::optional<std::string> propertyWithName(const std::string& propName, const HSVNPathRef& path,
                                                       const HSVNRevisionSpecRef& revision,
                                                       const HSVNContextRef& context);
    /// All versioned properties of an item.
    ///
    /// @throws HSVNException for every Subversion error, "svn_client_proplist2 returned null array" and
    ///         "svn_client_proplist2 returned array with null item"
    /// Stands for svn_client_proplist2.
    static HSVNProperties propertiesForNodeAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                                  const HSVNContextRef& context);
    /// The definitions in an item's svn:externals; empty when it has none.
    ///
    /// @throws HSVNInvalidExternalsDescriptionException for a text that Subversion cannot parse
    static std::vector<std::shared_ptr<HSVNExternalDefinition>>
    externalDefinitionsForNodeAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                     const HSVNContextRef& context);
    /// The patterns in a folder's svn:ignore; empty when it has none.
    static std::vector<std::string> ignoredFilenamesForNodeAtPath(const HSVNPathRef& path,
                                                                  const HSVNRevisionSpecRef& revision,
                                                                  const HSVNContextRef& context);
    /// Writes a folder's svn:ignore; nil deletes it.
    static void setIgnoredFilenames(const std::optional<std::vector<std::string>>& patterns, const HSVNPathRef& path,
                                    const HSVNContextRef& context);
    /// The same for patterns that are written out; none deletes it.
    static void setIgnoredFilenames(std::initializer_list<const char*> patterns, const HSVNPathRef& path,
                                    const HSVNContextRef& context);

    // Services

    /// The kind of the item at a path in a revision.
    ///
    /// @param path      a local path or a URL; not nil ("path != nil")
    /// @param revision  not nil ("revision != nil")
    /// @param context   not nil ("context != nil")
    /// @throws HSVNException for every Subversion error, such as an item that does not exist
    /// Stands for svn_client_info.
    static HSVNNodeKind kindOfNodeAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                         const HSVNContextRef& context);
    /// Whether the item at a path in a revision is a folder; arguments and exceptions as for `kindOfNodeAtPath`.
    static bool isDirectoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                  const HSVNContextRef& context);
    /// The repository URL of an item.
    ///
    /// @param path     a local path or a URL; not nil ("path != nil")
    /// @param context  not nil ("context != nil")
    /// @return nil when Subversion reports none
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_info.
    static HSVNURLRef URLForNodeAtPath(const HSVNPathRef& path, const HSVNContextRef& context);

    /// Reads the history of an item, the revisions in the order of the options' range.
    ///
    /// @param path      a local path or a URL; not nil ("path != nil")
    /// @param delegate  hears of each revision as it arrives and can stop the log; may be null
    /// @param options   revisions and details wanted; not nil ("options != nil")
    /// @param context   not nil ("context != nil")
    /// @return the items of all revisions, those that a delegate took too
    /// @throws HSVNOperationCancelledException "Operation was cancelled" when the delegate stops the log;
    ///         HSVNException for every Subversion error
    /// Stands for svn_client_log3.
    static std::vector<HSVNLogItemRef> readLogForNodeAtPath(const HSVNPathRef& path, HSVNLogDelegate* delegate,
                                                            const std::shared_ptr<const HSVNLogOptions>& options,
                                                            const HSVNContextRef& context);
    /// The same for a delegate that is shared.
    template <class Delegate>
    static std::vector<HSVNLogItemRef>
    readLogForNodeAtPath(const HSVNPathRef& path, const std::shared_ptr<Delegate>& delegate,
                         const std::shared_ptr<const HSVNLogOptions>& options, const HSVNContextRef& context)
    {
        HSVNLogDelegate* const hearing = delegate.get();
        return readLogForNodeAtPath(path, hearing, options, context);
    }

    // Services: import, export, merge

    /// Puts an unversioned tree into a repository; the log message comes from the context's delegate.
    ///
    /// @param path     a file or folder on disk; not nil ("path != nil")
    /// @param url      where it goes; missing folders on the way are made; not nil ("url != nil")
    /// @param options  recursion and ignore patterns; not nil ("options != nil")
    /// @param context  not nil ("context != nil")
    /// @return the new revision
    /// @throws HSVNOperationCancelledException "Operation was cancelled" when the log message was refused;
    ///         HSVNException for every Subversion error
    ///
    /// Sends HSVNNotifyActionImportStarted, Subversion's own notifications, then HSVNNotifyActionImportSucceeded or
    /// HSVNNotifyActionImportFailed. Stands for svn_client_import2.
    static HSVNRevisionNumber importNodeAtPath(const HSVNPathRef& path, const HSVNURLRef& url,
                                               const std::shared_ptr<const HSVNImportOptions>& options,
                                               const HSVNContextRef& context);
    /// Writes a clean tree, without administrative folders.
    ///
    /// @param fromPath  a working-copy path or a URL; not nil ("fromPath != nil")
    /// @param toPath    the local path to write; not nil ("toPath != nil")
    /// @param options   revision, depth, line ends, externals, overwriting; not nil ("options != nil")
    /// @param context   not nil ("context != nil")
    /// @return the revision that was exported, or `HSVNInvalidRevision` for what a working copy holds
    /// @throws HSVNException for every Subversion error; HSVNInvalidArgumentException "Invalid depth" for a depth that
    ///         Subversion 1.4 cannot express
    ///
    /// Sends HSVNNotifyActionExportStarted (HSVNNotifyActionInternalExportStarted when the user did not ask for the
    /// export), Subversion's own notifications, then HSVNNotifyActionExportSucceeded or HSVNNotifyActionExportFailed.
    /// Stands for svn_client_export4 (svn_client_export3 on a 1.4 bundle).
    static HSVNRevisionNumber exportNodeAtPath(const HSVNPathRef& fromPath, const HSVNPathRef& toPath,
                                               const std::shared_ptr<const HSVNExportOptions>& options,
                                               const HSVNContextRef& context);
    /// Merges the difference between two sources into a working copy.
    ///
    /// @param path1            the first source, a URL or a working-copy path; not nil ("path1 != nil")
    /// @param revision1        its state; not nil ("revision1 != nil")
    /// @param path2            the second source; not nil ("path2 != nil")
    /// @param revision2        its state; not nil ("revision2 != nil")
    /// @param workingCopyPath  what is changed; not nil ("workingCopyPath != nil")
    /// @param options          depth, comparison, force, record only, dry run; not nil ("options != nil")
    /// @param context          not nil ("context != nil")
    /// @throws HSVNException for every Subversion error; HSVNInvalidArgumentException "Invalid depth" and "Record only
    ///         option is not supported on 1.4" on a 1.4 bundle
    ///
    /// Sends HSVNNotifyActionMergeCompleted on lines before 1.6, which do not send it themselves. Stands for
    /// svn_client_merge3 (svn_client_merge2 on a 1.4 bundle).
    static void mergeNodeAtPath(const HSVNPathRef& path1, const HSVNRevisionRef& revision1, const HSVNPathRef& path2,
                                const HSVNRevisionRef& revision2, const HSVNPathRef& workingCopyPath,
                                const std::shared_ptr<const HSVNMergeOptions>& options, const HSVNContextRef& context);

    // Services: delete, move, copy

    /// Deletes items: of the repository when the first path is a URL, else of working copies.
    ///
    /// @param nodePaths  all URLs or all local paths; none deletes nothing
    /// @param options    whether local changes and unversioned items may be lost; not nil ("options != nil")
    /// @param context    not nil ("context != nil")
    /// @throws what the two operations below throw
    static void deleteNodes(const std::vector<HSVNPathRef>& nodePaths,
                            const std::shared_ptr<const HSVNDeleteOptions>& options, const HSVNContextRef& context);
    /// Deletes items of a repository in one commit.
    ///
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_delete2.
    static void deleteRepositoryNodesAtURLs(const std::vector<HSVNPathRef>& nodePaths,
                                            const std::shared_ptr<const HSVNDeleteOptions>& options,
                                            const HSVNContextRef& context);
    /// Schedules working-copy items for deletion, one after the other; those before a failure stay deleted.
    ///
    /// With force, local changes are lost, and an item that is not under version control is removed from the disk; the
    /// delegate hears of it as of any other.
    ///
    /// @throws HSVNItemModifiedException "Cannot delete '%@' because it is unversioned and force was not specified";
    ///         HSVNException "Cannot delete '%@'. The file may be in use", for a URL and for every Subversion error
    /// Stands for svn_client_delete2.
    static void deleteWorkingCopyNodesAtPaths(const std::vector<HSVNPathRef>& nodePaths,
                                              const std::shared_ptr<const HSVNDeleteOptions>& options,
                                              const HSVNContextRef& context);
    /// Moves an item within a working copy or within a repository.
    ///
    /// A local item moved to a folder that is not under version control is moved on disk: once it is there in full, it
    /// is removed where it was, and a versioned one scheduled for deletion.
    ///
    /// @param sourcePath  a local path or a URL; not nil ("sourcePath != nil")
    /// @param destPath    of the same kind; not nil ("destPath != nil")
    /// @param options     whether local changes may be lost; not nil ("options != nil")
    /// @param context     not nil ("context != nil")
    /// @return the revision of the commit, or `HSVNInvalidRevision` for a move on disk
    /// @throws HSVNEntryExistsException when the destination exists; HSVNOperationCancelledException
    ///         "Move was canceled" when the log message was refused; HSVNException "Failed to move item at '%@' to
    ///         unversioned directory at '%@'", or "Copied item at '%@' to unversioned directory at '%@', but cannot
    ///         delete it: %@", and for every other Subversion error
    /// Stands for svn_client_move4.
    static HSVNRevisionNumber moveNodeAtPath(const HSVNPathRef& sourcePath, const HSVNPathRef& destPath,
                                             const std::shared_ptr<const HSVNMoveOptions>& options,
                                             const HSVNContextRef& context);
    /// Copies an item, with its history where both ends are under version control.
    ///
    /// A local item copied to a folder that is not under version control is copied as it is on disk, whatever the
    /// options' revision, and without administrative folders.
    ///
    /// @param sourcePath  a local path or a URL; not nil ("sourcePath != nil")
    /// @param destPath    a local path or a URL; not nil ("destPath != nil")
    /// @param options     the source's revision; not nil ("options != nil")
    /// @param context     not nil ("context != nil")
    /// @return the revision of the commit, or `HSVNInvalidRevision` without one
    /// @throws HSVNEntryExistsException when the destination exists; HSVNException "Failed to copy item at '%@' to
    ///         unversioned directory at '%@'", and for every other Subversion error
    /// Stands for svn_client_copy3.
    static HSVNRevisionNumber copyNodeAtPath(const HSVNPathRef& sourcePath, const HSVNPathRef& destPath,
                                             const std::shared_ptr<const HSVNCopyOptions>& options,
                                             const HSVNContextRef& context);
    /// Moves or copies several items, one after the other, with at most one log message asked for.
    ///
    /// A destination that exists is replaced when the handler says so. Should the item then not arrive, the old
    /// destination is brought back: its content, what was scheduled, and its properties.
    ///
    /// @param sourcePaths  local paths or URLs, none nil ("sourcePath != nil")
    /// @param destPaths    as many ("[sourcePaths count] == [destPaths count]"), none nil ("destPath != nil")
    /// @param copy         whether the sources stay
    /// @param options      HSVNCopyOptions for a copy, else HSVNMoveOptions
    /// @param handler      asked before each item and about destinations that exist; may be nil
    /// @param contextInfo  handed back to the handler
    /// @param context      not nil ("context != nil")
    /// @return the revision of the last item moved or copied, or `HSVNInvalidRevision`
    /// @throws HSVNOperationCancelledException "Move was canceled by user" and "Operation canceled by user";
    ///         HSVNInternalInconsistencyException "Unrecognised overwrite result"; what the operations above throw.
    ///         Items before it stay moved.
    ///
    /// When a destination is a URL, the delegate is asked for a log message once, before the first item. A client
    /// without a delegate keeps the one that answers with that message.
    static HSVNRevisionNumber moveNodes(const std::vector<HSVNPathRef>& sourcePaths,
                                        const std::vector<HSVNPathRef>& destPaths, bool copy,
                                        const std::shared_ptr<const HSVNOptions>& options,
                                        const std::shared_ptr<HSVNMoveHandler>& handler, void* contextInfo,
                                        const HSVNContextRef& context);
    /// Clears a destination that an item is going to replace: an unversioned one is removed from the disk, a versioned
    /// one deleted, with its local changes.
    ///
    /// @param path     the destination, a local path or a URL; not nil ("path != nil")
    /// @param source   the local path of the item to come; not nil ("source != nil")
    /// @param context  not nil ("context != nil")
    /// @throws HSVNInvalidArgumentException when one of the two contains the other; HSVNNoSuchEntryException when
    ///         there is nothing at `source`; what `deleteNodes` throws
    static void deleteNodeAtPath(const HSVNPathRef& path, const HSVNPathRef& source, const HSVNContextRef& context);
    /// Whether Subversion knows the item at a path.
    static bool isVersionedFileAtPath(const HSVNPathRef& path, const HSVNContextRef& context);

    // Locking

    /// Locks files in the repository.
    ///
    /// @param nodePaths  working-copy files; none locks nothing
    /// @param comment    why, UTF-8; may be nil
    /// @param options    whether locks of others are stolen; not nil ("options != nil")
    /// @param context    not nil ("context != nil")
    /// @throws HSVNEntryLockedException and other subclasses of HSVNException for the first file that could not be
    ///         locked; the delegate hears of every one
    /// Stands for svn_client_lock.
    static void lockNodes(const std::vector<HSVNPathRef>& nodePaths, const std::optional<std::string>& comment,
                          const std::shared_ptr<const HSVNLockOptions>& options, const HSVNContextRef& context);
    /// Releases locks; arguments as above.
    ///
    /// @param options  whether locks that are not held here are broken
    /// Stands for svn_client_unlock.
    static void unlockNodes(const std::vector<HSVNPathRef>& nodePaths,
                            const std::shared_ptr<const HSVNUnlockOptions>& options, const HSVNContextRef& context);
    /// The lock that governs the node: the repository's when another holds it, else the working copy's own; may be nil.
    HSVNLockRef controllingLock() const;

    // File types

    /// The uniform type identifier of a node of unknown kind without a local file.
    static std::string UTIForNodeAtPath(const HSVNPathRef& path, const HSVNRevisionRef& revision,
                                        const HSVNContextRef& context);
    /// The uniform type identifier by which an icon or a viewer is chosen: a folder's, else that of the extension in
    /// the name, else that of the property svn:mime-type or of the type that Subversion detects, else text.
    ///
    /// @param path       a local path or a URL; not nil ("path != nil")
    /// @param revision   not nil ("revision != nil")
    /// @param localFile  a copy of the item's content; may be nil
    /// @param nodeKind   HSVNNodeKindUnknown finds out whether the item is a folder; for a URL without a local file the
    ///                   repository is asked
    /// @param context    not nil ("context != nil")
    /// @return an identifier such as "public.html"; a dynamic one (`isDynamicUTI`, see HSVNTypeRegistry.h) for a MIME
    ///         type that no declared type claims
    /// @throws HSVNException for every Subversion error, but for an item that is not versioned, which has no property
    static std::string UTIForNodeAtPath(const HSVNPathRef& path, const HSVNRevisionRef& revision,
                                        const HSVNLocalPathRef& localFile, HSVNNodeKind nodeKind,
                                        const HSVNContextRef& context);
    /// The MIME type that Subversion detects in a file's content; nil for text.
    ///
    /// @param path     a local path; not nil ("path != nil")
    /// @param context  not nil ("context != nil")
    /// @throws HSVNException for every Subversion error, such as a file that does not exist
    /// Stands for svn_io_detect_mimetype.
    static std::optional<std::string> MIMETypeForNodeAtPath(const HSVNPathRef& path, const HSVNContextRef& context);
    /// Whether a MIME type begins with "text/".
    ///
    /// @param mimeType  not nil ("mimeType != nil")
    static bool isTextMIMEType(const std::optional<std::string>& mimeType);
    /// Whether an identifier was made up for a tag that no declared type claims: it begins with "dyn".
    static bool isDynamicUTI(const std::optional<std::string>& identifier);

    // Services: log message

    /// Asks the context's delegate for a log message.
    ///
    /// @param message      where the delegate stores the message
    /// @param commitItems  what the message is for
    /// @param path         the target; not used
    /// @param context      a client asks its delegate; any other context has none
    /// @return false when the delegate refused; true without a delegate that answers, the message then untouched
    static bool promptForLogMessage(std::string& message, const std::vector<HSVNCommitItemRef>& commitItems,
                                    const HSVNPathRef& path, const HSVNContextRef& context);
    /// The commit items of a move or copy, which Subversion does not tell in advance.
    ///
    /// @param sourcePaths  local paths or URLs
    /// @param destPaths    as many ("[sourcePaths count] == [destPaths count]")
    /// @param copy         whether the sources stay
    /// @return for each pair, in order, an item that adds the destination and, unless copying, one that deletes the
    ///         source
    static std::vector<HSVNCommitItemRef> commitItemsForMoveOfNodes(const std::vector<HSVNPathRef>& sourcePaths,
                                                                    const std::vector<HSVNPathRef>& destPaths,
                                                                    bool copy);

  protected:
    /// Gives a copied node a status record of its own.
    void unshareStatus();

  private:
    friend class HSVNStatusNodeMaker;
    struct Rare;

    /// A URL, or the directory's below which it is made when it is asked for, by whichever thread is first.
    class URLBelow
    {
      public:
        URLBelow() = default;
        explicit URLBelow(HSVNURLRef url);
        URLBelow(const URLBelow& other);
        URLBelow& operator=(const URLBelow&) = delete;
        ~URLBelow();

        const HSVNURLRef& of(const HSVNNode& node) const
        {
            if (_state.load(std::memory_order_acquire) != State::Made) {
                make(node);
            }
            return _url;
        }
        void set(HSVNURLRef url);
        void setDirectory(HSVNURLRef directory);

      private:
        enum class State : std::uint8_t
        {
            Made,
            Directory, ///< `_url` is the directory's
            Busy       ///< one thread reads or makes it
        };

        void make(const HSVNNode& node) const;
        bool takeDirectory() const;
        void leave(State state) const;

        mutable HSVNURLRef _url;
        mutable std::atomic<State> _state{State::Made};
    };

    HSVNComparisonResult compareStatus(const HSVNNode& other) const;

    std::shared_ptr<const std::string> _name; // nil while `_nameIsLastComponent`
    HSVNPathRef _path;
    HSVNPathRef _location;
    std::uint64_t _size = 0;
    std::int64_t _date = (std::numeric_limits<std::int64_t>::min)(); // in microseconds since 1970; this one is nil
    std::shared_ptr<const std::string> _author;
    HSVNStatusRef _status;
    HSVNRareFields<Rare> _rare;
    [[no_unique_address]] URLBelow _url; // whose padding the rest takes
    bool _tellsSeconds : 1 = false;      // alone of `_date`, as `date`
    bool _hasProperties : 1 = false;
    bool _sizeIsUnknown : 1 = false;
    bool _nameIsLastComponent : 1 = false; // the name is read from the path, which most nodes' names equal
    HSVNRevisionNumber _revision = HSVNInvalidRevision;
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNNode>
{
    std::size_t operator()(const HSVNNode& node) const noexcept { return node.hash(); }
};
