#pragma once

#include <cstdint>

/// What a notification of a line after 1.6 reports, beside `HSVNNotifyAction`; the values equal those of
/// `svn_wc_notify_action_t`.
enum class HSVNNewerNotifyAction : std::int32_t
{
    UpdateStarted = 41,          ///< an update of a path begins
    UpdateSkipObstruction = 42,  ///< another working copy is in the way
    UpdateSkipWorkingOnly = 43,  ///< not in the repository and no versioned parent
    UpdateSkipAccessDenied = 44, ///< the path cannot be read
    UpdateExternalRemoved = 45,  ///< a former external was removed; the error tells why it was kept
    UpdateShadowedAdd = 46,      ///< added below a local change
    UpdateShadowedUpdate = 47,   ///< updated below a local change
    UpdateShadowedDelete = 48,   ///< deleted below a local change
    MergeRecordInfo = 49,        ///< merge tracking was recorded on a path
    UpgradedPath = 50,           ///< a working copy got the newest format
    MergeRecordInfoBegin = 51,   ///< merge tracking is going to be recorded
    MergeElideInfo = 52,         ///< merge tracking was removed, the parent says the same
    Patch = 53,                  ///< a file was patched
    PatchAppliedHunk = 54,
    PatchRejectedHunk = 55,
    PatchHunkAlreadyApplied = 56,
    CommitCopied = 57,         ///< a copy is committed
    CommitCopiedReplaced = 58, ///< a copy that replaces is committed
    URLRedirect = 59,          ///< the server moved; the URL is the new one
    PathNonexistent = 60,      ///< not under version control
    Exclude = 61,              ///< removed by its depth
    FailedConflict = 62,       ///< left in conflict, so not done
    FailedMissing = 63,        ///< an added item is missing
    FailedOutOfDate = 64,
    FailedNoParent = 65, ///< an added parent is not part of the commit
    FailedLocked = 66,   ///< locked elsewhere
    FailedForbiddenByServer = 67,
    SkipConflicted = 68,   ///< in conflict, so not touched
    UpdateBrokenLock = 69, ///< an update found the lock broken
    FailedObstruction = 70,
    ConflictResolverStarting = 71,
    ConflictResolverDone = 72,
    LeftLocalModifications = 73, ///< what was deleted has local changes, which stay
    ForeignCopyBegin = 74,       ///< a copy out of another repository begins
    MoveBroken = 75,             ///< a move is a copy and a deletion from now on
    CleanupExternal = 76,        ///< an external is cleaned up
    FailedRequiresTarget = 77,   ///< only possible together with the path
    InfoExternal = 78,           ///< an external is asked
    CommitFinalizing = 79,       ///< everything is sent
    ResolvedText = 80,
    ResolvedProperty = 81,
    ResolvedTree = 82,
    BeginSearchTreeConflictDetails = 83,
    TreeConflictDetailsProgress = 84, ///< a revision was searched
    EndSearchTreeConflictDetails = 85
};
