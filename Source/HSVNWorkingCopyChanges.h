#pragma once

#include "HSVNContext.h"
#include "HSVNRevision.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Changes of a working copy, and of locks and revision properties, with every choice that Subversion's own command line
// has. Targets are as HSVNArguments makes them; what happens to each item is told the client's delegate by
// notifications. All functions throw HSVNException for every Subversion error, and want a context ("context != nil").

/// How an addition goes about.
struct HSVNItemAddOptions
{
    HSVNDepth depth = HSVNDepthInfinity;
    bool force = false;              ///< pass over items that are versioned already, and go on below them
    bool matchIgnorePatterns = true; ///< leave ignored items below the target out
    bool automaticProperties = true; ///< set what configuration and inherited properties ask for
    bool addParents = false;         ///< folders between the working copy and the target too
};

/// Schedules an unversioned item for addition.
///
/// @param target  a local path
/// Stands for svn_client_add5; not offered by lines before 1.8.
HSVN_EXPORT void HSVNAddItem(const std::string& target, const HSVNItemAddOptions& options,
                             const HSVNContextRef& context);

/// What a revert takes back, and what it leaves.
struct HSVNItemRevertOptions
{
    HSVNDepth depth = HSVNDepthEmpty;
    std::vector<std::string> changelists; ///< only items of these; none means all
    bool clearChangelists = false;        ///< take reverted items out of their changelists
    bool metadataOnly = false;            ///< leave files and folders on disk alone
    bool keepAddedItems = true;           ///< on disk, unversioned
};

/// Takes local changes back.
///
/// @param targets  local paths
/// Stands for svn_client_revert4; not offered by lines before 1.11.
HSVN_EXPORT void HSVNRevertItems(const std::vector<std::string>& targets, const HSVNItemRevertOptions& options,
                                 const HSVNContextRef& context);

/// What stays of an item in conflict; the values are those of svn_wc_conflict_choice_t.
enum HSVNConflictChoice : std::int32_t
{
    HSVNConflictChoicePostpone = 0,
    HSVNConflictChoiceBase = 1,           ///< the common ancestor
    HSVNConflictChoiceTheirsFull = 2,     ///< what came in
    HSVNConflictChoiceMineFull = 3,       ///< what was there
    HSVNConflictChoiceTheirsConflict = 4, ///< what came in, where the two conflict
    HSVNConflictChoiceMineConflict = 5,   ///< what was there, where the two conflict
    HSVNConflictChoiceMerged = 6          ///< what is there now
};

/// Ends the conflicts of an item and of what lies below it; nothing happens to items without any.
///
/// @param target  a local path
/// Stands for svn_client_resolve; not offered by lines before 1.5.
HSVN_EXPORT void HSVNResolveItem(const std::string& target, HSVNDepth depth, HSVNConflictChoice choice,
                                 const HSVNContextRef& context);

/// Which items get a property, and whether it is checked.
/// Tells of every item in conflict at and below an item.
///
/// @param target    a local path
/// @param receiver  called with each item's absolute path, before the next one is looked for: it may settle the
///                  conflict, and what comes of that is told too; an exception stops the search and reaches the caller
/// Stands for svn_client_conflict_walk; not offered by lines before 1.10.
HSVN_EXPORT void HSVNFindConflicts(const std::string& target, HSVNDepth depth,
                                   const std::function<void(const std::string& path)>& receiver,
                                   const HSVNContextRef& context);

struct HSVNPropertyChangeOptions
{
    HSVNDepth depth = HSVNDepthEmpty;
    bool force = false;                   ///< do not ask whether name and value make sense for the item
    std::vector<std::string> changelists; ///< only items of these; none means all
};

/// Sets a property of items, or deletes it.
///
/// @param value    bytes, UTF-8 with LF line ends for names that begin with "svn:"; nil deletes the property
/// @param targets  local paths
/// Stands for svn_client_propset_local; not offered by lines before 1.7.
HSVN_EXPORT void HSVNChangeProperty(const std::string& name, const std::optional<std::string>& value,
                                    const std::vector<std::string>& targets, const HSVNPropertyChangeOptions& options,
                                    const HSVNContextRef& context);

/// Sets an unversioned property of a revision, or deletes it; what was there is lost.
///
/// @param value     as above
/// @param url       any URL of the repository
/// @param revision  not nil ("revision != nil")
/// @param force     allow an author's name with a line end
/// @return the revision's number
/// Stands for svn_client_revprop_set2; not offered by lines before 1.6.
HSVN_EXPORT HSVNRevisionNumber HSVNChangeRevisionProperty(const std::string& name,
                                                          const std::optional<std::string>& value,
                                                          const std::string& url, const HSVNRevisionRef& revision,
                                                          bool force, const HSVNContextRef& context);

