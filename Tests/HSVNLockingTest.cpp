#include "HSVNCallRecorder.h"
#include "HSVNCommitOptions.h"
#include "HSVNLock.h"
#include "HSVNLockOptions.h"
#include "HSVNNode.h"
#include "HSVNRevision.h"
#include "HSVNStatus.h"
#include "HSVNUnlockOptions.h"
#include "ReasonOf.h"
#include "SvnServer.h"
#include "WorkingCopyTest.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// A user of the server, who works through one line.
struct LockUserDelegate : Recorder
{
    std::string name;
    bool goesOn = true;

    bool queryContinue(HSVNContext&) { return goesOn; }

    explicit LockUserDelegate(std::string userName) : name{std::move(userName)} {}

    bool promptForCredentials(HSVNContext&, const HSVNCredentialsRef& credentials, const std::optional<std::string>&,
                              bool& mayStore)
    {
        credentials->setUsername(name);
        credentials->setPassword(name + "ssecret");
        mayStore = false;
        return true;
    }
};

struct LockUser
{
    std::string name;
    std::string root;
    std::shared_ptr<HSVNClientDelegateFor<LockUserDelegate>> delegate;
    HSVNClientRef client;

    LockUser(const SvnServer& server, const HSVNVersion& line, const std::string& userName)
        : name{userName}, root{server.repository().beside(userName)},
          delegate{std::make_shared<HSVNClientDelegateFor<LockUserDelegate>>(userName)},
          client{std::make_shared<HSVNClient>(bundleOfLine(line), delegate)}
    {
        mustRun({"svn", "checkout", "--quiet", "--non-interactive", "--no-auth-cache", "--username", name, "--password",
                 name + "ssecret", server.url(), root});
    }

    HSVNPathRef at(const std::string& item) const { return HSVNLocalPath::pathWithString(root + '/' + item); }
    std::vector<HSVNPathRef> paths(const std::vector<std::string>& items) const
    {
        std::vector<HSVNPathRef> result;
        for (const auto& item : items) {
            result.push_back(at(item));
        }
        return result;
    }
    void lock(const std::vector<std::string>& items, const std::optional<std::string>& comment = {},
              bool steals = false) const
    {
        auto options = HSVNLockOptions::defaults();
        options->setStealLocks(steals);
        HSVNNode::lockNodes(paths(items), comment, options, client);
    }
    void unlock(const std::vector<std::string>& items, bool breaks = false) const
    {
        auto options = HSVNUnlockOptions::defaults();
        options->setBreakLocks(breaks);
        HSVNNode::unlockNodes(paths(items), options, client);
    }
    HSVNNodeRef node(const std::string& item, bool asksRepository = true) const
    {
        return HSVNNode::nodeWithStatusAtPath(at(item), HSVNRevision::HEAD(), asksRepository, client);
    }
    /// The paths of the notifications of an action since the last question.
    std::vector<std::string> heard(HSVNNotifyAction action) const
    {
        std::vector<std::string> items;
        for (const auto& notification : delegate->withAction(action)) {
            items.push_back(notification->path().value_or(""));
        }
        delegate->notifications.clear();
        return items;
    }
};

class Locking : public testing::TestWithParam<const char*>
{
  protected:
    Locking()
    {
        for (const std::string name : {"a.txt", "b.txt", "c.txt"}) {
            server.repository().put(name, name);
        }
        harry.emplace(server, HSVNVersion::versionWithString(GetParam()), "harry");
        sally.emplace(server, HSVNVersion::versionWithString(GetParam()), "sally");
    }
    void TearDown() override { EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException); }

    std::string locks() const { return mustRun({"svnadmin", "lslocks", server.repository().path()}); }

    SvnServer server;
    std::optional<LockUser> harry;
    std::optional<LockUser> sally;
};

using RecordedLocking = Locking;

} // namespace

