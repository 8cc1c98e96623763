#pragma once

#include "HSVNContext.h"
#include "HSVNLockRecord.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Where one side of a conflict comes from.
struct HSVNConflictVersion
{
    std::optional<std::string> repositoryURL;
    std::optional<std::string> uuid;
    HSVNRevisionNumber pegRevision = HSVNInvalidRevision;
    std::optional<std::string> pathInRepository; ///< without a leading "/"
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
    HSVNNodeKind nodeKind = HSVNNodeKindUnknown;
    HSVNConflictAction action = HSVNConflictAction::Edit;
    HSVNConflictReason reason = HSVNConflictReason::Edited;
    HSVNConflictOperation operation = HSVNConflictOperation::None;
    std::optional<std::string> propertyName;
    // Files that the conflict left, as absolute paths.
    std::optional<std::string> basePath;
    std::optional<std::string> theirPath;
    std::optional<std::string> myPath;
    std::optional<std::string> propertyRejectPath;
    std::optional<HSVNConflictVersion> sourceLeft;
    std::optional<HSVNConflictVersion> sourceRight;
};

/// What only a working copy's item has.
struct HSVNWorkingCopyInfo
{
    HSVNSchedule schedule = HSVNScheduleNormal;
    std::optional<std::string> copyFromURL;
    HSVNRevisionNumber copyFromRevision = HSVNInvalidRevision;
    std::optional<std::string> checksum; ///< hexadecimal digits
    bool checksumIsSHA1 = true;          ///< otherwise MD5
    std::optional<std::string> changelist;
    HSVNDepth depth = HSVNDepthUnknown;
    std::optional<HSVNDate> textTime; ///< of the file when it was last known unchanged
    std::vector<HSVNConflictRecord> conflicts;
    std::optional<std::string> rootPath;  ///< absolute path of the working copy
    std::optional<std::string> movedFrom; ///< absolute path
    std::optional<std::string> movedTo;   ///< absolute path
};

/// One item, of a working copy or a repository, with every field that Subversion reports.
struct HSVNItemInfo
{
    std::string target; ///< absolute path, or for a URL the path relative to its parent's
    std::optional<std::string> url;
    HSVNRevisionNumber revision = HSVNInvalidRevision;
    std::optional<std::string> repositoryRootURL;
    std::optional<std::string> uuid;
    HSVNNodeKind kind = HSVNNodeKindUnknown;
    std::int64_t size = -1; ///< in the repository, in bytes; -1 when unknown
    HSVNRevisionNumber lastChangedRevision = HSVNInvalidRevision;
    std::optional<HSVNDate> lastChangedDate;
    std::optional<std::string> lastChangedAuthor;
    std::optional<HSVNLockRecord> lock;
    std::optional<HSVNWorkingCopyInfo> workingCopy;
};

/// Which items are asked for.
struct HSVNItemInfoOptions
{
    HSVNDepth depth = HSVNDepthEmpty;
    bool includeExternals = false;
    std::vector<std::string> changelists; ///< only items of these; none means all
};

using HSVNItemInfoReceiver = std::function<void(const HSVNItemInfo& info)>;

/// Reports what is known of items, without asking the repository for a working copy's unless the revision needs it.
///
/// @param target    a local path or a URL; see HSVNTargets
/// @param revision  not nil ("revision != nil")
/// @param receiver  called for each item; an exception stops the operation and reaches the caller
/// @param context   not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_info4; not offered by lines before 1.9.
HSVN_EXPORT void HSVNReadItemInfo(const std::string& target, const HSVNRevisionSpecRef& revision,
                                  const HSVNItemInfoOptions& options, const HSVNItemInfoReceiver& receiver,
                                  const HSVNContextRef& context);
