#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNNode.h"
#include "HSVNStatusKind.h"
#include "HSVNVersion.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class HSVNCheckOutOptions;
class HSVNStatusOptions;

/// A versioned folder, with the combined status of everything below it that a status scan visited. It keeps no list of
/// its children: the operations that list them answer them beside it.
class HSVN_EXPORT HSVNDirectory : public HSVNNode
{
  public:
    HSVNDirectory() = default;
    using HSVNNode::HSVNNode;
    /// @throws HSVNInvalidArgumentException "Keyed unarchiver required", or for a value that does not fit its field
    explicit HSVNDirectory(HSVNCoder* decoder);

    std::string className() const override { return "HSVNDirectory"; }
    /// Adds the keys "aggregateChildStatus" and "aggregateReposChildStatus", and "treeConflictCount" where it is not 0.
    void encodeWithCoder(HSVNCoder* encoder) const override;
    HSVNNodeRef copy() const override;
    bool isDirectory() const override { return true; }

    /// The text and property kinds that occur below the folder.
    HSVNStatusKinds aggregateChildStatus() const { return _aggregateChildStatus; }
    void setAggregateChildStatus(HSVNStatusKinds kinds) { _aggregateChildStatus = kinds; }
    /// The repository-side kinds that occur below the folder; none unless the repository was asked.
    HSVNStatusKinds aggregateRepositoryChildStatus() const { return _aggregateReposChildStatus; }
    void setAggregateRepositoryChildStatus(HSVNStatusKinds kinds) { _aggregateReposChildStatus = kinds; }

    /// How many items below the folder are in a tree conflict, which is no kind of a text's or a property's; 0 on lines
    /// before 1.6, which have none.
    std::uint32_t childTreeConflictCount() const { return _childTreeConflictCount; }
    void setChildTreeConflictCount(std::uint32_t count) { _childTreeConflictCount = count; }

    // Working copy

    /// Whether any of the kinds occurs below the folder.
    bool hasNodesWithStatus(HSVNStatusKinds kinds) const { return (_aggregateChildStatus & kinds) != 0; }
    /// Whether an unversioned item lies below the folder.
    bool hasUnversionedNodes() const { return hasNodesWithStatus(HSVNStatusKindUnversioned); }
    /// Whether an added item lies below the folder.
    bool hasAddedNodes() const { return hasNodesWithStatus(HSVNStatusKindAdded); }
    /// Whether a missing item lies below the folder.
    bool hasMissingNodes() const { return hasNodesWithStatus(HSVNStatusKindMissing); }
    /// Whether a deleted item lies below the folder.
    bool hasDeletedNodes() const { return hasNodesWithStatus(HSVNStatusKindDeleted); }
    /// Whether a replaced item lies below the folder.
    bool hasReplacedNodes() const { return hasNodesWithStatus(HSVNStatusKindReplaced); }
    /// Whether a modified item lies below the folder.
    bool hasModifiedNodes() const { return hasNodesWithStatus(HSVNStatusKindModified); }
    /// Whether an item whose text or properties are in conflict lies below the folder; `childTreeConflictCount` tells
    /// of tree conflicts.
    bool hasConflictedNodes() const { return hasNodesWithStatus(HSVNStatusKindConflicted); }
    /// Whether the repository-side kinds are anything but none and normal alone.
    bool hasNodesChangedInRepository() const
    {
        return _aggregateReposChildStatus != HSVNStatusKindNone && _aggregateReposChildStatus != HSVNStatusKindNormal;
    }

    /// Makes a new working copy.
    ///
    /// @param url      the folder to check out; not nil ("url != nil")
    /// @param path     where the working copy goes; made when missing; not nil ("path != nil")
    /// @param options  revision, depth, externals and obstruction choices; not nil ("options != nil"), and with a depth
    ///                 ("[options depth] != HSVNDepthUnknown", "[options depth] != HSVNDepthExclude")
    /// @param context  not nil ("context != nil")
    /// @return the working copy's root, at its BASE revision
    /// @throws HSVNException for every Subversion error, and one named NSInvalidArgumentException, "Incompatible depth
    ///         argument for 1.4 (HSVNDepthInfinity and HSVNDepthFiles supported)", on a 1.4 bundle
    ///
    /// Sends HSVNNotifyActionCheckOutStarted, Subversion's own notifications, then HSVNNotifyActionCheckOutSucceeded or
    /// HSVNNotifyActionCheckOutFailed. Stands for svn_client_checkout3 (svn_client_checkout2 on a 1.4 bundle).
    static HSVNDirectoryRef checkoutDirectoryAtURL(const HSVNURLRef& url, const HSVNPathRef& path,
                                                   const std::shared_ptr<const HSVNCheckOutOptions>& options,
                                                   const HSVNContextRef& context);

    // Working-copy status