TEST_P(Locking, ALockBearsItsCommentInAnyLanguage)
{
    const std::string comment = "dépêche \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x94\x92\nsecond line";
    harry->lock({"a.txt", "b.txt"}, comment);
    const auto lock = harry->node("a.txt", false)->lock();
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(lock->owner(), "harry");
    EXPECT_EQ(lock->comment(), comment);
    EXPECT_THAT(locks(), HasSubstr("second line"));
    const auto told = harry->delegate->withAction(HSVNNotifyActionLocked);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_EQ(told[0]->lock()->comment(), comment);
    EXPECT_TRUE(harry->delegate->ownActions().empty());
    EXPECT_EQ(harry->node("a.txt", false)->lockStatus(), HSVNLockStatusLockedLocally);
    EXPECT_EQ(harry->node("a.txt")->lockStatus(), HSVNLockStatusLockedHere);
    EXPECT_TRUE(harry->node("a.txt")->controllingLock()->isEqualToLock(lock));
    EXPECT_EQ(sally->node("a.txt")->lockStatus(), HSVNLockStatusLockedElsewhere);
    EXPECT_EQ(sally->node("a.txt")->controllingLock()->owner(), "harry");

    harry->lock({"c.txt"});
    EXPECT_EQ(harry->node("c.txt", false)->lock()->comment().value_or(""), "");
    harry->delegate->notifications.clear();
    harry->unlock({"a.txt", "b.txt", "c.txt"});
    EXPECT_THAT(harry->heard(HSVNNotifyActionUnlocked), testing::SizeIs(3));
    EXPECT_EQ(locks(), "");
    EXPECT_EQ(harry->node("a.txt")->controllingLock(), nullptr);
}

TEST_P(Locking, ALockOfAnotherIsReportedOnceAllPathsWereTried)
{
    harry->lock({"a.txt", "b.txt"});
    const std::string reason = reasonOf<HSVNEntryLockedException>([&] { sally->lock({"a.txt", "b.txt", "c.txt"}); });
    const auto failed = sally->delegate->withAction(HSVNNotifyActionFailedLock);
    ASSERT_EQ(failed.size(), 2U);
    EXPECT_EQ(failed[0]->error()->reason(), reason);
    EXPECT_EQ(failed[0]->error()->className(), "HSVNEntryLockedException");
    EXPECT_THAT(reason, HasSubstr("already locked by user 'harry'"));
    EXPECT_THAT(sally->heard(HSVNNotifyActionLocked), ElementsAre(sally->root + "/c.txt"));
    EXPECT_EQ(sally->node("c.txt")->lockStatus(), HSVNLockStatusLockedHere);

    writeFile(sally->root + "/a.txt", "changed");
    EXPECT_THROW(HSVNNode::commitChangesToNodes({sally->at("a.txt")}, HSVNCommitOptions::defaults(), sally->client),
                 HSVNEntryLockedException);
    EXPECT_EQ(mustRun({"svn", "status", sally->root}),
              "M       " + sally->root + "/a.txt\n     K  " + sally->root + "/c.txt\n");
}

TEST_P(Locking, AStolenLockIsTheOthers)
{
    harry->lock({"a.txt"}, "mine");
    sally->lock({"a.txt"}, "stolen", true);
    EXPECT_EQ(harry->node("a.txt")->lockStatus(), HSVNLockStatusStolen);
    EXPECT_EQ(harry->node("a.txt")->controllingLock()->comment(), "stolen");
    EXPECT_EQ(sally->node("a.txt")->controllingLock()->owner(), "sally");
    EXPECT_THROW(harry->unlock({"a.txt"}), HSVNException);
    EXPECT_THAT(locks(), HasSubstr("sally"));
}

TEST_P(Locking, ABrokenLockLeavesTheStaleOneInCharge)
{
    harry->lock({"a.txt"}, "mine");
    EXPECT_THROW(sally->unlock({"a.txt"}), HSVNException);
    EXPECT_THAT(locks(), HasSubstr("harry"));
    sally->unlock({"a.txt"}, true);
    EXPECT_EQ(locks(), "");
    // Only of a file that is out of date does Subversion tell that the repository was asked.
    server.repository().put("a.txt", "newer");
    ASSERT_EQ(harry->node("a.txt")->lockStatus(), HSVNLockStatusBroken);
    EXPECT_EQ(harry->node("a.txt")->controllingLock()->comment(), "mine");
    EXPECT_THROW(harry->unlock({"a.txt"}), HSVNException);
    EXPECT_EQ(harry->node("a.txt")->lockStatus(), HSVNLockStatusNone) << "the useless token is given up";
}

