#pragma once

#include "HSVNAddOptions.h"
#include "HSVNBundle.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNCommitOptions.h"
#include "HSVNCommitResult.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNExport.h"
#include "HSVNExportOptions.h"
#include "HSVNForward.h"
#include "HSVNImportOptions.h"
#include "HSVNLockOptions.h"
#include "HSVNLogOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNMoveOptions.h"
#include "HSVNObject.h"
#include "HSVNReadingChoices.h"
#include "HSVNReceiver.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatusOptions.h"
#include "HSVNTarget.h"
#include "HSVNTypes.h"
#include "HSVNUnlockOptions.h"
#include "HSVNUpdateOptions.h"
#include "HSVNVersion.h"
#include "HSVNWorkingCopyChoices.h"

#include <atomic>
#include <concepts>
#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

struct apr_pool_t;
struct svn_client_ctx_t;
class HSVNOperation;
class HSVNPool;
class HSVNTransferObserver;
class HSVNTreeDiff;
struct HSVNBlamedLine;
struct HSVNDifference;
struct HSVNItemInfo;
struct HSVNItemProperties;
struct HSVNLayoutItem;
struct HSVNMergingSummary;
struct HSVNPatchedItem;
struct HSVNPropertyValues;
using HSVNTreeDiffRef = std::shared_ptr<const HSVNTreeDiff>;

// Names in Subversion's run-time configuration: of its categories, which are files, of their sections, and of an
// option.

inline constexpr const char* HSVNConfigCategoryConfig = "config";   ///< the file "config"
inline constexpr const char* HSVNConfigCategoryServers = "servers"; ///< the file "servers"
inline constexpr const char* HSVNConfigSectionGroups = "groups";    ///< of "servers": groups of hosts
inline constexpr const char* HSVNConfigSectionGlobal = "global";    ///< of "servers": what holds for all hosts
inline constexpr const char* HSVNConfigSectionAuth = "auth";        ///< of "config": what of credentials is stored
inline constexpr const char* HSVNConfigSectionGeneral = "general";  ///< of a repository's "svnserve.conf"
inline constexpr const char* HSVNConfigSectionHelpers = "helpers";  ///< of "config": editor, diff and merge programs
inline constexpr const char* HSVNConfigSectionMiscellany = "miscellany"; ///< of "config": ignore patterns and others
inline constexpr const char* HSVNConfigSectionTunnels = "tunnels";       ///< of "config": programs for svn+NAME
inline constexpr const char* HSVNConfigSectionAutoProps = "auto-props";  ///< of "config": properties of new files
inline constexpr const char* HSVNConfigOptionGlobalIgnores = "global-ignores"; ///< of the miscellany

/// Binds one version bundle to one Subversion client context and the pool that owns it.
///
/// Every operation is handed a context. A context serves one thread at a time; different contexts run on different
/// threads freely. An operation, an option's reading or change or a change of the bundle on one thread while a call of
/// another thread is under way throws `HSVNGenericException`, which names both threads, at once; calls from the
/// callbacks of a call, on its own thread, pass. `bundle`, `bundleVersion` and `setBundleVersion` are guarded by the
/// context's own lock and may be called on any thread at any time.
///
/// The verbs below are Subversion's own, on targets (`HSVNTarget`), with every choice that its command line has; each
/// takes its arguments in the order targets, revision, choices, receiver; where an operative and a peg revision are
/// wanted, one revision alone is the operative one. What they do to an item is told by notifications, also that an
/// external could not be brought along (`HSVNNotifyActionFailedExternal`), after which a verb goes on. A verb takes the
/// newest function that the context's line has for it. Where the line has an older one only, that serves as long as the
/// choices allow it, else the verb throws `HSVNUnsupportedFeatureException`, which names verb, choice and line. Verbs
/// throw `HSVNException` for every Subversion error, and `HSVNInvalidArgumentException` for a target with a NUL in it;
/// what changes items refuses those in an administrative area (`HSVNStatusCode::ReservedFileName`).
///
/// Choices are aggregates whose fields all have defaults, for designated initialisers. A release that adds a field
/// changes their size, so it has a new `SOVERSION`, and programs are compiled anew for it; their sources stay as they
/// are.
class HSVN_EXPORT HSVNContext : public HSVNObject, public std::enable_shared_from_this<HSVNContext>
{
  public:
    /// A context of the loader's default bundle (the newest loaded).
    HSVNContext();
    /// A context of the given bundle; nil means the loader's default bundle, or none when no bundle is loaded.
    ///
    /// @throws HSVNException when the Subversion client context cannot be made (svn_client_create_context)
    explicit HSVNContext(const HSVNBundleRef& bundle);
    ~HSVNContext() override;
    HSVNContext(const HSVNContext&) = delete;
    HSVNContext& operator=(const HSVNContext&) = delete;