    /// Scans a folder: a node with its status for each item that Subversion reports.
    ///
    /// @param path     the folder; not nil ("path != nil")
    /// @param options  what is walked and reported; not nil ("options != nil")
    /// @param context  not nil ("context != nil")
    /// @return the nodes in Subversion's order, their paths in canonical form; a folder that is not under version
    ///         control is scanned as `statusForNodesInUnversionedDirectoryAtPath` does
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_status2.
    static std::vector<HSVNNodeRef>
    statusForNodesInDirectoryAtPath(const HSVNPathRef& path, const std::shared_ptr<const HSVNStatusOptions>& options,
                                    const HSVNContextRef& context);
    /// The same.
    ///
    /// @param directory          out: the folder's own node, nil when Subversion did not report it; may be null
    /// @param abnormalItemCount  out: how many items are changed, unversioned, missing or in conflict; may be null
    static std::vector<HSVNNodeRef>
    statusForNodesInDirectoryAtPath(const HSVNPathRef& path, const std::shared_ptr<const HSVNStatusOptions>& options,
                                    HSVNNodeRef* directory, std::size_t* abnormalItemCount,
                                    const HSVNContextRef& context);
    /// A node for each item in a folder that is not under version control, in the order of their names.
    ///
    /// Goes into its folders when the options are recursive, but not into ignored ones nor into working copies.
    /// Arguments as above; `directory` is the folder's own node.
    ///
    /// @throws HSVNException when a folder cannot be read
    static std::vector<HSVNNodeRef> statusForNodesInUnversionedDirectoryAtPath(
        const HSVNPathRef& path, const std::shared_ptr<const HSVNStatusOptions>& options, HSVNNodeRef* directory,
        std::size_t* abnormalItemCount, const HSVNContextRef& context);
    /// One working-copy folder with its status and the kinds of its direct children.
    ///
    /// @param path     the folder; not nil ("path != nil")
    /// @param context  not nil ("context != nil")
    /// @throws HSVNNotWorkingCopyException "Directory is not a working copy"; HSVNException for every Subversion error
    /// Stands for svn_client_status2 and svn_client_info.
    static HSVNDirectoryRef workingCopyWithStatusAtPath(const HSVNPathRef& path, const HSVNContextRef& context);
    /// The same.
    ///
    /// @param repositoryInfo  out: the repository's identity; may be null
    static HSVNDirectoryRef workingCopyWithStatusAtPath(const HSVNPathRef& path, HSVNRepositoryInfoRef* repositoryInfo,
                                                        const HSVNContextRef& context);

    // Externals

    /// The local paths at which the externals definitions found under a working-copy path place their working copies,
    /// sorted; whether or not they are there.
    ///
    /// @throws HSVNInvalidExternalsDescriptionException for a definition that Subversion cannot parse
    /// Stands for svn_client_propget2.
    static std::vector<HSVNLocalPathRef> externalsForPath(const HSVNPathRef& path, const HSVNContextRef& context);
    /// Those of them that are working copies.
    static std::vector<HSVNLocalPathRef> externalsInDirectoryAtPath(const HSVNPathRef& path,
                                                                    const HSVNContextRef& context);

    // Working-copy format. These need no context: they use the loader's default bundle.

    /// The format number of a working copy, 0 for a folder that is none; also of formats that no bundle serves.
    ///
    /// @param path  not nil ("path != nil")
    /// @throws HSVNNoSuchEntryException when there is nothing at the path; HSVNException for other Subversion errors
    /// Stands for svn_wc_check_wc.
    static std::int32_t formatVersionForWorkingCopyAtPath(const HSVNPathRef& path);
    /// The line (major and minor) of the oldest bundle that serves a working copy's format; the newest when none does.
    ///
    /// @throws HSVNNotWorkingCopyException "\"%\" is not a working copy"
    static HSVNVersion versionForWorkingCopyAtPath(const HSVNPathRef& path);
    /// Whether the format number is not 0; throws as that does.
    static bool isWorkingCopyAtPath(const HSVNPathRef& path);
    /// The administrative folder of a working copy, whether or not it is there.
    ///
    /// Stands for svn_wc_get_adm_dir.
    static HSVNLocalPathRef adminAreaInWorkingCopyAtPath(const HSVNPathRef& path);
    /// The ancestor of a path, or the path itself, that lies directly in the root.
    ///
    /// @param path  below the root
    static HSVNPathRef parentDirectoryInRoot(const HSVNPathRef& root, const HSVNPathRef& path);
    /// Finishes what interrupted operations left and removes their locks.
    ///
    /// @param path     not nil ("path != nil")
    /// @param context  not nil ("context != nil")
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_cleanup.
    static void cleanUpWorkingCopyAtPath(const HSVNPathRef& path, const HSVNContextRef& context);
    /// Deletes the administrative folders at and below a path; every other file stays. Links are not followed.
    ///
    /// @throws HSVNException "Failed to delete working copy admin area at '%@'"
    static void purgeAdminDirectoriesInPath(const HSVNPathRef& path);
    /// Runs the upgrade script on one working copy and waits for its end. How it ended the next format check tells.
    ///
    /// @param path     not nil ("path != nil")
    /// @param version  the line whose format is wanted; not nil ("version != nil")
    /// @param force    whether what the line cannot hold may be lost
    /// @throws HSVNException "Failed to start upgrade script"
    static void runUpgradeScriptForWorkingCopyAtPath(const HSVNPathRef& path, const std::optional<HSVNVersion>& version,
                                                     bool force);
    /// The same for a working copy and, in turn, for those that its externals definitions place in it. The bundle of
    /// the version reads the definitions; without one the default bundle does.
    static void upgradeWorkingCopyAtPath(const HSVNPathRef& path, const std::optional<HSVNVersion>& version,
                                         bool force);

