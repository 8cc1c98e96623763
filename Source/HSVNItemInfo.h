#pragma once

#include "HSVNContext.h"
#include "HSVNLockRecord.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"
#include "HSVNWorkingCopyPlace.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Where one side of a conflict comes from.
struct HSVNConflictVersion
{
    std::optional<std::string> repositoryURL;             ///< of the repository's root
    std::optional<std::string> uuid;                      ///< of the repository
    HSVNRevisionNumber pegRevision = HSVNInvalidRevision; ///< in which the path is found
    std::optional<std::string> pathInRepository;          ///< without a leading "/"
    HSVNNodeKind kind = HSVNNodeKindUnknown;
};

/// What kind of change a conflict is about; the values equal those of `svn_wc_conflict_kind_t`.
enum class HSVNConflictKind : std::int32_t
{
    Text = 0,
    Property = 1,
    Tree = 2
};

/// What an operation tried to do; the values equal those of `svn_wc_conflict_action_t`.
enum class HSVNConflictAction : std::int32_t
{
    Edit = 0,
    Add = 1,
    Delete = 2,
    Replace = 3
};

/// What kept it from doing so; the values equal those of `svn_wc_conflict_reason_t`.
enum class HSVNConflictReason : std::int32_t
{
    Edited = 0,
    Obstructed = 1,
    Deleted = 2,
    Missing = 3,
    Unversioned = 4,
    Added = 5,
    Replaced = 6,
    MovedAway = 7,
    MovedHere = 8
};

/// The operation that met a conflict; the values equal those of `svn_wc_operation_t`.
enum class HSVNConflictOperation : std::int32_t
{
    None = 0,
    Update = 1,
    Switch = 2,
    Merge = 3
};

/// One conflict of a working copy's item.
struct HSVNConflictRecord
{
    HSVNConflictKind kind = HSVNConflictKind::Text;
    HSVNNodeKind nodeKind = HSVNNodeKindUnknown; ///< of the item in conflict
    HSVNConflictAction action = HSVNConflictAction::Edit;
    HSVNConflictReason reason = HSVNConflictReason::Edited;
    HSVNConflictOperation operation = HSVNConflictOperation::None;
    std::optional<std::string> propertyName; ///< of a property conflict
    // Files that the conflict left, as absolute paths.
    std::optional<std::string> basePath;            ///< the common ancestor
    std::optional<std::string> theirPath;           ///< what came in
    std::optional<std::string> myPath;              ///< what was there
    std::optional<std::string> propertyRejectPath;  ///< properties that could not be merged
    std::optional<HSVNConflictVersion> sourceLeft;  ///< what the change started from
    std::optional<HSVNConflictVersion> sourceRight; ///< what it led to
};

/// What only a working copy's item has.
struct HSVNWorkingCopyInfo : HSVNWorkingCopyPlace
{
    HSVNSchedule schedule = HSVNScheduleNormal;                ///< what the next commit will do with the item
    std::optional<std::string> copyFromURL;                    ///< what it is a copy of; nil for no copy
    HSVNRevisionNumber copyFromRevision = HSVNInvalidRevision; ///< none for no copy
    std::optional<std::string> checksum;                       ///< hexadecimal digits
    bool checksumIsSHA1 = true;                                ///< otherwise MD5
    std::optional<HSVNDate> textTime;                          ///< of the file when it was last known unchanged
    std::vector<HSVNConflictRecord> conflicts;                 ///< empty for an item without any
    std::optional<std::string> rootPath;                       ///< absolute path of the working copy
};

/// One item, of a working copy or a repository, with every field that Subversion reports.
struct HSVNItemInfo
{
    std::string target;             ///< absolute path, or for a URL the path relative to its parent's
    std::optional<std::string> url; ///< nil when the item has none
    HSVNRevisionNumber revision = HSVNInvalidRevision; ///< the one asked for, or that of the working copy
    std::optional<std::string> repositoryRootURL;      ///< nil when not known
    std::optional<std::string> uuid;                   ///< of the repository; nil when not known
    HSVNNodeKind kind = HSVNNodeKindUnknown;
    std::int64_t size = -1;                                       ///< in the repository, in bytes; -1 when unknown
    HSVNRevisionNumber lastChangedRevision = HSVNInvalidRevision; ///< in which the item last changed
    std::optional<HSVNDate> lastChangedDate;                      ///< when it did
    std::optional<std::string> lastChangedAuthor;                 ///< who changed it
    std::optional<HSVNLockRecord> lock;                           ///< of the item asked for; nil when it has none
    std::optional<HSVNWorkingCopyInfo> workingCopy;               ///< nil for an item of a repository
};

/// Which items are asked for.
struct HSVNItemInfoOptions
{
    HSVNDepth depth = HSVNDepthEmpty;     ///< how far below the target
    bool includeExternals = false;        ///< what externals definitions place, too
    std::vector<std::string> changelists; ///< only items of these; none means all
};

using HSVNItemInfoReceiver = std::function<void(const HSVNItemInfo& info)>;

/// Reports what is known of items, without asking the repository for a working copy's unless the revision needs it.
///
/// @param target    a local path or a URL; see HSVNTargets
/// @param revision  not nil ("revision != nil")
/// @param receiver  called for each item; an exception stops the operation and reaches the caller;
///                  not nil ("receiver != nil")
/// @param context   not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_info4; not offered by lines before 1.9.
HSVN_EXPORT void HSVNReadItemInfo(const std::string& target, const HSVNRevisionSpecRef& revision,
                                  const HSVNItemInfoOptions& options, const HSVNItemInfoReceiver& receiver,
                                  const HSVNContextRef& context);