    std::string className() const override { return "HSVNContext"; }
    /// "%@ (%@)" of the default object description and the bundle version ("(null)" without a bundle).
    std::string description() const override;

    /// The Subversion line in use; nil when there is none.
    HSVNBundleRef bundle() const;
    /// Changes the line: tears the old pool and client context down and makes new ones; nil leaves none. When the new
    /// ones cannot be made, the context is left without a bundle.
    ///
    /// @throws HSVNException when the new line cannot be set up
    /// @throws HSVNGenericException while a call on the context is under way, also from that call's callbacks
    virtual void setBundle(const HSVNBundleRef& bundle);
    /// The version under which the loader keeps the bundle; nil without a bundle.
    std::optional<HSVNVersion> bundleVersion() const;
    /// Changes the version alone, not the bundle; nil is none.
    void setBundleVersion(const std::optional<HSVNVersion>& version);

    /// The context's top-level pool, owned by the context; null without a bundle.
    apr_pool_t* pool() const;
    /// The Subversion client context, which lives in the pool; null without a bundle.
    svn_client_ctx_t* ctx() const { return _ctx; }

    /// Closes the databases of all working copies that the context keeps open, so that their drive can be unmounted or
    /// their folder goes for good when it is removed. Operations open them again when they need them.
    ///
    /// A context keeps the database of every working copy open that it has worked on, which makes the next call on it
    /// several times as fast. Other programs need not be waited for: when one of them removes, replaces or restores a
    /// working copy, or checks one out below another, the next operation sees that by itself. With a line before 1.7,
    /// which keeps nothing open, this does nothing.
    ///
    /// @throws HSVNGenericException while a call on the context is under way, also from that call's callbacks
    void closeWorkingCopies();

    /// One configuration option, UTF-8; the default when the category is missing or the option is not set.
    ///
    /// Stands for svn_config_get.
    std::optional<std::string> optionForName(const std::string& name, const std::string& category,
                                             const std::string& section,
                                             const std::optional<std::string>& defaultValue) const;
    /// Changes an option of this context in memory; configuration files are never written.
    ///
    /// @throws HSVNException "Couldn't find configuration category '%@'"
    /// Stands for svn_config_set.
    void setOption(const std::string& value, const std::string& name, const std::string& category,
                   const std::string& section);
    /// All options of a section by name; empty when the category is missing.
    ///
    /// Stands for svn_config_enumerate.
    std::map<std::string, std::string> optionsForCategory(const std::string& category,
                                                          const std::string& section) const;

    /// The global ignore patterns as one text, Subversion's default list when the configuration has none.
    std::optional<std::string> globalIgnoreString() const;
    /// That text split into patterns at line ends and tabs only: blanks do not separate here.
    std::vector<std::string> globalIgnoreList() const;

    /// Hands a notification on; a plain context drops it.
    ///
    /// @throws an assertion "Invalid parameter not satisfying: notification != nil"
    virtual void notify(const HSVNNotificationRef& notification);

    // MARK: Working copy

