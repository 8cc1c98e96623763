#pragma once

#include "HSVNCoder.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNPlatformException.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

/// What a notification reports. 0 to 85 equal `svn_wc_notify_action_t`, of which lines before 1.7 send the first 40
/// only and newer values pass through; -1 and the values from 0x10000 up are the library's own.
enum HSVNNotifyAction : std::int32_t
{
    HSVNNotifyActionUnknown = -1,
    HSVNNotifyActionAdd = 0,
    HSVNNotifyActionCopy = 1,
    HSVNNotifyActionDelete = 2,
    HSVNNotifyActionRestore = 3,
    HSVNNotifyActionRevert = 4,
    HSVNNotifyActionFailedRevert = 5,
    HSVNNotifyActionResolved = 6,
    HSVNNotifyActionSkip = 7,
    HSVNNotifyActionUpdateDelete = 8,
    HSVNNotifyActionUpdateAdd = 9,
    HSVNNotifyActionUpdateUpdate = 10,
    HSVNNotifyActionUpdateCompleted = 11,
    HSVNNotifyActionUpdateExternal = 12,
    HSVNNotifyActionStatusCompleted = 13,
    HSVNNotifyActionStatusExternal = 14,
    HSVNNotifyActionCommitModified = 15,
    HSVNNotifyActionCommitAdded = 16,
    HSVNNotifyActionCommitDeleted = 17,
    HSVNNotifyActionCommitReplaced = 18,
    HSVNNotifyActionCommitPostfixTXDelta = 19,
    HSVNNotifyActionBlameRevision = 20,
    HSVNNotifyActionLocked = 21,
    HSVNNotifyActionUnlocked = 22,
    HSVNNotifyActionFailedLock = 23,
    HSVNNotifyActionFailedUnlock = 24,
    HSVNNotifyActionExists = 25,
    HSVNNotifyActionChangeListSet = 26,
    HSVNNotifyActionChangeListClear = 27,
    HSVNNotifyActionChangeListMoved = 28,
    HSVNNotifyActionMergeBegin = 29,
    HSVNNotifyActionForeignMergeBegin = 30,
    HSVNNotifyActionUpdateReplace = 31,
    HSVNNotifyActionPropertyAdded = 32,
    HSVNNotifyActionPropertyModified = 33,
    HSVNNotifyActionPropertyDeleted = 34,
    HSVNNotifyActionPropertyDeletedNonExistent = 35,
    HSVNNotifyActionRevisionPropertySet = 36,
    HSVNNotifyActionRevisionPropertyDeleted = 37,
    HSVNNotifyActionMergeCompleted = 38,
    HSVNNotifyActionTreeConflict = 39,
    HSVNNotifyActionFailedExternal = 40,
    HSVNNotifyActionUpdateOfPathStarted = 41,    ///< an update of a path begins
    HSVNNotifyActionUpdateSkipObstruction = 42,  ///< another working copy is in the way
    HSVNNotifyActionUpdateSkipWorkingOnly = 43,  ///< not in the repository and no versioned parent
    HSVNNotifyActionUpdateSkipAccessDenied = 44, ///< the path cannot be read
    HSVNNotifyActionUpdateExternalRemoved = 45,  ///< a former external was removed; the error tells why it was kept
    HSVNNotifyActionUpdateShadowedAdd = 46,      ///< added below a local change
    HSVNNotifyActionUpdateShadowedUpdate = 47,   ///< updated below a local change
    HSVNNotifyActionUpdateShadowedDelete = 48,   ///< deleted below a local change
    HSVNNotifyActionMergeRecordInfo = 49,        ///< merge tracking was recorded on a path
    HSVNNotifyActionUpgradedPath = 50,           ///< a working copy got the newest format
    HSVNNotifyActionMergeRecordInfoBegin = 51,   ///< merge tracking is going to be recorded
    HSVNNotifyActionMergeElideInfo = 52,         ///< merge tracking was removed, the parent says the same
    HSVNNotifyActionPatch = 53,                  ///< a file was patched
    HSVNNotifyActionPatchAppliedHunk = 54,
    HSVNNotifyActionPatchRejectedHunk = 55,
    HSVNNotifyActionPatchHunkAlreadyApplied = 56,
    HSVNNotifyActionCommitCopied = 57,         ///< a copy is committed
    HSVNNotifyActionCommitCopiedReplaced = 58, ///< a copy that replaces is committed
    HSVNNotifyActionURLRedirect = 59,          ///< the server moved; the URL is the new one
    HSVNNotifyActionPathNonexistent = 60,      ///< not under version control
    HSVNNotifyActionExclude = 61,              ///< removed by its depth
    HSVNNotifyActionFailedConflict = 62,       ///< left in conflict, so not done
    HSVNNotifyActionFailedMissing = 63,        ///< an added item is missing
    HSVNNotifyActionFailedOutOfDate = 64,
    HSVNNotifyActionFailedNoParent = 65, ///< an added parent is not part of the commit
    HSVNNotifyActionFailedLocked = 66,   ///< locked elsewhere
    HSVNNotifyActionFailedForbiddenByServer = 67,
    HSVNNotifyActionSkipConflicted = 68,   ///< in conflict, so not touched
    HSVNNotifyActionUpdateBrokenLock = 69, ///< an update found the lock broken
    HSVNNotifyActionFailedObstruction = 70,
    HSVNNotifyActionConflictResolverStarting = 71,
    HSVNNotifyActionConflictResolverDone = 72,
    HSVNNotifyActionLeftLocalModifications = 73, ///< what was deleted has local changes, which stay
    HSVNNotifyActionForeignCopyBegin = 74,       ///< a copy out of another repository begins
    HSVNNotifyActionMoveBroken = 75,             ///< a move is a copy and a deletion from now on
    HSVNNotifyActionCleanupExternal = 76,        ///< an external is cleaned up
    HSVNNotifyActionFailedRequiresTarget = 77,   ///< only possible together with the path
    HSVNNotifyActionInfoExternal = 78,           ///< an external is asked
    HSVNNotifyActionCommitFinalizing = 79,       ///< everything is sent
    HSVNNotifyActionResolvedText = 80,
    HSVNNotifyActionResolvedProperty = 81,
    HSVNNotifyActionResolvedTree = 82,
    HSVNNotifyActionBeginSearchTreeConflictDetails = 83,
    HSVNNotifyActionTreeConflictDetailsProgress = 84, ///< a revision was searched
    HSVNNotifyActionEndSearchTreeConflictDetails = 85,
    HSVNNotifyActionUpdateStarted = 0x10000,
    HSVNNotifyActionUpdateSucceeded = 0x10001,
    HSVNNotifyActionUpdateFailed = 0x10002,
    HSVNNotifyActionCommitStarted = 0x10003,
    HSVNNotifyActionCommitSucceeded = 0x10004,
    HSVNNotifyActionCommitFailed = 0x10005,
    HSVNNotifyActionCheckOutStarted = 0x10006,
    HSVNNotifyActionCheckOutSucceeded = 0x10007,
    HSVNNotifyActionCheckOutFailed = 0x10008,
    HSVNNotifyActionImportStarted = 0x10009,
    HSVNNotifyActionImportSucceeded = 0x1000a,
    HSVNNotifyActionImportFailed = 0x1000b,
    HSVNNotifyActionExportStarted = 0x1000c,
    HSVNNotifyActionExportSucceeded = 0x1000d,
    HSVNNotifyActionExportFailed = 0x1000e,
    HSVNNotifyActionInternalExportStarted = 0x1000f
};