    // Services

    /// The folder at a path in a revision, without a status record.
    ///
    /// @param path      a local path or a URL; not nil ("path != nil")
    /// @param revision  not nil ("revision != nil")
    /// @param context   not nil ("context != nil")
    /// @return the folder; nil when a server other than svn and svn+ssh tells nothing
    /// @throws HSVNNoSuchEntryException "'%@' does not exist", HSVNNotWorkingCopyException "'%@' is not a working copy"
    ///         for a local path; HSVNInternalInconsistencyException when Subversion tells nothing; HSVNException for
    ///         every Subversion error
    /// Stands for svn_client_info.
    static HSVNDirectoryRef directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                            const HSVNContextRef& context);
    /// The same, which also tells what is known of the repository.
    ///
    /// @param repositoryInfo  where that is stored; may be null
    static HSVNDirectoryRef directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                            HSVNRepositoryInfoRef* repositoryInfo, const HSVNContextRef& context);
    /// The same for a null pointer that is written out.
    static HSVNDirectoryRef directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                            std::nullptr_t, const HSVNContextRef& context)
    {
        return directoryAtPath(path, revision, context);
    }
    /// The same as an object of a subclass, made by its default constructor.
    template <std::derived_from<HSVNDirectory> Class>
    static std::shared_ptr<Class> directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                                  HSVNRepositoryInfoRef* repositoryInfo, const HSVNContextRef& context)
    {
        const Maker maker = []() -> HSVNDirectoryRef { return std::make_shared<Class>(); };
        return std::static_pointer_cast<Class>(directoryAtPath(path, revision, repositoryInfo, context, maker));
    }
    /// The folder at a path in a revision together with the items in it.
    ///
    /// @param path      a local path or a URL; not nil ("path != nil")
    /// @param revision  not nil ("revision != nil")
    /// @param children  where the items are stored, in Subversion's order; may be null
    /// @param context   not nil ("context != nil")
    /// @return nil when the item is a file
    /// @throws HSVNException for every Subversion error
    /// Stands for svn_client_list.
    static HSVNDirectoryRef directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                            std::vector<HSVNNodeRef>* children, const HSVNContextRef& context);

    /// Makes a folder, in the repository at once (the log message comes from the context's delegate) or in a working
    /// copy, scheduled for addition.
    ///
    /// @param path     a URL or a local path; not nil ("path != nil")
    /// @param context  not nil ("context != nil")
    /// @return the new folder
    /// @throws HSVNOperationCancelledException "Operation was cancelled" when the log message was refused;
    ///         HSVNException for every Subversion error
    static HSVNDirectoryRef createDirectoryAtPath(const HSVNPathRef& path, const HSVNContextRef& context);
    /// Makes a folder and those of its ancestors below an existing folder that are missing.
    ///
    /// @param path       the folder wanted; not nil ("path != nil")
    /// @param directory  an existing ancestor; not nil ("directoryPath != nil")
    /// @param context    not nil ("context != nil")
    /// @return the deepest new folder; nil when all of them were there already
    /// @throws HSVNInvalidArgumentException for a path that does not lie in the folder; else what
    ///         `createDirectoryAtPath` throws
    static HSVNDirectoryRef createPath(const HSVNPathRef& path, const HSVNPathRef& directory,
                                       const HSVNContextRef& context);

    /// Makes the object that an operation fills.
    using Maker = HSVNDirectoryRef (*)();

  private:
    static HSVNDirectoryRef directoryAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                            HSVNRepositoryInfoRef* repositoryInfo, const HSVNContextRef& context,
                                            Maker maker);

    HSVNStatusKinds _aggregateChildStatus = HSVNStatusKindNone;
    HSVNStatusKinds _aggregateReposChildStatus = HSVNStatusKindNone;
    std::uint32_t _childTreeConflictCount = 0;
};
