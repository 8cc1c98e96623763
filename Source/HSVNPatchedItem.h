#pragma once

#include "HSVNNotification.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What became of one hunk of a patch.
enum class HSVNHunkOutcome : std::uint8_t
{
    Applied,         ///< just where the patch says
    AppliedAtOffset, ///< earlier or later in the file
    AppliedWithFuzz, ///< without some of the lines around it, which deserves a look
    Rejected,        ///< found nowhere; it is in a file beside the item whose name ends with ".svnpatch.rej"
    AlreadyThere     ///< the file is as if it had been applied
};

/// An outcome as people read it, such as "applied at an offset".
HSVN_EXPORT const char* HSVNTextOfHunkOutcome(HSVNHunkOutcome outcome);

/// One hunk that `HSVNContext::patch` came to. A plain value.
struct HSVNPatchedHunk
{
    HSVNHunkOutcome outcome = HSVNHunkOutcome::Applied; ///< what became of it
    HSVNPatchHunk hunk{};                               ///< where it was to go, and where it was found
    std::optional<std::string> propertyName{};          ///< nil for a hunk of the file itself
};

/// One item that `HSVNContext::patch` came to. A plain value.
struct HSVNPatchedItem
{
    std::string path{};                                  ///< as notifications tell it
    std::int32_t action = HSVNNotifyActionUnknown;       ///< a `HSVNNotifyAction`: Patch, Add, Delete, Skip, ...
    std::int32_t nodeKind = HSVNNodeKindUnknown;         ///< a `HSVNNodeKind`
    std::int32_t contentState = HSVNNotifyStateUnknown;  ///< a `HSVNNotifyState`
    std::int32_t propertyState = HSVNNotifyStateUnknown; ///< as well
    std::vector<HSVNPatchedHunk> hunks{}; ///< as Subversion tells them: none of an added item or property

    /// Whether the item was left as it is.
    bool isSkipped() const { return action == HSVNNotifyActionSkip; }
    /// Whether any hunk was rejected.
    bool hasConflict() const
    {
        return contentState == HSVNNotifyStateConflicted || propertyState == HSVNNotifyStateConflicted;
    }
};