/// What happened to an item's text or properties; the values equal those of `svn_wc_notify_state_t`.
enum HSVNNotifyState : std::int32_t
{
    HSVNNotifyStateInapplicable = 0,
    HSVNNotifyStateUnknown = 1,
    HSVNNotifyStateUnchanged = 2,
    HSVNNotifyStateMissing = 3,      ///< the item was not there
    HSVNNotifyStateObstructed = 4,   ///< an unversioned item was in the way
    HSVNNotifyStateChanged = 5,      ///< the pristine state changed
    HSVNNotifyStateMerged = 6,       ///< merged into local changes
    HSVNNotifyStateConflicted = 7,   ///< conflicts with local changes
    HSVNNotifyStateSourceMissing = 8 ///< what was to be copied was not there
};

/// What happened to an item's lock; the values equal those of `svn_wc_notify_lock_state_t`.
enum HSVNNotifyLockState : std::int32_t
{
    HSVNNotifyLockStateInapplicable = 0,
    HSVNNotifyLockStateUnknown = 1,
    HSVNNotifyLockStateUnchanged = 2,
    HSVNNotifyLockStateLocked = 3,
    HSVNNotifyLockStateUnlocked = 4
};

/// What an action reports, as people read it, such as "updated" or "commit started". Takes a notification's `action()`.
HSVN_EXPORT const char* HSVNTextOfNotifyAction(std::int32_t action);
/// A state of an item's text or properties, such as "conflicted".
HSVN_EXPORT const char* HSVNTextOfNotifyState(std::int32_t state);
/// A state of an item's lock, such as "unlocked".
HSVN_EXPORT const char* HSVNTextOfNotifyLockState(std::int32_t state);