TEST_P(Locking, AnExpiredLockIsReported)
{
    harry->lock({"a.txt"}, "mine");
    // Clients cannot let a lock expire: its record in the repository is changed.
    int changed = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator{server.repository().path() + "/db/locks"}) {
        std::string record = entry.is_regular_file() ? readFile(entry.path()) : "";
        if (const auto place = record.find("K 5\nowner"); place != std::string::npos) {
            record.insert(place, "K 15\nexpiration_date\nV 27\n2001-01-01T00:00:00.000000Z\n");
            std::filesystem::remove(entry.path());
            writeFile(entry.path(), record);
            ++changed;
        }
    }
    ASSERT_EQ(changed, 1);
    EXPECT_EQ(harry->node("a.txt")->controllingLock()->comment(), "mine") << "the stale one";
    EXPECT_THROW(harry->unlock({"a.txt"}), HSVNException);
    sally->lock({"a.txt"}, "free again");
    EXPECT_EQ(sally->node("a.txt")->lockStatus(), HSVNLockStatusLockedHere);
}

TEST_P(Locking, WhatCannotBeLockedIsReported)
{
    server.repository().put("a.txt", "newer");
    server.repository().makeFolder("folder");
    writeFile(harry->root + "/new.txt", "");
    for (const std::string name : {"a.txt", "new.txt", "none.txt", ""}) {
        EXPECT_THROW(harry->lock({name}), HSVNException) << name;
        EXPECT_THROW(harry->unlock({name}), HSVNException) << name;
    }
    EXPECT_THROW(harry->lock({"a.txt"}), HSVNTransactionOutOfDateException);
    EXPECT_THROW(harry->lock({"b.txt"}, std::string{"control \x02 character"}), HSVNException);
    EXPECT_EQ(locks(), "");
}

TEST_P(Locking, ACancelledLockLocksNothing)
{
    harry->delegate->goesOn = false;
    EXPECT_THROW(harry->lock({"a.txt", "b.txt"}), HSVNOperationCancelledException);
    EXPECT_EQ(locks(), "");
    harry->delegate->goesOn = true;
    harry->lock({"a.txt"});
    harry->delegate->goesOn = false;
    EXPECT_THROW(harry->unlock({"a.txt"}), HSVNOperationCancelledException);
    EXPECT_THAT(locks(), HasSubstr("harry"));
}

INSTANTIATE_TEST_SUITE_P(Lines, Locking, everyLine(), lineName);

TEST_P(RecordedLocking, MakeTheCallsOfTheirLine)
{
    HSVNCallRecorder recorder{GetParam()};
    harry->lock({});
    harry->unlock({});
    EXPECT_TRUE(recorder.calls().empty());
    EXPECT_TRUE(harry->delegate->notifications.empty());
    harry->lock({"a.txt", "b.txt"}, "why");
    harry->lock({"c.txt"}, {}, true);
    harry->unlock({"a.txt"});
    harry->unlock({"b.txt"}, true);
    const auto items = [&](const std::vector<std::string>& names) {
        std::string text = "[";
        for (const auto& name : names) {
            text += (text.size() > 1 ? ", " : "") + harry->root + '/' + name;
        }
        return text + "]";
    };
    EXPECT_THAT(recorder.calls(),
                ElementsAre(HSVNRecordedCall{"svn_client_lock", {items({"a.txt", "b.txt"}), "why", "0"}},
                            HSVNRecordedCall{"svn_client_lock", {items({"c.txt"}), "null", "1"}},
                            HSVNRecordedCall{"svn_client_unlock", {items({"a.txt"}), "0"}},
                            HSVNRecordedCall{"svn_client_unlock", {items({"b.txt"}), "1"}}));
}

INSTANTIATE_TEST_SUITE_P(Lines, RecordedLocking, recordedLines(), lineName);
