#include "HSVNConflict.h"
#include "HSVNNotification.h"
#include "HSVNStatusKind.h"
#include "Internal/Subversion.h"

#include <gtest/gtest.h>

namespace {

TEST(Texts, AreTheFieldsWordsForEnumerations)
{
    const std::vector<std::pair<std::string, std::string>> rows{
        {HSVNTextOfDepth(HSVNDepthUnknown), "unknown"},
        {HSVNTextOfDepth(HSVNDepthExclude), "exclude"},
        {HSVNTextOfDepth(HSVNDepthEmpty), "empty"},
        {HSVNTextOfDepth(HSVNDepthFiles), "files"},
        {HSVNTextOfDepth(HSVNDepthImmediates), "immediates"},
        {HSVNTextOfDepth(HSVNDepthInfinity), "infinity"},
        {HSVNTextOfNodeKind(HSVNNodeKindNone), "none"},
        {HSVNTextOfNodeKind(HSVNNodeKindFile), "file"},
        {HSVNTextOfNodeKind(HSVNNodeKindDirectory), "directory"},
        {HSVNTextOfNodeKind(HSVNNodeKindUnknown), "unknown"},
        {HSVNTextOfStatusKind(HSVNStatusKindNone), "none"},
        {HSVNTextOfStatusKind(HSVNStatusKindUnversioned), "unversioned"},
        {HSVNTextOfStatusKind(HSVNStatusKindNormal), "normal"},
        {HSVNTextOfStatusKind(HSVNStatusKindAdded), "added"},
        {HSVNTextOfStatusKind(HSVNStatusKindMissing), "missing"},
        {HSVNTextOfStatusKind(HSVNStatusKindDeleted), "deleted"},
        {HSVNTextOfStatusKind(HSVNStatusKindReplaced), "replaced"},
        {HSVNTextOfStatusKind(HSVNStatusKindModified), "modified"},
        {HSVNTextOfStatusKind(HSVNStatusKindMerged), "merged"},
        {HSVNTextOfStatusKind(HSVNStatusKindConflicted), "conflicted"},
        {HSVNTextOfStatusKind(HSVNStatusKindIgnored), "ignored"},
        {HSVNTextOfStatusKind(HSVNStatusKindObstructed), "obstructed"},
        {HSVNTextOfStatusKind(HSVNStatusKindExternal), "external"},
        {HSVNTextOfStatusKind(HSVNStatusKindIncomplete), "incomplete"},
        {HSVNTextOfStatusKind(HSVNStatusKindUnknown), "unknown"},
        {HSVNTextOfStatusKind(static_cast<HSVNStatusKind>(6)), "unknown"},
        {HSVNTextOfSchedule(HSVNScheduleInvalid), "none"},
        {HSVNTextOfSchedule(HSVNScheduleNormal), "normal"},
        {HSVNTextOfSchedule(HSVNScheduleAdd), "add"},
        {HSVNTextOfSchedule(HSVNScheduleDelete), "delete"},
        {HSVNTextOfSchedule(HSVNScheduleReplace), "replace"},
        {HSVNTextOfConflictKind(HSVNConflictKind::Text), "text"},
        {HSVNTextOfConflictKind(HSVNConflictKind::Property), "property"},
        {HSVNTextOfConflictKind(HSVNConflictKind::Tree), "tree"},
        {HSVNTextOfConflictAction(HSVNConflictAction::Edit), "edit"},
        {HSVNTextOfConflictAction(HSVNConflictAction::Add), "add"},
        {HSVNTextOfConflictAction(HSVNConflictAction::Delete), "delete"},
        {HSVNTextOfConflictAction(HSVNConflictAction::Replace), "replace"},
        {HSVNTextOfConflictReason(HSVNConflictReason::Edited), "edit"},
        {HSVNTextOfConflictReason(HSVNConflictReason::Obstructed), "obstruction"},
        {HSVNTextOfConflictReason(HSVNConflictReason::Deleted), "delete"},
        {HSVNTextOfConflictReason(HSVNConflictReason::Missing), "missing"},
        {HSVNTextOfConflictReason(HSVNConflictReason::Unversioned), "unversioned"},
        {HSVNTextOfConflictReason(HSVNConflictReason::Added), "add"},
        {HSVNTextOfConflictReason(HSVNConflictReason::Replaced), "replace"},
        {HSVNTextOfConflictReason(HSVNConflictReason::MovedAway), "moved away"},
        {HSVNTextOfConflictReason(HSVNConflictReason::MovedHere), "moved here"},
        {HSVNTextOfConflictReason(static_cast<HSVNConflictReason>(9)), "unknown"},
        {HSVNTextOfConflictOperation(HSVNConflictOperation::NoOperation), "none"},
        {HSVNTextOfConflictOperation(HSVNConflictOperation::Update), "update"},
        {HSVNTextOfConflictOperation(HSVNConflictOperation::Switch), "switch"},
        {HSVNTextOfConflictOperation(HSVNConflictOperation::Merge), "merge"},
        // Of each of Subversion's releases the last action.
        {HSVNTextOfNotifyAction(svn_wc_notify_failed_unlock), "failed to unlock"},
        {HSVNTextOfNotifyAction(svn_wc_notify_update_replace), "replaced"},
        {HSVNTextOfNotifyAction(svn_wc_notify_failed_external), "failed external"},
        {HSVNTextOfNotifyAction(svn_wc_notify_commit_copied_replaced), "copying in place of another item"},
        {HSVNTextOfNotifyAction(svn_wc_notify_skip_conflicted), "skipped: in conflict"},
        {HSVNTextOfNotifyAction(svn_wc_notify_move_broken), "move broken into copy and deletion"},
        {HSVNTextOfNotifyAction(svn_wc_notify_commit_finalizing), "committing transaction"},
        {HSVNTextOfNotifyAction(svn_wc_notify_end_search_tree_conflict_details), "tree conflict details searched"},
        {HSVNTextOfNotifyAction(HSVNNotifyActionCheckOutFailed), "check-out failed"},
        {HSVNTextOfNotifyAction(HSVNNotifyActionInternalExportStarted), "internal export started"},
        {HSVNTextOfNotifyAction(HSVNNotifyActionUnknown), "unknown"},
        {HSVNTextOfNotifyAction(86), "unknown"},
        {HSVNTextOfNotifyAction(HSVNNotifyActionUpdateStarted - 1), "unknown"},
        {HSVNTextOfNotifyAction(HSVNNotifyActionInternalExportStarted + 1), "unknown"},
        {HSVNTextOfNotifyState(HSVNNotifyStateInapplicable), "inapplicable"},
        {HSVNTextOfNotifyState(HSVNNotifyStateConflicted), "conflicted"},
        {HSVNTextOfNotifyState(HSVNNotifyStateSourceMissing), "source missing"},
        {HSVNTextOfNotifyState(9), "unknown"},
        {HSVNTextOfNotifyLockState(HSVNNotifyLockStateUnlocked), "unlocked"},
        {HSVNTextOfNotifyLockState(-1), "unknown"},
    };
    for (std::size_t index = 0; index < rows.size(); ++index) {
        EXPECT_EQ(rows[index].first, rows[index].second) << index;
    }
    for (int action = 0; action <= svn_wc_notify_end_search_tree_conflict_details; ++action) {
        EXPECT_STRNE(HSVNTextOfNotifyAction(action), "unknown") << action;
    }
}

} // namespace