/// Where one change of a patch was applied or refused, in lines counted from 1.
struct HSVNPatchHunk
{
    std::uint64_t originalStart = 0;  ///< as the patch says, of the file before
    std::uint64_t originalLength = 0; ///< how many lines
    std::uint64_t modifiedStart = 0;  ///< as the patch says, of the file after
    std::uint64_t modifiedLength = 0; ///< how many lines
    std::uint64_t matchedLine = 0;    ///< where it was found in the file
    std::uint64_t fuzz = 0;           ///< how many lines around it were left out of account

    friend bool operator==(const HSVNPatchHunk&, const HSVNPatchHunk&) = default;
};

/// One report of a running operation: an item's progress as Subversion sends it, or the start or end of an operation.
///
/// Built on the thread that runs the operation, filled by its setters, and not changed once it is sent.
class HSVN_EXPORT HSVNNotification : public HSVNArchivable
{
  public:
    /// Action -1, node kind 3 (unknown), revision -1, the three states 1 (unknown), all else nil.
    HSVNNotification() = default;
    /// @throws HSVNInvalidArgumentException "Keyed unarchiver required", or for a value that does not fit its field
    explicit HSVNNotification(HSVNCoder* decoder);

    /// A new notification with the defaults.
    static std::shared_ptr<HSVNNotification> notification();
    /// The same with the action set.
    static std::shared_ptr<HSVNNotification> notificationWithAction(std::int32_t action);
    /// The constant's name, such as "HSVNNotifyActionAdd"; "<unknown> (41)" for the values from 41 to 85, as for those
    /// without a constant.
    static std::string stringForAction(std::int32_t action);