    /// Schedules unversioned items for addition. Files have the types of the file that "mime-types-file" names.
    ///
    /// @param targets  local paths
    /// Stands for svn_client_add5 (svn_client_add3).
    void add(const HSVNTargets& targets, const HSVNAddChoices& choices = {});
    /// Takes local changes back.
    ///
    /// @param targets  local paths
    /// Stands for svn_client_revert4 (svn_client_revert).
    void revert(const HSVNTargets& targets, const HSVNRevertChoices& choices = {});
    /// Reports the status of items in the order in which Subversion finds them.
    ///
    /// @param target    a local path
    /// @param receiver  not nil ("receiver != nil"). A node that is not kept is filled anew for the next item.
    /// @return the revision compared with; `HSVNInvalidRevision` when the repository was not asked
    /// Stands for svn_client_status6 (svn_client_status2).
    HSVNRevisionNumber status(const HSVNTarget& target, const HSVNStatusChoices& choices,
                              const HSVNReceiver<const HSVNNodeRef&>& receiver);
    /// The same, all nodes at once.
    std::vector<HSVNNodeRef> status(const HSVNTarget& target, const HSVNStatusChoices& choices = {});
    /// Ends what was interrupted in a working copy. What an interrupted batch had set aside stays, and is named in the
    /// log (`HSVNFindItemsSetAside`).
    ///
    /// @param directory  a local path
    /// Stands for svn_client_cleanup2 (svn_client_cleanup).
    void cleanUp(const HSVNTarget& directory, const HSVNCleanUpChoices& choices = {});
    /// Removes what nobody needs from a working copy that is not locked.
    ///
    /// @param directory  a local path
    /// @throws HSVNException when items are to be deleted and a symbolic link stands in the place of a versioned
    ///         directory, since what it leads to would be deleted
    /// Stands for svn_client_vacuum; not offered by lines before 1.9.
    void vacuum(const HSVNTarget& directory, const HSVNVacuumChoices& choices);
    /// Brings a working copy of an older line to the bundle's format.
    ///
    /// @param root  the working copy's root
    /// Stands for svn_client_upgrade; not offered by lines before 1.7.
    void upgrade(const HSVNTarget& root);
    /// Makes a working copy know its repository under another URL.
    ///
    /// @param root  the working copy's root
    /// @param from  what its URLs begin with until now
    /// @param to    what they begin with from now on
    /// Stands for svn_client_relocate2, on lines before 1.7 for svn_client_relocate, which leaves externals alone.
    void relocate(const HSVNTarget& root, const std::string& from, const std::string& to,
                  const HSVNRelocateChoices& choices = {});
    /// Applies a patch in the unified format, with Subversion's or Git's headers, or without any.
    ///
    /// @param file       the patch, a local path
    /// @param directory  the working copy's directory that the patch's paths are relative to
    /// @return  what became of each item, in the order of the notifications, which tell the same
    /// @throws HSVNException for a patch that would change what is not the working copy's: an item in an administrative
    ///         area (`HSVNStatusCode::ReservedFileName`), a move by way of a symbolic link, or a name with a NUL in it
    ///         (`HSVNStatusCode::IllegalTarget`); also for the change of a property without a name. Nothing is done
    ///         then. Items outside of the directory, by "../" or an absolute name, and below links are skipped.
    /// Stands for svn_client_patch; not offered by lines before 1.7.
    std::vector<HSVNPatchedItem> patch(const HSVNTarget& file, const HSVNTarget& directory,
                                       const HSVNPatchChoices& choices = {});
    /// Puts items into a changelist.
    ///
    /// @param targets     local paths
    /// @param changelist  not empty, else HSVNException
    /// Stands for svn_client_add_to_changelist; not offered by lines before 1.5.
    void addToChangelist(const HSVNTargets& targets, const std::string& changelist,
                         const HSVNChangelistChoices& choices = {});
    /// Takes items out of their changelists.
    ///
    /// @param targets  local paths
    /// Stands for svn_client_remove_from_changelists; not offered by lines before 1.5.
    void removeFromChangelists(const HSVNTargets& targets, const HSVNChangelistChoices& choices = {});
    /// Locks files in the repository. A lock that cannot be had is a notification, not an error.
    ///
    /// @param targets  either local paths, which then hold the locks, or URLs; all in one repository
    /// Stands for svn_client_lock.
    void lock(const HSVNTargets& targets, const HSVNLockChoices& choices = {});
    /// Gives locks back. A lock that cannot be released is a notification; one that the working copy does not hold is
    /// an error, unless locks are to be broken.
    ///
    /// @param targets  either local paths or URLs; all in one repository
    /// Stands for svn_client_unlock.
    void unlock(const HSVNTargets& targets, const HSVNUnlockChoices& choices = {});

    /// Tells of which revisions, URLs and depths a working copy is made, without asking the repository: the directory
    /// itself first, then each item that is not as the one above it says, as Subversion tells a server.
    ///
    /// @param directory  a local path
    /// @param receiver   not nil ("receiver != nil")
    /// Stands for svn_wc_crawl_revisions5; not offered by lines before 1.7.
    void layout(const HSVNTarget& directory, const HSVNReceiver<const HSVNLayoutItem&>& receiver);
    /// The same, all items at once.
    std::vector<HSVNLayoutItem> layout(const HSVNTarget& directory);

    // MARK: Conflicts

    /// Ends the conflicts of items and of what lies below them; nothing happens to items without any, or that are not
    /// there.
    ///
    /// @param targets  local paths
    /// Stands for svn_client_resolve (svn_client_resolved).
    void resolve(const HSVNTargets& targets, const HSVNResolveChoices& choices = {});
    /// Tells of every item in conflict at and below an item; `HSVNConflictedItem` tells about what.
    ///
    /// @param target    a local path
    /// @param receiver  called with each item's absolute path, before the next one is looked for: it may settle the
    ///                  conflict, and what comes of that is told, too; not nil ("receiver != nil")
    /// Stands for svn_client_conflict_walk; not offered by lines before 1.10.
    void conflicts(const HSVNTarget& target, const HSVNConflictsChoices& choices,
                   const HSVNReceiver<const std::string&>& receiver);
    /// The same, all paths at once.
    std::vector<std::string> conflicts(const HSVNTarget& target, const HSVNConflictsChoices& choices = {});

