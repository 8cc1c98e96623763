#include "HSVNNotification.h"

#include "HSVNException.h"
#include "HSVNLock.h"
#include "HSVNURL.h"
#include "Internal/Subversion.h"

#include <gtest/gtest.h>

struct ActionName
{
    std::int32_t action;
    const char* name;
};

class NotificationAction : public testing::TestWithParam<ActionName>
{
};

TEST_P(NotificationAction, HasItsName)
{
    EXPECT_EQ(HSVNNotification::stringForAction(GetParam().action), GetParam().name);
}

// The numbers are Subversion's or stored by applications, so they are written out here.
INSTANTIATE_TEST_SUITE_P(
    Actions, NotificationAction,
    testing::Values(ActionName{-1, "HSVNNotifyActionUnknown"}, ActionName{0, "HSVNNotifyActionAdd"},
                    ActionName{svn_wc_notify_skip, "HSVNNotifyActionSkip"},
                    ActionName{svn_wc_notify_update_completed, "HSVNNotifyActionUpdateCompleted"},
                    ActionName{svn_wc_notify_commit_postfix_txdelta, "HSVNNotifyActionCommitPostfixTXDelta"},
                    ActionName{svn_wc_notify_failed_unlock, "HSVNNotifyActionFailedUnlock"},
                    ActionName{svn_wc_notify_update_replace, "HSVNNotifyActionUpdateReplace"},
                    ActionName{svn_wc_notify_tree_conflict, "HSVNNotifyActionTreeConflict"},
                    ActionName{40, "HSVNNotifyActionFailedExternal"}, ActionName{41, "<unknown> (41)"},
                    ActionName{-2, "<unknown> (-2)"}, ActionName{65536, "HSVNNotifyActionUpdateStarted"},
                    ActionName{65544, "HSVNNotifyActionCheckOutFailed"},
                    ActionName{65551, "HSVNNotifyActionInternalExportStarted"},
                    ActionName{65552, "<unknown> (65552)"}));

TEST(Notification, StartsWithItsDefaults)
{
    const auto fresh = HSVNNotification::notification();
    EXPECT_EQ(fresh->description(), "{ " + fresh->objectDescription() +
                                        ", action: HSVNNotifyActionUnknown, contentState: 1, error: (null), lock: "
                                        "(null), lockState: 1, nodeKind: 3, path: (null), alternatePath: (null), "
                                        "propertyState: 1, revision: -1 }");
    EXPECT_EQ(HSVNNotification::notificationWithAction(HSVNNotifyActionLocked)->action(), 21);
}

TEST(Notification, ACopySharesEveryField)
{
    HSVNNotification original;
    original.setPath("a/b");
    original.setPathPrefix("a");
    original.setURL(HSVNURL::URLWithString("svn://h/r"));
    original.setAlternatePath(HSVNPath::pathWithString("/c"));
    original.setLock(
        std::make_shared<HSVNLock>(HSVNPath::pathWithString("/c"), "t", "o", std::nullopt, HSVNDate{}, std::nullopt));
    original.setError(HSVNException("broken").copy());
    original.setPropertyName("p");
    original.setRevision(9);
    const auto copy = original.copy();
    EXPECT_EQ(copy->path(), "a/b");
    EXPECT_EQ(copy->pathPrefix(), "a");
    EXPECT_EQ(copy->URL(), original.URL());
    EXPECT_EQ(copy->alternatePath(), original.alternatePath());
    EXPECT_EQ(copy->lock(), original.lock());
    EXPECT_EQ(copy->error(), original.error());
    EXPECT_EQ(copy->propertyName(), "p");
    EXPECT_EQ(copy->revision(), 9);
    EXPECT_NE(copy->description().find("error: broken, lock: { <HSVNLock: "), std::string::npos);
}