    /// The item concerned, as Subversion reports it.
    const std::optional<std::string>& path() const { return _path; }
    void setPath(std::optional<std::string> path) { _path = std::move(path); }
    /// A common prefix that may be left out when the path is shown.
    const std::optional<std::string>& pathPrefix() const { return _pathPrefix; }
    void setPathPrefix(std::optional<std::string> pathPrefix) { _pathPrefix = std::move(pathPrefix); }
    /// The item's repository URL, when Subversion gives one.
    const HSVNURLRef& URL() const { return _url; }
    void setURL(HSVNURLRef url) { _url = std::move(url); }
    /// A second path, such as the target of a copy.
    const HSVNPathRef& alternatePath() const { return _alternatePath; }
    void setAlternatePath(HSVNPathRef alternatePath) { _alternatePath = std::move(alternatePath); }
    /// A `HSVNNotifyAction`, or a newer Subversion's value.
    std::int32_t action() const { return _action; }
    void setAction(std::int32_t action) { _action = action; }
    /// A `svn_node_kind_t`.
    std::int32_t nodeKind() const { return _nodeKind; }
    void setNodeKind(std::int32_t nodeKind) { _nodeKind = nodeKind; }
    /// The lock concerned.
    const HSVNLockRef& lock() const { return _lock; }
    void setLock(HSVNLockRef lock) { _lock = std::move(lock); }
    /// The error that Subversion attached, or that ended the operation.
    const HSVNPlatformExceptionRef& error() const { return _error; }
    void setError(HSVNPlatformExceptionRef error) { _error = std::move(error); }
    /// The revision concerned, `HSVNInvalidRevision` for none.
    HSVNRevisionNumber revision() const { return _revision; }
    void setRevision(HSVNRevisionNumber revision) { _revision = revision; }
    /// The text's `HSVNNotifyState`.
    std::int32_t contentState() const { return _contentState; }
    void setContentState(std::int32_t contentState) { _contentState = contentState; }
    /// The properties' `HSVNNotifyState`.
    std::int32_t propertyState() const { return _propertyState; }
    void setPropertyState(std::int32_t propertyState) { _propertyState = propertyState; }
    /// A `HSVNNotifyLockState`.
    std::int32_t lockState() const { return _lockState; }
    void setLockState(std::int32_t lockState) { _lockState = lockState; }
    /// The property concerned, in property notifications.
    const std::optional<std::string>& propertyName() const { return _propertyName; }
    void setPropertyName(std::optional<std::string> propertyName) { _propertyName = std::move(propertyName); }
    /// The MIME type of a file, when Subversion tells one.
    const std::optional<std::string>& mimeType() const { return _mimeType; }
    void setMimeType(std::optional<std::string> mimeType) { _mimeType = std::move(mimeType); }
    /// The changelist concerned, in changelist notifications; lines before 1.5 tell none.
    const std::optional<std::string>& changelistName() const { return _changelistName; }
    void setChangelistName(std::optional<std::string> name) { _changelistName = std::move(name); }
    /// Where the range begins that a merge applies, in its direction, when both sides are of one URL; else nil, as it
    /// is on lines before 1.5. A range 4 to 6 is the changes 5 and 6.
    const HSVNRevisionRef& mergeStart() const { return _mergeStart; }
    /// Where it ends.
    const HSVNRevisionRef& mergeEnd() const { return _mergeEnd; }
    void setMergeRange(HSVNRevisionRef start, HSVNRevisionRef end)
    {
        _mergeStart = std::move(start);
        _mergeEnd = std::move(end);
    }

    /// The change concerned, in notifications of a patch's changes; else nil.
    const std::optional<HSVNPatchHunk>& hunk() const { return _hunk; }
    void setHunk(std::optional<HSVNPatchHunk> hunk) { _hunk = hunk; }

    /// A new notification of the same class that shares every field. A subclass overrides it: the notification is of
    /// its base class otherwise.
    virtual std::shared_ptr<HSVNNotification> copy() const;

    std::string className() const override { return "HSVNNotification"; }
    /// The fields; path prefix, URL, names, MIME type, merge range and hunk are not shown.
    std::string description() const override;
    /// Keys: "path", "alternatePath", "action", "nodeKind", "lock", "error", "revision", "contentState",
    /// "propertyState", "lockState", "pathPrefix", "url", "propertyName"; those that are there of "mimeType",
    /// "changelistName", "mergeStart" and "mergeEnd"; with a hunk also "hunkOriginalStart", "hunkOriginalLength",
    /// "hunkModifiedStart", "hunkModifiedLength", "hunkMatchedLine", "hunkFuzz".
    void encodeWithCoder(HSVNCoder* encoder) const override;

  private:
    std::optional<std::string> _path;
    std::optional<std::string> _pathPrefix;
    HSVNURLRef _url;
    HSVNPathRef _alternatePath;
    std::int32_t _action = HSVNNotifyActionUnknown;
    std::int32_t _nodeKind = HSVNNodeKindUnknown;
    HSVNLockRef _lock;
    HSVNPlatformExceptionRef _error;
    HSVNRevisionNumber _revision = HSVNInvalidRevision;
    std::int32_t _contentState = HSVNNotifyStateUnknown;
    std::int32_t _propertyState = HSVNNotifyStateUnknown;
    std::int32_t _lockState = HSVNNotifyLockStateUnknown;
    std::optional<std::string> _propertyName;
    std::optional<std::string> _mimeType;
    std::optional<std::string> _changelistName;
    HSVNRevisionRef _mergeStart;
    HSVNRevisionRef _mergeEnd;
    std::optional<HSVNPatchHunk> _hunk;
};