    // MARK: Bringing items from a repository

    /// Brings working-copy items to a revision.
    ///
    /// @param targets   local paths of versioned items, or of items that their parents' repository has
    /// @param revision  not nil ("revision != nil")
    /// @return the revision of each target, in order; `HSVNInvalidRevision` for one that was skipped
    ///
    /// Sends HSVNNotifyActionUpdateStarted, Subversion's own notifications, then HSVNNotifyActionUpdateSucceeded or
    /// HSVNNotifyActionUpdateFailed. Stands for svn_client_update4 (svn_client_update3, svn_client_update2).
    std::vector<HSVNRevisionNumber> update(const HSVNTargets& targets,
                                           const HSVNRevisionRef& revision = HSVNRevision::HEAD(),
                                           const HSVNUpdateChoices& choices = {});
    /// Makes a working copy of a repository's directory.
    ///
    /// @param url       of the directory
    /// @param path      the working copy's place; made when it is missing
    /// @param revision  not nil ("revision != nil"), the operative one HEAD, a number or a date; unspecified is the peg
    ///                  revision, or HEAD without one
    /// @return the revision checked out
    ///
    /// Sends HSVNNotifyActionCheckOutStarted and its like. Stands for svn_client_checkout3 (svn_client_checkout2).
    HSVNRevisionNumber checkout(const HSVNTarget& url, const HSVNTarget& path,
                                const HSVNRevisionArgument& revision = HSVNRevisionSpec::HEAD(),
                                const HSVNCheckOutChoices& choices = {});
    /// Brings a working copy's item to another place of the same repository.
    ///
    /// @param path      the item
    /// @param url       the place
    /// @param revision  as for `checkout`
    /// @return the revision that the item is at
    /// Stands for svn_client_switch3, on lines before 1.7 for svn_client_switch2, which compares no ancestry, on 1.4
    /// for svn_client_switch.
    HSVNRevisionNumber switchTo(const HSVNTarget& path, const HSVNTarget& url,
                                const HSVNRevisionArgument& revision = HSVNRevisionSpec::HEAD(),
                                const HSVNSwitchChoices& choices = {});
    /// Writes an item without Subversion's own data.
    ///
    /// @param from      a URL, or a working copy's item
    /// @param to        the place; "" means the item's own name in the current directory
    /// @param revision  not nil ("revision != nil")
    /// @return the revision exported; `HSVNInvalidRevision` for a working copy's own state
    ///
    /// Sends HSVNNotifyActionExportStarted and its like. Stands for svn_client_export5 (svn_client_export4,
    /// svn_client_export3).
    HSVNRevisionNumber exportTree(const HSVNTarget& from, const HSVNTarget& to,
                                  const HSVNRevisionArgument& revision = HSVNRevisionSpec::UNSPECIFIED(),
                                  const HSVNExportChoices& choices = {});

    // MARK: Merging

    /// Merges all changes of one branch that are not merged yet into a working copy of another.
    ///
    /// @param source  the branch: a URL or a working copy's item; of its revision the peg counts
    /// @param target  the local item that is changed
    /// Stands for svn_client_merge_peg5, or the older form that the line has; 1.4 merges ranges only.
    void merge(const HSVNTargetInRevision& source, const HSVNTarget& target, const HSVNMergeChoices& choices = {});
    /// Merges certain changes of one branch.
    ///
    /// @param ranges  each in its own direction; none of the revisions nil ("revision != nil")
    void merge(const HSVNTargetInRevision& source,
               const std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>>& ranges, const HSVNTarget& target,
               const HSVNMergeChoices& choices = {});
    /// Applies the difference of two trees to a working copy.
    ///
    /// @param first   one side: a URL or a working copy's item, with its operative revision
    /// @param second  the other side, the same
    /// @param target  the local item that is changed
    /// Stands for svn_client_merge5 (svn_client_merge3, svn_client_merge2).
    void mergeDifference(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                         const HSVNTarget& target, const HSVNMergeChoices& choices = {});
    /// Merges a branch that has been kept up to date back into the one it was made of.
    ///
    /// @param source   the branch: a URL or a working copy's item; of its revision the peg counts
    /// @param target   the root of a working copy without changes, of one revision
    /// @param choices  of which `dryRun`, `arguments` and `chooser` count
    /// Stands for svn_client_merge_reintegrate; not offered by lines before 1.5.
    void reintegrate(const HSVNTargetInRevision& source, const HSVNTarget& target,
                     const HSVNMergeChoices& choices = {});
    /// Tells how far one branch is merged into another.
    ///
    /// @param source  the branch that would be merged: a URL or a working copy's item; of its revision the peg counts
    /// @param target  the branch that it would be merged into, the same
    /// Stands for svn_client_get_merging_summary; not offered by lines before 1.8.
    HSVNMergingSummary mergingSummary(const HSVNTargetInRevision& source, const HSVNTargetInRevision& target);
    /// Tells which revisions of one branch are merged into another, or could be, the oldest first.
    ///
    /// @param source    the branch that was merged: a URL or a working copy's item; of its revision the peg counts
    /// @param target    the branch that it was merged into, the same
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_client_mergeinfo_log2; not offered by lines before 1.8.
    void mergedRevisions(const HSVNTargetInRevision& source, const HSVNTargetInRevision& target,
                         const HSVNMergedRevisionsChoices& choices,
                         const HSVNReceiver<const HSVNLogItemRef&>& receiver);
    /// The same, all revisions at once.
    std::vector<HSVNLogItemRef> mergedRevisions(const HSVNTargetInRevision& source, const HSVNTargetInRevision& target,
                                                const HSVNMergedRevisionsChoices& choices = {});

