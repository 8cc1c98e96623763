#include "HSVNCommitItem.h"

#include "HSVNClient.h"
#include "HSVNDirectory.h"
#include "HSVNFile.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNPathWithRevision.h"
#include "HSVNRevision.h"
#include "HSVNStatus.h"
#include "HSVNURL.h"
#include "Internal/Subversion.h"

#include <gtest/gtest.h>

namespace {

TEST(CommitItemTest, TakesASubversionRecord)
{
    svn_client_commit_item2_t record{};
    record.path = "/wc/f";
    record.kind = svn_node_file;
    record.url = "svn://host/r/a b%";
    record.revision = 6;
    record.copyfrom_url = "svn://host/r/g";
    record.copyfrom_rev = 5;
    record.state_flags =
        SVN_CLIENT_COMMIT_ITEM_ADD | SVN_CLIENT_COMMIT_ITEM_IS_COPY | SVN_CLIENT_COMMIT_ITEM_LOCK_TOKEN;
    const auto item = HSVNCommitItem::commitItemForSVNCommitItem(&record);
    EXPECT_EQ(
        item->description(),
        "{ " + item->objectDescription() +
            " path: /wc/f, url: svn://host/r/a%20b%25, revision: 6, actions: 0x00000005, nodeKind: 1, locked: YES, "
            "copySource: " +
            item->copySource()->description() + " }");
    EXPECT_EQ(item->copySource()->path()->string(), "svn://host/r/g");
    EXPECT_EQ(item->copySource()->revision()->number(), 5);

    const auto copy = item->copy();
    item->setIsLocked(false);
    EXPECT_TRUE(copy->isLocked());
    EXPECT_EQ(copy->copySource(), item->copySource());
    EXPECT_EQ(copy->revision(), 6);
}

TEST(CommitItemTest, TranslatesEachStateFlag)
{
    const std::tuple<int, HSVNCommitActions, bool> flags[] = {
        {SVN_CLIENT_COMMIT_ITEM_ADD, 1U, false},       {SVN_CLIENT_COMMIT_ITEM_DELETE, 2U, false},
        {SVN_CLIENT_COMMIT_ITEM_TEXT_MODS, 8U, false}, {SVN_CLIENT_COMMIT_ITEM_PROP_MODS, 16U, false},
        {SVN_CLIENT_COMMIT_ITEM_IS_COPY, 4U, false},   {SVN_CLIENT_COMMIT_ITEM_LOCK_TOKEN, 0U, true},
    };
    for (const auto& [flag, actions, locked] : flags) {
        svn_client_commit_item2_t record{};
        record.revision = SVN_INVALID_REVNUM;
        record.state_flags = static_cast<apr_byte_t>(flag);
        const auto item = HSVNCommitItem::commitItemForSVNCommitItem(&record);
        EXPECT_EQ(item->actions(), actions) << flag;
        EXPECT_EQ(item->isLocked(), locked) << flag;
        EXPECT_EQ(item->revision(), HSVNInvalidRevision);
        EXPECT_FALSE(item->path() || item->URL() || item->copySource());
    }
    EXPECT_THROW(HSVNCommitItem::commitItemForSVNCommitItem(nullptr), HSVNAssertionException);
}

/// A status and the actions of its commit item; 0 stands for no item.
struct StatusCase
{
    HSVNStatusKind text;
    HSVNStatusKind property;
    bool hasProperties;
    bool copied;
    HSVNCommitActions actions;
};

const StatusCase statusCases[] = {
    {HSVNStatusKindNormal, HSVNStatusKindNormal, true, false, 0},
    {HSVNStatusKindNone, HSVNStatusKindNone, false, false, 0},
    {HSVNStatusKindConflicted, HSVNStatusKindConflicted, true, false, 0},
    {HSVNStatusKindUnversioned, HSVNStatusKindNone, false, false, 0},
    {HSVNStatusKindReplaced, HSVNStatusKindNormal, true, false, 11},
    {HSVNStatusKindModified, HSVNStatusKindNormal, true, false, 8},
    {HSVNStatusKindMerged, HSVNStatusKindModified, true, false, 24},
    {HSVNStatusKindAdded, HSVNStatusKindNone, false, false, 9},
    {HSVNStatusKindAdded, HSVNStatusKindNormal, true, false, 25},
    {HSVNStatusKindAdded, HSVNStatusKindNone, false, true, 5},
    {HSVNStatusKindAdded, HSVNStatusKindAdded, false, true, 21},
    {HSVNStatusKindDeleted, HSVNStatusKindNormal, true, false, 2},
    {HSVNStatusKindNormal, HSVNStatusKindModified, true, false, 16},
    {HSVNStatusKindNormal, HSVNStatusKindDeleted, false, false, 16},
    {HSVNStatusKindNormal, HSVNStatusKindReplaced, true, false, 16},
};

HSVNStatusRef statusOf(const StatusCase& given)
{
    auto status = std::make_shared<HSVNStatus>();
    status->setTextStatus(given.text);
    status->setPropertyStatus(given.property);
    status->setHasProperties(given.hasProperties);
    if (given.copied) {
        status->setCopyFromURL(HSVNURL::URLWithString("svn://host/r/g"));
        status->setCopyFromRevision(3);
    }
    return status;
}

class StatusCommitItemTest : public testing::TestWithParam<StatusCase>
{
};

TEST_P(StatusCommitItemTest, ActionsFollowTextAndPropertyStatus)
{
    const auto item = HSVNCommitItem::commitItemForStatus(statusOf(GetParam()));
    EXPECT_EQ(item ? item->actions() : 0U, GetParam().actions);
    EXPECT_EQ(item != nullptr, GetParam().actions != 0);
    if (GetParam().copied) {
        EXPECT_EQ(item->copySource()->path()->string(), "svn://host/r/g");
        EXPECT_EQ(item->copySource()->revision()->number(), 3);
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, StatusCommitItemTest, testing::ValuesIn(statusCases));

TEST(CommitItemTest, TakesANode)
{
    HSVNNodeRef node = std::make_shared<HSVNFile>();
    node->setPath(HSVNLocalPath::pathWithString("/wc/f"));
    node->setURL(HSVNURL::URLWithString("svn://host/r/f"));
    node->setRevision(7);
    EXPECT_THROW(HSVNCommitItem::commitItemForNode(node), HSVNAssertionException);
    EXPECT_THROW(HSVNCommitItem::commitItemForNode(nullptr), HSVNAssertionException);
    node->setStatus(HSVNStatus::normal());
    EXPECT_EQ(HSVNCommitItem::commitItemForNode(node), nullptr);
    node->status()->setTextStatus(HSVNStatusKindModified);
    const auto item = HSVNCommitItem::commitItemForNode(node);
    EXPECT_EQ(item->path(), node->path());
    EXPECT_EQ(item->URL(), node->URL());
    EXPECT_EQ(item->revision(), 7);
    EXPECT_EQ(item->nodeKind(), HSVNNodeKindFile);
    EXPECT_FALSE(item->isLocked());

    auto folder = std::make_shared<HSVNDirectory>();
    folder->setStatus(node->status());
    folder->setLock(std::make_shared<HSVNLock>(HSVNPath::pathWithString("/f"), "t", std::nullopt, std::nullopt,
                                               HSVNDate{1}, std::nullopt));
    EXPECT_EQ(HSVNCommitItem::commitItemForNode(folder)->nodeKind(), HSVNNodeKindDirectory);
    EXPECT_TRUE(HSVNCommitItem::commitItemForNode(folder)->isLocked());
}

TEST(MoveCommitItemsTest, AMoveAddsAndDeletesAndACopyOnlyAdds)
{
    const std::vector<HSVNPathRef> sources{HSVNPath::pathWithString("/wc/a"), HSVNPath::pathWithString("svn://h/b")};
    const std::vector<HSVNPathRef> destinations{HSVNPath::pathWithString("svn://h/a"),
                                                HSVNPath::pathWithString("/wc/b")};
    const auto moved = HSVNNode::commitItemsForMoveOfNodes(sources, destinations, false);
    ASSERT_EQ(moved.size(), 4U);
    const HSVNPathRef expected[] = {destinations[0], sources[0], destinations[1], sources[1]};
    for (std::size_t index = 0; index < moved.size(); ++index) {
        const auto& item = moved[index];
        EXPECT_EQ(item->actions(), index % 2 == 0 ? HSVNCommitActionAdd : HSVNCommitActionDelete);
        EXPECT_EQ(item->URL() ? HSVNPathRef{item->URL()} : HSVNPathRef{item->path()}, expected[index]);
        EXPECT_NE(item->URL() == nullptr, item->path() == nullptr);
        EXPECT_FALSE(item->copySource());
    }
    EXPECT_EQ(HSVNNode::commitItemsForMoveOfNodes(sources, destinations, true).size(), 2U);
    EXPECT_THROW(HSVNNode::commitItemsForMoveOfNodes(sources, {}, true), HSVNAssertionException);
}

/// Answers a prompt with a message, or refuses it.
struct MessageWriter
{
    bool accept = true;
    std::size_t items = 0;

    bool promptForLogMessage(HSVNContext&, std::string& message, const std::vector<HSVNCommitItemRef>& commitItems)
    {
        items = commitItems.size();
        message = "written";
        return accept;
    }
};

struct SilentDelegate
{
};

TEST(LogMessagePromptTest, AsksTheClientsDelegateOnceThereIsOneThatAnswers)
{
    const std::vector<HSVNCommitItemRef> items(3, std::make_shared<HSVNCommitItem>());
    const auto target = HSVNPath::pathWithString("svn://h/a");
    const auto writer = std::make_shared<HSVNClientDelegateFor<MessageWriter>>();
    const auto silent = std::make_shared<HSVNClientDelegateFor<SilentDelegate>>();
    std::string message = "untouched";

    const HSVNContextRef contexts[] = {std::make_shared<HSVNContext>(), HSVNClient::clientWithDelegate(nullptr),
                                       HSVNClient::clientWithDelegate(silent)};
    for (const auto& context : contexts) {
        EXPECT_TRUE(HSVNNode::promptForLogMessage(message, items, target, context));
        EXPECT_EQ(message, "untouched");
    }

    const HSVNContextRef client = HSVNClient::clientWithDelegate(writer);
    EXPECT_TRUE(HSVNNode::promptForLogMessage(message, items, target, client));
    EXPECT_EQ(message, "written");
    EXPECT_EQ(writer->items, 3U);
    writer->accept = false;
    EXPECT_FALSE(HSVNNode::promptForLogMessage(message, items, target, client));
}

} // namespace
