#include "HSVNNotification.h"

#include <array>
#include <cstddef>

namespace {

// In the order of their numbers.
constexpr std::array actionTexts{
    // From 0 on
    "added", "copied", "deleted", "restored", "reverted", "failed to revert", "resolved", "skipped",
    // Of update: from 8 on
    "deleted", "added", "updated", "update completed", "fetching external",
    // Of status: from 13 on
    "status completed", "status of external",
    // Of commit: from 15 on
    "sending changes", "adding", "deleting", "replacing", "transmitting file data",
    // From 20 on
    "revision examined for blame", "locked", "unlocked", "failed to lock", "failed to unlock",
    // Of Subversion 1.5: from 25 on
    "exists", "added to changelist", "removed from changelist", "moved to another changelist", "merging",
    "merging from another repository", "replaced",
    // Of Subversion 1.6: from 32 on
    "property added", "property modified", "property deleted", "property to be deleted does not exist",
    "revision property set", "revision property deleted", "merge completed", "tree conflict", "failed external",
    // Of Subversion 1.7: from 41 on
    "updating", "skipped: another working copy is in the way", "skipped: not in the repository",
    "skipped: access denied", "external removed", "added below a local change", "updated below a local change",
    "deleted below a local change", "merge information recorded", "upgraded", "recording merge information",
    "merge information elided", "patched", "hunk applied", "hunk rejected", "hunk already applied", "copying",
    "copying in place of another item", "server moved", "does not exist", "excluded", "failed: in conflict",
    "failed: missing", "failed: out of date", "failed: parent is not committed", "failed: locked",
    "failed: forbidden by the server", "skipped: in conflict",
    // Of Subversion 1.8: from 69 on
    "lock broken", "failed: obstructed", "resolving conflicts", "conflicts examined", "local modifications left",
    "copying from another repository", "move broken into copy and deletion",
    // Of Subversion 1.9: from 76 on
    "cleaning up external", "failed: its target is needed, too", "information on external", "committing transaction",
    // Of Subversion 1.10: from 80 on
    "text conflict resolved", "property conflict resolved", "tree conflict resolved", "searching tree conflict details",
    "searching tree conflict details in a revision", "tree conflict details searched"};
static_assert(actionTexts.size() == 86);

// From HSVNNotifyActionUpdateStarted on.
constexpr std::array operationTexts{
    "update started",   "update succeeded", "update failed",     "commit started",
    "commit succeeded", "commit failed",    "check-out started", "check-out succeeded",
    "check-out failed", "import started",   "import succeeded",  "import failed",
    "export started",   "export succeeded", "export failed",     "internal export started"};
static_assert(HSVNNotifyActionUpdateStarted + operationTexts.size() == HSVNNotifyActionInternalExportStarted + 1);

constexpr std::array stateTexts{"inapplicable", "unknown", "unchanged",  "missing",       "obstructed",
                                "changed",      "merged",  "conflicted", "source missing"};
constexpr std::array lockStateTexts{"inapplicable", "unknown", "unchanged", "locked", "unlocked"};

template <std::size_t Count>
const char* textAt(std::int64_t index, const std::array<const char*, Count>& texts)
{
    return index < 0 || index >= static_cast<std::int64_t>(Count) ? "unknown" : texts[static_cast<std::size_t>(index)];
}

} // namespace

const char* HSVNTextOfNotifyAction(std::int32_t action)
{
    return action < HSVNNotifyActionUpdateStarted
               ? textAt(action, actionTexts)
               : textAt(std::int64_t{action} - HSVNNotifyActionUpdateStarted, operationTexts);
}

const char* HSVNTextOfNotifyState(std::int32_t state) { return textAt(state, stateTexts); }

const char* HSVNTextOfNotifyLockState(std::int32_t state) { return textAt(state, lockStateTexts); }