    // MARK: Changes that are committed
    // What is done to URLs is committed at once: the log message is a choice, else the delegate is asked for it, and
    // one that gives none leaves everything as it was. What is done to local paths is scheduled, and answers no
    // revision. A receiver, which may be nil, is called for each commit; its exception reaches the caller and undoes
    // nothing.

    /// Commits local changes.
    ///
    /// @param targets   local items, in one or several working copies of one repository
    /// @param receiver  called once the commit is done and written into the working copies; may be nil
    /// @throws HSVNException for a URL among the targets
    ///
    /// Sends HSVNNotifyActionCommitStarted and its like. Stands for svn_client_commit6 (svn_client_commit4,
    /// svn_client_commit3).
    HSVNCommitResult commit(const HSVNTargets& targets, const HSVNCommitChoices& choices = {},
                            const HSVNReceiver<const HSVNCommitResult&>& receiver = {});
    /// Commits an unversioned file, or the contents of a directory, to a URL; missing parents are made.
    ///
    /// Sends HSVNNotifyActionImportStarted and its like. Stands for svn_client_import5 (svn_client_import2).
    HSVNCommitResult importTree(const HSVNTarget& path, const HSVNTarget& url, const HSVNImportChoices& choices = {},
                                const HSVNReceiver<const HSVNCommitResult&>& receiver = {});
    /// Makes directories, all local or all of repositories.
    ///
    /// Stands for svn_client_mkdir4 (svn_client_mkdir2).
    HSVNCommitResult makeDirectories(const HSVNTargets& targets, const HSVNMakeDirectoriesChoices& choices = {},
                                     const HSVNReceiver<const HSVNCommitResult&>& receiver = {});
    /// Deletes items, all local or all of repositories.
    ///
    /// @param receiver  called for each commit: items of several repositories make several
    /// @return the last commit
    /// Stands for svn_client_delete4 (svn_client_delete2).
    HSVNCommitResult remove(const HSVNTargets& targets, const HSVNDeleteChoices& choices = {},
                            const HSVNReceiver<const HSVNCommitResult&>& receiver = {});
    /// Copies items with their history, within or between working copies and a repository.
    ///
    /// @param sources  all local or all of repositories; not empty ("[sources count] > 0")
    /// Stands for svn_client_copy7 (svn_client_copy3).
    HSVNCommitResult copy(const std::vector<HSVNTargetInRevision>& sources, const HSVNTarget& destination,
                          const HSVNCopyChoices& choices = {},
                          const HSVNReceiver<const HSVNCommitResult&>& receiver = {});
    /// The same of one item; of an older one, as `HSVNTargetInRevision{url, revision}`.
    template <std::convertible_to<HSVNTargetInRevision> Source>
    HSVNCommitResult copy(const Source& source, const HSVNTarget& destination, const HSVNCopyChoices& choices = {},
                          const HSVNReceiver<const HSVNCommitResult&>& receiver = {})
    {
        return copy(std::vector<HSVNTargetInRevision>{source}, destination, choices, receiver);
    }
    /// The same of several items in their present state, such as a vector of paths.
    template <HSVNRangeOfTargets Sources>
    HSVNCommitResult copy(const Sources& sources, const HSVNTarget& destination, const HSVNCopyChoices& choices = {},
                          const HSVNReceiver<const HSVNCommitResult&>& receiver = {})
    {
        return copy(HSVNTargets{sources}.inPresentState(), destination, choices, receiver);
    }
    /// Moves items within a working copy or within a repository.
    ///
    /// @param sources  not empty ("[sources count] > 0")
    /// Stands for svn_client_move7 (svn_client_move4).
    HSVNCommitResult move(const HSVNTargets& sources, const HSVNTarget& destination,
                          const HSVNMoveChoices& choices = {},
                          const HSVNReceiver<const HSVNCommitResult&>& receiver = {});