/// Locks files in the repository. A lock that cannot be had is a notification, not an error.
///
/// @param targets  either local paths, which then hold the locks, or URLs; all in one repository
/// @param comment  UTF-8; nil for none
/// @param steal    also take locks that others hold
/// Stands for svn_client_lock.
HSVN_EXPORT void HSVNLockItems(const std::vector<std::string>& targets, const std::optional<std::string>& comment,
                               bool steal, const HSVNContextRef& context);

/// Gives locks back. A lock that cannot be released is a notification; one that the working copy does not hold is an
/// error, unless locks are to be broken.
///
/// @param targets    either local paths or URLs; all in one repository
/// @param breakLock  also those that others hold
/// Stands for svn_client_unlock.
HSVN_EXPORT void HSVNUnlockItems(const std::vector<std::string>& targets, bool breakLock,
                                 const HSVNContextRef& context);

/// What a clean-up puts right.
struct HSVNCleanUpOptions
{
    bool breakLocks = true;        ///< of the working copy, left by what was interrupted
    bool fixTimestamps = true;     ///< so that unchanged files are known as such faster
    bool clearWebCache = true;     ///< what was kept of servers reached by HTTP
    bool vacuumPristines = true;   ///< remove unchanged texts of which no file is a version any more
    bool includeExternals = false; ///< working copies of externals too
};

/// Ends what was interrupted in a working copy. What an interrupted batch had set aside stays, and is named in the log
/// (`HSVNFindItemsSetAside`).
///
/// @param folder  a local path
/// Stands for svn_client_cleanup2; not offered by lines before 1.9.
HSVN_EXPORT void HSVNCleanUpFolder(const std::string& folder, const HSVNCleanUpOptions& options,
                                   const HSVNContextRef& context);

/// Finds what a batch or a copy on disk had set aside when its program was ended: folders ".hsvn-" with six characters,
/// in each of which an item lies under its own name. Works without Subversion; folders that cannot be read are passed
/// over, as are administrative areas.
///
/// @param folder  a local path
/// @return the folders' paths
HSVN_EXPORT std::vector<std::string> HSVNFindItemsSetAside(const std::string& folder);

/// What is removed or put right.
struct HSVNVacuumOptions
{
    bool removeUnversioned = false; ///< files and folders that are neither versioned nor ignored
    bool removeIgnored = false;     ///< ignored files and folders
    bool fixTimestamps = false;     ///< so that unchanged files are known as such faster
    bool vacuumPristines = false;   ///< of which no file is a version any more
    bool includeExternals = false;  ///< working copies of externals too
};

/// Removes what nobody needs from a working copy that is not locked.
///
/// @param folder  a local path
/// Stands for svn_client_vacuum; not offered by lines before 1.9.
HSVN_EXPORT void HSVNVacuumFolder(const std::string& folder, const HSVNVacuumOptions& options,
                                  const HSVNContextRef& context);

/// Brings a working copy of an older line to the bundle's format.
///
/// @param folder  the working copy's root
/// Stands for svn_client_upgrade; not offered by lines before 1.7.
HSVN_EXPORT void HSVNUpgradeFolder(const std::string& folder, const HSVNContextRef& context);

/// Makes a working copy know its repository under another URL.
///
/// @param folder           the working copy's root
/// @param from             what its URLs begin with until now
/// @param to               what they begin with from now on
/// @param ignoreExternals  leave working copies of externals alone
/// Stands for svn_client_relocate2; not offered by lines before 1.7.
HSVN_EXPORT void HSVNRelocateFolder(const std::string& folder, const std::string& from, const std::string& to,
                                    bool ignoreExternals, const HSVNContextRef& context);

/// Puts items into a changelist, or takes them out of theirs.
///
/// @param changelist   nil takes the items out
/// @param targets      local paths
/// @param depth        how far below the targets
/// @param changelists  only items of these; none means all
/// Stands for svn_client_add_to_changelist and svn_client_remove_from_changelists; not offered by lines before 1.5.
HSVN_EXPORT void HSVNChangeChangelist(const std::optional<std::string>& changelist,
                                      const std::vector<std::string>& targets, HSVNDepth depth,
                                      const std::vector<std::string>& changelists, const HSVNContextRef& context);