    // MARK: Properties

    /// Reads all properties of items, none of those that have none.
    ///
    /// @param revision  not nil ("revision != nil")
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_client_proplist4 (svn_client_proplist2).
    void properties(const HSVNTarget& target, const HSVNRevisionArgument& revision,
                    const HSVNPropertiesChoices& choices, const HSVNReceiver<const HSVNItemProperties&>& receiver);
    /// The same, all items at once.
    std::vector<HSVNItemProperties> properties(const HSVNTarget& target,
                                               const HSVNRevisionArgument& revision = HSVNRevisionSpec::UNSPECIFIED(),
                                               const HSVNPropertiesChoices& choices = {});
    /// Reads one property of the items that have it.
    ///
    /// @throws HSVNException (`HSVNStatusCode::PropertyName`) for a name that no property has (`HSVNIsPropertyName`)
    /// Stands for svn_client_propget5 (svn_client_propget2).
    HSVNPropertyValues property(const HSVNTarget& target, const std::string& name,
                                const HSVNRevisionArgument& revision = HSVNRevisionSpec::UNSPECIFIED(),
                                const HSVNPropertiesChoices& choices = {});
    /// Sets a property of items, or deletes it.
    ///
    /// @param targets  local paths
    /// @param value    bytes, UTF-8 with LF line ends for names that begin with "svn:"; nil deletes the property
    /// Stands for svn_client_propset_local (svn_client_propset2).
    void setProperty(const HSVNTargets& targets, const std::string& name, const std::optional<std::string>& value,
                     const HSVNSetPropertyChoices& choices = {});
    /// Sets a property of a repository's item, or deletes it, by a commit.
    ///
    /// @param base   the revision that the change is made of; an item that changed since is out of date
    /// @param value  as above
    /// Stands for svn_client_propset_remote, on lines before 1.8 for svn_client_propset3; not offered by 1.4.
    HSVNCommitResult setProperty(const HSVNTarget& url, HSVNRevisionNumber base, const std::string& name,
                                 const std::optional<std::string>& value, const HSVNCommitPropertyChoices& choices = {},
                                 const HSVNReceiver<const HSVNCommitResult&>& receiver = {});
    /// Reads all unversioned properties of a revision.
    ///
    /// @param url       any URL of the repository
    /// @param revision  not nil ("revision != nil")
    /// @param number    out: the revision's number; may be null
    /// Stands for svn_client_revprop_list.
    std::map<std::string, std::string> revisionProperties(const HSVNTarget& url, const HSVNRevisionRef& revision,
                                                          HSVNRevisionNumber* number = nullptr);
    /// Reads one of them; nil when the revision does not have it. The name is as for `property`. Stands for
    /// svn_client_revprop_get.
    std::optional<std::string> revisionProperty(const HSVNTarget& url, const std::string& name,
                                                const HSVNRevisionRef& revision, HSVNRevisionNumber* number = nullptr);
    /// Sets an unversioned property of a revision, or deletes it; what was there is lost.
    ///
    /// @param value  as in `setProperty`
    /// @return the revision's number
    /// Stands for svn_client_revprop_set2, on lines before 1.6 for svn_client_revprop_set.
    HSVNRevisionNumber setRevisionProperty(const HSVNTarget& url, const std::string& name,
                                           const std::optional<std::string>& value, const HSVNRevisionRef& revision,
                                           const HSVNSetRevisionPropertyChoices& choices = {});

    // MARK: Reading

    /// Tells what is known of items, without asking the repository for a working copy's unless the revision needs it.
    ///
    /// @param target    a local path or a URL
    /// @param revision  not nil ("revision != nil")
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_client_info4 (svn_client_info, which knows the depths empty and infinity, no externals and no
    /// changelists).
    void info(const HSVNTarget& target, const HSVNRevisionArgument& revision, const HSVNInfoChoices& choices,
              const HSVNReceiver<const HSVNItemInfo&>& receiver);
    /// The same, all items at once.
    std::vector<HSVNItemInfo> info(const HSVNTarget& target,
                                   const HSVNRevisionArgument& revision = HSVNRevisionSpec::UNSPECIFIED(),
                                   const HSVNInfoChoices& choices = {});
    /// Lists a repository's directory, or one file.
    ///
    /// @param target    a local path, whose URL is listed, or a URL
    /// @param revision  not nil ("revision != nil")
    /// @param receiver  not nil ("receiver != nil"). A node's name is its path below the target; that of a directory
    ///                  which is the target itself is ".".
    /// Stands for svn_client_list4 (svn_client_list).
    void list(const HSVNTarget& target, const HSVNRevisionArgument& revision, const HSVNListChoices& choices,
              const HSVNReceiver<const HSVNNodeRef&>& receiver);
    /// The same, all nodes at once.
    std::vector<HSVNNodeRef> list(const HSVNTarget& target,
                                  const HSVNRevisionArgument& revision = HSVNRevisionSpec::UNSPECIFIED(),
                                  const HSVNListChoices& choices = {});
    /// Reads the history of items.
    ///
    /// @param targets   one local path, or a URL and paths relative to it
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_client_log5 (svn_client_log3).
    void log(const HSVNTargets& targets, const HSVNLogChoices& choices,
             const HSVNReceiver<const HSVNLogItemRef&>& receiver);
    /// The same, all items at once.
    std::vector<HSVNLogItemRef> log(const HSVNTargets& targets, const HSVNLogChoices& choices = {});
    /// Reads a file's contents in a revision.
    ///
    /// @param target    a local path or a URL
    /// @param revision  not nil ("revision != nil")
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_client_cat3 (svn_client_cat2, which expands keywords).
    void contents(const HSVNTarget& target, const HSVNRevisionArgument& revision, const HSVNContentsChoices& choices,
                  const HSVNContentsReceiver& receiver);
    /// The same, all bytes at once.
    std::string contents(const HSVNTarget& target,
                         const HSVNRevisionArgument& revision = HSVNRevisionSpec::UNSPECIFIED(),
                         const HSVNContentsChoices& choices = {});
    /// Tells for each line of a file which revision changed it last, or, in a range that runs backwards, next.
    ///
    /// @param target    a local path or a URL, and by its peg revision where it is looked up
    /// @param range     how far to look back, and the revision whose lines are told; both nil means back to the first
    ///                  revision, from the target's operative one, else its peg, else HEAD of a URL and what the
    ///                  working copy holds of a local path; not one of them nil ("revision != nil")
    /// @param receiver  called for each line, in order; not nil ("receiver != nil")
    /// @throws HSVNException for a directory, and for a binary type (`HSVNStatusCode::ClientIsBinaryFile`) unless the
    ///         choices let it pass
    /// Stands for svn_client_blame6 (svn_client_blame5, svn_client_blame4 before 1.7, svn_client_blame3, which does not
    /// follow merges, before 1.5).
    void blame(const HSVNTargetInRevision& target, const std::pair<HSVNRevisionRef, HSVNRevisionRef>& range,
               const HSVNBlameChoices& choices, const HSVNReceiver<const HSVNBlamedLine&>& receiver);
    /// The same, all lines at once.
    std::vector<HSVNBlamedLine> blame(const HSVNTargetInRevision& target,
                                      const std::pair<HSVNRevisionRef, HSVNRevisionRef>& range = {},
                                      const HSVNBlameChoices& choices = {});
    /// Refuses arguments of `HSVNBlameChoices` that Subversion's own comparison of lines does not know.
    ///
    /// @throws HSVNException naming the argument
    /// Stands for svn_diff_file_options_parse.
    void checkBlameArguments(const std::vector<std::string>& arguments);

    // MARK: Comparing

    /// Writes the differences of two items in the unified format, or what another program makes of them. Headers are in
    /// the locale's encoding, lines are the files' own bytes.
    ///
    /// @param first    a local path or a URL in its operative revision
    /// @param second   the same of the item that it became
    /// @param choices  `HSVNDiffProgram::External` comes with a command ("choices.command != nil")
    /// @param output   takes the text piece by piece. Nil means the process's own stream, past all that the program
    ///                 itself has not flushed yet; an external program then writes to it directly, while a receiver
    ///                 gets what such a program wrote when it has ended well.
    /// @param errors   the same for what an external program writes to its standard error
    /// Stands for svn_client_diff7, or the older form that the line has.
    void diff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second, const HSVNDiffChoices& choices,
              const HSVNContentsReceiver& output, const HSVNContentsReceiver& errors = {});
    /// The same of one item in two revisions.
    ///
    /// @param target     a local path or a URL, and by its peg revision where it is looked up
    /// @param revisions  the older one and the younger one; not nil ("revision != nil")
    /// Stands for svn_client_diff_peg7, or the older form that the line has.
    void diff(const HSVNTargetInRevision& target, const std::pair<HSVNRevisionRef, HSVNRevisionRef>& revisions,
              const HSVNDiffChoices& choices, const HSVNContentsReceiver& output,
              const HSVNContentsReceiver& errors = {});
    /// The same two as one text; what an external program writes to its standard error goes to the process's.
    std::string diff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                     const HSVNDiffChoices& choices = {});
    /// The same of one item in two revisions.
    std::string diff(const HSVNTargetInRevision& target, const std::pair<HSVNRevisionRef, HSVNRevisionRef>& revisions,
                     const HSVNDiffChoices& choices = {});
    /// The same differences as `diff` writes, as objects: each item with what was done to it, its properties and its
    /// sections. Subversion itself compares, and names are those of Git's headers: `choices.program` and
    /// `choices.gitFormat` make no difference.
    ///
    /// Stands for svn_client_diff7, or the older form that the line has.
    HSVNTreeDiffRef treeDiff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                             const HSVNDiffChoices& choices = {});
    /// The same of one item in two revisions.
    ///
    /// Stands for svn_client_diff_peg7, or the older form that the line has; those before 1.7 know nothing of copies
    /// (`HSVNTreeDiff::knowsCopySources`).
    HSVNTreeDiffRef treeDiff(const HSVNTargetInRevision& target,
                             const std::pair<HSVNRevisionRef, HSVNRevisionRef>& revisions,
                             const HSVNDiffChoices& choices = {});
    /// Tells which items differ, without comparing their lines; otherwise as `diff`.
    ///
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_client_diff_summarize2, on 1.4 for svn_client_diff_summarize.
    void diffSummary(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                     const HSVNDiffChoices& choices, const HSVNReceiver<const HSVNDifference&>& receiver);
    /// The same of one item in two revisions. Stands for svn_client_diff_summarize_peg2; not offered before 1.5.
    void diffSummary(const HSVNTargetInRevision& target, const std::pair<HSVNRevisionRef, HSVNRevisionRef>& revisions,
                     const HSVNDiffChoices& choices, const HSVNReceiver<const HSVNDifference&>& receiver);
    /// The same two, all items at once.
    std::vector<HSVNDifference> diffSummary(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                                            const HSVNDiffChoices& choices = {});
    /// The same of one item in two revisions.
    std::vector<HSVNDifference> diffSummary(const HSVNTargetInRevision& target,
                                            const std::pair<HSVNRevisionRef, HSVNRevisionRef>& revisions,
                                            const HSVNDiffChoices& choices = {});

    /// The youngest revision of a repository.
    ///
    /// @param target  any URL of it, or a working copy's item
    /// Asks the server once. Stands for svn_ra_get_latest_revnum.
    HSVNRevisionNumber latestRevision(const HSVNTarget& target);
    /// The URL of a working copy's item; a URL is its own, nil for an item that has none.
    ///
    /// Stands for svn_client_url_from_path.
    std::optional<std::string> URLOfTarget(const HSVNTarget& target);

  protected:
    /// Chooses the constructor of that sense.
    struct WithoutBundle
    {
    };
    /// A context without a bundle, for subclasses whose own `setBundle` does more.
    explicit HSVNContext(WithoutBundle);

    /// What `setBundle` does, once no call is under way.
    void changeBundle(const HSVNBundleRef& bundle);
    /// Makes pool and client context with the bundle; `setBundle` calls it.
    void setupContext();
    /// Destroys pool and client context with the bundle that made them.
    void cleanupContext();
    /// Makes the context ready for an operation that no other call lies around.
    virtual void beginOperation();
    /// Guards bundle and bundle version.
    std::recursive_mutex& mutex() const { return _lock; }

  private:
    friend class HSVNContextUse;
    friend class HSVNOperation;
    friend struct HSVNKeptException;
    friend class HSVNTransferObserver;
    friend struct HSVNTransferCallback;

    mutable std::atomic<std::thread::id> _user; // the thread whose call is under way; none when there is no call
    mutable std::recursive_mutex _lock;
    HSVNBundleRef _bundle;
    std::optional<HSVNVersion> _bundleVersion;
    std::unique_ptr<HSVNPool> _pool; // owns what _ctx points to
    svn_client_ctx_t* _ctx = nullptr;
    const HSVNTransferObserver* _transferObserver = nullptr;
    const HSVNOperation* _operation = nullptr; // the innermost one under way
    std::int64_t _countedBytes = 0;            // as Subversion last counted them
    std::int64_t _operationBytes = 0;          // of these, the outermost operation's
    std::exception_ptr _keptException;         // of a callback
};
