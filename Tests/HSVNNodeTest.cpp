#include "HSVNArray+HSVNNodeExtensions.h"
#include "HSVNDirectory.h"
#include "HSVNFile.h"
#include "HSVNKeyedArchiver.h"
#include "HSVNKeyedUnarchiver.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNStatus.h"
#include "HSVNURL.h"
#include "Internal/Subversion.h"
#include "SequentialCoder.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace {

HSVNPathRef localPath(const std::string& text) { return HSVNLocalPath::pathWithString(text); }

HSVNLockRef lockWithToken(const std::string& token)
{
    return std::make_shared<HSVNLock>(HSVNPath::pathWithString("/f"), token, std::nullopt, std::nullopt, HSVNDate{1},
                                      std::nullopt);
}

template <class Node = HSVNFile>
std::shared_ptr<Node> nodeAt(const std::string& path, const HSVNStatusRef& status = nullptr)
{
    auto node = std::make_shared<Node>();
    node->setPath(localPath(path));
    node->setStatus(status);
    return node;
}

HSVNStatusRef statusOfText(HSVNStatusKind kind)
{
    auto status = std::make_shared<HSVNStatus>();
    status->setTextStatus(kind);
    return status;
}

/// A working-copy folder with every field set.
std::shared_ptr<HSVNDirectory> fullDirectory()
{
    auto node = nodeAt<HSVNDirectory>("/wc/folder", HSVNStatus::normal());
    node->setName("folder");
    node->setLocation(localPath("/wc"));
    node->setURL(HSVNURL::URLWithString("svn://host/r/folder"));
    node->setSize(0x8000000000000001U);
    node->setRevision(12);
    node->setDate(HSVNDate{5'000'000});
    node->setAuthor("anna");
    node->setLock(lockWithToken("t"));
    node->setHasProperties(true);
    node->setAggregateChildStatus(HSVNStatusKindModified | HSVNStatusKindUnknown);
    node->setAggregateRepositoryChildStatus(HSVNStatusKindDeleted);
    return node;
}

void expectFields(const HSVNDirectory& node)
{
    EXPECT_TRUE(node.isDirectory());
    EXPECT_EQ(node.name(), "folder");
    EXPECT_EQ(node.path()->string(), "/wc/folder");
    EXPECT_EQ(node.location()->string(), "/wc");
    EXPECT_EQ(node.URL()->string(), "svn://host/r/folder");
    EXPECT_EQ(node.size(), 0x8000000000000001U);
    EXPECT_EQ(node.revision(), 12);
    EXPECT_EQ(node.date(), HSVNDate{5'000'000});
    EXPECT_EQ(node.author(), "anna");
    EXPECT_EQ(node.lock()->token(), "t");
    EXPECT_TRUE(node.hasProperties());
    EXPECT_EQ(node.status()->textStatus(), HSVNStatusKindNormal);
    EXPECT_EQ(node.aggregateChildStatus(), 64U | 0x10000000U);
    EXPECT_EQ(node.aggregateRepositoryChildStatus(), 16U);
}

TEST(NodeTest, ACopySharesItsObjectsButTheStatus)
{
    const auto node = fullDirectory();
    const auto copy = std::dynamic_pointer_cast<HSVNDirectory>(node->copy());
    ASSERT_TRUE(copy);
    expectFields(*copy);
    EXPECT_EQ(copy->lock(), node->lock());
    EXPECT_NE(copy->status(), node->status());
    EXPECT_EQ(nodeAt("/f")->copy()->className(), "HSVNFile");
    EXPECT_EQ(HSVNNode{}.copy()->className(), "HSVNNode");
}

TEST(NodeTest, AURLBelowADirectoryIsMadeForWhoeverAsksFirst)
{
    const auto directory = HSVNURL::URLWithString("svn://host/r");
    for (int round = 0; round < 100; ++round) {
        const auto node = nodeAt("/wc/\u00e4 %.txt");
        node->setURLBelow(directory);
        std::vector<std::string> told(4);
        {
            std::vector<std::jthread> threads;
            for (auto& text : told) {
                threads.emplace_back([&text, &node, copies = threads.size() % 2 == 0] {
                    text = (copies ? node->copy() : node)->URL()->string();
                });
            }
        }
        EXPECT_THAT(told, testing::Each("svn://host/r/%C3%A4%20%25.txt"));
        EXPECT_EQ(node->URL(), node->URL()) << "it is kept";
    }
    const auto moved = nodeAt("/wc/a.txt");
    moved->setURLBelow(directory);
    moved->setPath(localPath("/wc/b.txt"));
    EXPECT_EQ(moved->URL()->string(), "svn://host/r/a.txt");
    EXPECT_EQ(directory->string(), "svn://host/r");
    HSVNNode nowhere;
    nowhere.setURLBelow(directory);
    EXPECT_THROW(nowhere.URL(), HSVNAssertionException);
}

TEST(NodeTest, IsArchivedWithAllFieldsAndItsClass)
{
    const auto archive = HSVNKeyedArchiver::archivedDataWithRootObject(fullDirectory(), HSVNArchiveFormatCBOR);
    expectFields(*HSVNKeyedUnarchiver::unarchiveObjectOfClass<HSVNDirectory>(archive));

    const auto empty = HSVNKeyedArchiver::archivedDataWithRootObject(std::make_shared<HSVNFile>());
    const auto decoded = HSVNKeyedUnarchiver::unarchiveObjectOfClass<HSVNFile>(empty);
    EXPECT_EQ(decoded->revision(), HSVNInvalidRevision);
    EXPECT_EQ(decoded->name(), std::nullopt);
    EXPECT_EQ(decoded->date(), std::nullopt);
    EXPECT_FALSE(decoded->path() || decoded->lock() || decoded->status());
}

TEST(NodeTest, RefusesCodersWithoutKeysAndSetsThatDoNotFit)
{
    SequentialCoder sequential;
    EXPECT_THROW(HSVNDirectory{}.encodeWithCoder(&sequential), HSVNInvalidArgumentException);
    EXPECT_THROW(HSVNDirectory{&sequential}, HSVNInvalidArgumentException);
    EXPECT_THROW(HSVNFile{}.encodeWithCoder(nullptr), HSVNAssertionException);
    HSVNKeyedArchiver archiver;
    archiver.encodeInteger(std::int64_t{1} << 32, "aggregateReposChildStatus");
    HSVNKeyedUnarchiver unarchiver{archiver.encodedData()};
    EXPECT_THROW(HSVNDirectory{&unarchiver}, HSVNInvalidArgumentException);
}

TEST(NodeTest, ANameStaysWhateverTheOrderInWhichNameAndPathAreSet)
{
    HSVNFile node;
    node.setName("b");
    node.setPath(localPath("/a/b"));
    EXPECT_EQ(node.name(), "b");
    node.setPath(localPath("/a/c"));
    EXPECT_EQ(node.name(), "b");
    node.setName("shown");
    EXPECT_EQ(node.name(), "shown");
    node.setName("c");
    node.setPath(nullptr);
    EXPECT_EQ(node.name(), "c");
    node.setName(std::nullopt);
    node.setPath(HSVNURL::URLWithString("svn://host/a%20b"));
    EXPECT_EQ(node.name(), std::nullopt);
    node.setName("a b");
    EXPECT_EQ(node.name(), "a b");
}

TEST(NodeTest, IsMadeFromARepositoryEntry)
{
    svn_dirent_t dirent{};
    dirent.kind = svn_node_file;
    dirent.size = 11;
    dirent.created_rev = 3;
    dirent.time = 4'500'000;
    dirent.has_props = 7;
    svn_lock_t lock{};
    lock.path = "/f";
    lock.token = "t";
    lock.creation_date = 1'000'000;
    const auto url = HSVNURL::URLWithString("svn://host/r/f");
    const HSVNFile node{"f", url, url, &dirent, &lock};
    EXPECT_EQ(node.name(), "f");
    EXPECT_EQ(node.location()->string(), "svn://host/r");
    EXPECT_EQ(node.size(), 11U);
    EXPECT_EQ(node.revision(), 3);
    EXPECT_EQ(node.date(), HSVNDate{4'000'000});
    EXPECT_EQ(node.author(), std::nullopt);
    EXPECT_TRUE(node.hasProperties());
    EXPECT_EQ(node.lock()->token(), "t");
    EXPECT_FALSE(node.status());
    EXPECT_FALSE((HSVNFile{"f", url, url, &dirent, nullptr}.lock()));
}

/// Two nodes of which the first sorts before the second.
struct OrderCase
{
    const char* name;
    void (*prepare)(HSVNNode& first, HSVNNode& second);
};

const OrderCase orderCases[] = {
    {"Path",
     [](HSVNNode& first, HSVNNode& second) {
         second.setPath(localPath("/b"));
         first.setRevision(9);
     }},
    {"Revision",
     [](HSVNNode& first, HSVNNode& second) {
         first.setDate(HSVNDate{9});
         second.setRevision(0);
     }},
    {"DateAgainstNil",
     [](HSVNNode& first, HSVNNode& second) {
         first.setSize(9);
         second.setDate(HSVNDate{-5});
     }},
    {"UnsignedSize",
     [](HSVNNode& first, HSVNNode& second) {
         first.setSize(1);
         second.setSize(0x8000000000000000U);
     }},
    {"WithAndWithoutStatus", [](HSVNNode& first, HSVNNode&) { first.setStatus(HSVNStatus::normal()); }},
    {"LastChangedRevision",
     [](HSVNNode& first, HSVNNode& second) {
         first.setStatus(statusOfText(HSVNStatusKindModified));
         second.setStatus(HSVNStatus::normal());
         second.status()->setLastChangedRevision(2);
     }},
    {"TextStatus",
     [](HSVNNode& first, HSVNNode& second) {
         first.setStatus(HSVNStatus::normal());
         second.setStatus(statusOfText(HSVNStatusKindUnknown));
     }},
};

class NodeOrderTest : public testing::TestWithParam<OrderCase>
{
};

TEST_P(NodeOrderTest, TheFirstDifferenceDecides)
{
    const auto first = nodeAt("/a");
    const auto second = nodeAt("/a");
    GetParam().prepare(*first, *second);
    EXPECT_EQ(first->compare(second), HSVNOrderedAscending);
    EXPECT_EQ(second->compare(first), HSVNOrderedDescending);
}

INSTANTIATE_TEST_SUITE_P(Fields, NodeOrderTest, testing::ValuesIn(orderCases),
                         [](const auto& testCase) { return std::string{testCase.param.name}; });

TEST(NodeOrder, FoldersComeFirstAndNilBeforeEverything)
{
    const auto file = nodeAt("/a");
    const auto folder = nodeAt<HSVNDirectory>("/z");
    EXPECT_EQ(folder->compare(file), HSVNOrderedAscending);
    EXPECT_EQ(file->compare(folder), HSVNOrderedDescending);
    EXPECT_EQ(file->compare(nullptr), HSVNOrderedDescending);
}

TEST(NodeOrder, OtherwiseEqualNodesAreEqualOnlyWithStatusRecords)
{
    EXPECT_EQ(nodeAt("/a")->compare(nodeAt("/a")), HSVNOrderedDescending);
    EXPECT_EQ(nodeAt("/a", HSVNStatus::normal())->compare(nodeAt("/a", HSVNStatus::normal())), HSVNOrderedSame);
}

TEST(NodeEquality, IsIdentity)
{
    const auto node = fullDirectory();
    const auto copy = node->copy();
    EXPECT_TRUE(node->isEqual(node) && *node == *node && node->hash() == std::hash<HSVNNode>{}(*node));
    EXPECT_FALSE(node->isEqual(copy) || *node == *copy || node->isEqual(nullptr));
    EXPECT_NE(node->hash(), copy->hash());
}

TEST(NodeStatusTest, CanBeAddedWhenUnversionedOrDeletedButStillOnDisk)
{
    const TemporaryFolder folder;
    writeFile(folder.path() / "kept", "x");
    const auto deleted = statusOfText(HSVNStatusKindDeleted);
    deleted->setSchedule(HSVNScheduleDelete);
    EXPECT_TRUE(nodeAt("/none", HSVNStatus::unversioned())->canBeAdded());
    EXPECT_TRUE(nodeAt<HSVNDirectory>("/none", HSVNStatus::ignored())->canBeAdded());
    EXPECT_FALSE(nodeAt(folder / "kept", HSVNStatus::normal())->canBeAdded());
    EXPECT_FALSE(nodeAt(folder / "kept")->canBeAdded());
    EXPECT_TRUE(nodeAt(folder / "kept", deleted)->canBeAdded());
    EXPECT_FALSE(nodeAt(folder / "gone", deleted)->canBeAdded());
    EXPECT_FALSE(nodeAt<HSVNDirectory>(folder.path().string(), deleted)->canBeAdded());
}

TEST(NodeStatusTest, HasANewerRevisionForEveryRepositoryKindButNoneAndNormal)
{
    const auto node = nodeAt("/a");
    EXPECT_FALSE(node->hasNewerRevisionInRepository());
    node->setStatus(HSVNStatus::normal());
    node->status()->setRepositoryTextStatus(HSVNStatusKindNormal);
    EXPECT_FALSE(node->hasNewerRevisionInRepository());
    node->status()->setRepositoryPropertyStatus(HSVNStatusKindModified);
    EXPECT_TRUE(node->hasNewerRevisionInRepository());
    node->status()->setRepositoryPropertyStatus(HSVNStatusKindNone);
    node->status()->setRepositoryTextStatus(HSVNStatusKindDeleted);
    EXPECT_TRUE(node->hasNewerRevisionInRepository());
}

TEST(NodeStatusTest, LockStatusComparesTheRepositorysLockWithTheOneHere)
{
    const auto a = lockWithToken("a");
    const auto sameAsA = lockWithToken("a");
    const auto b = lockWithToken("b");
    const struct
    {
        HSVNLockRef repository;
        HSVNLockRef local;
        HSVNStatusKind repositoryText;
        HSVNLockStatus expected;
    } cases[] = {
        {nullptr, nullptr, HSVNStatusKindNormal, HSVNLockStatusNone},
        {a, nullptr, HSVNStatusKindNormal, HSVNLockStatusLockedElsewhere},
        {a, sameAsA, HSVNStatusKindNormal, HSVNLockStatusLockedHere},
        {a, b, HSVNStatusKindNormal, HSVNLockStatusStolen},
        {nullptr, a, HSVNStatusKindNormal, HSVNLockStatusBroken},
        {nullptr, a, HSVNStatusKindNone, HSVNLockStatusLockedLocally},
    };
    for (const auto& [repository, local, repositoryText, expected] : cases) {
        const auto node = nodeAt("/a", HSVNStatus::normal());
        node->status()->setRepositoryLock(repository);
        node->status()->setRepositoryTextStatus(repositoryText);
        node->setLock(local);
        EXPECT_EQ(node->lockStatus(), expected);
    }
    const auto withoutStatus = nodeAt("/a");
    withoutStatus->setLock(a);
    EXPECT_EQ(withoutStatus->lockStatus(), HSVNLockStatusLockedLocally);
}

TEST(DirectoryTest, AnswersWhichKindsOccurBelowIt)
{
    const std::pair<HSVNStatusKind, bool (HSVNDirectory::*)() const> questions[] = {
        {HSVNStatusKindUnversioned, &HSVNDirectory::hasUnversionedNodes},
        {HSVNStatusKindAdded, &HSVNDirectory::hasAddedNodes},
        {HSVNStatusKindMissing, &HSVNDirectory::hasMissingNodes},
        {HSVNStatusKindDeleted, &HSVNDirectory::hasDeletedNodes},
        {HSVNStatusKindReplaced, &HSVNDirectory::hasReplacedNodes},
        {HSVNStatusKindModified, &HSVNDirectory::hasModifiedNodes},
        {HSVNStatusKindConflicted, &HSVNDirectory::hasConflictedNodes},
    };
    HSVNDirectory directory;
    for (const auto& [kind, question] : questions) {
        directory.setAggregateChildStatus(kind | HSVNStatusKindNormal);
        EXPECT_TRUE((directory.*question)()) << kind;
        directory.setAggregateChildStatus(~HSVNStatusKinds{kind});
        EXPECT_FALSE((directory.*question)()) << kind;
    }
    for (const auto& [kinds, changed] : {std::pair{0U, false}, {2U, false}, {2U | 64U, true}, {16U, true}}) {
        directory.setAggregateRepositoryChildStatus(kinds);
        EXPECT_EQ(directory.hasNodesChangedInRepository(), changed) << kinds;
    }
}

/// Nodes at /a, /a/b, /a/b/c and /ab: modified and out of date, added, without status, normal.
class NodeArrayTest : public testing::Test
{
  protected:
    NodeArrayTest()
    {
        modified->status()->setOutOfDateLastCommitRevision(8);
        modified->status()->setRepositoryTextStatus(HSVNStatusKindModified);
        added->status()->setSchedule(HSVNScheduleAdd);
    }

    const HSVNNodeRef modified = nodeAt("/a", statusOfText(HSVNStatusKindModified));
    const HSVNNodeRef added = nodeAt("/a/b", statusOfText(HSVNStatusKindAdded));
    const HSVNNodeRef bare = nodeAt("/a/b/c");
    const HSVNNodeRef normal = nodeAt("/ab", HSVNStatus::normal());
    const HSVNArray::Nodes nodes{modified, added, bare, normal};
};

TEST_F(NodeArrayTest, FiltersByExactKindsInOrder)
{
    using testing::ElementsAre;
    EXPECT_THAT(HSVNArray::arrayWithNodesWithStatus(nodes, HSVNStatusKindModified), ElementsAre(modified));
    EXPECT_THAT(HSVNArray::arrayWithNodesWithStatus(nodes, HSVNStatusKindNone), ElementsAre(bare));
    EXPECT_THAT(HSVNArray::arrayWithNodesWithStatusOtherThan(nodes, HSVNStatusKindNormal),
                ElementsAre(modified, added, bare));
    EXPECT_THAT(HSVNArray::arrayWithNodesWithRepositoryStatus(nodes, HSVNStatusKindModified), ElementsAre(modified));
    EXPECT_THAT(HSVNArray::arrayWithNodesWithRepositoryStatusOtherThan(nodes, HSVNStatusKindModified),
                ElementsAre(added, bare, normal));
    EXPECT_THAT(HSVNArray::arrayWithNodesWithStatus(nodes, HSVNStatusKindAdded, HSVNScheduleAdd), ElementsAre(added));
    EXPECT_THAT(HSVNArray::arrayWithNodesWithStatus(nodes, HSVNStatusKindAdded, HSVNScheduleNormal), ElementsAre());
    // A node without a record counts as out of date at revision 0.
    EXPECT_THAT(HSVNArray::arrayWithOutOfDateNodes(nodes), ElementsAre(modified, bare));
}

TEST_F(NodeArrayTest, RefusesNilNodes)
{
    HSVNArray::Nodes withNil{nullptr};
    const std::function<void()> calls[] = {[&] { HSVNArray::arrayWithOutOfDateNodes(withNil); },
                                           [&] { HSVNArray::arrayWithPathsOfNodes(withNil); },
                                           [&] { HSVNArray::nodeWithPath(withNil, bare->path()); },
                                           [&] { HSVNArray::dictionaryOfNodesKeyedByPath(withNil); },
                                           [&] { HSVNNode::nodeWithName("a", withNil); },
                                           [&] { HSVNNode::removeVersionConflictFilesFromArray(withNil); }};
    for (const auto& call : calls) {
        EXPECT_THROW(call(), HSVNAssertionException);
    }
}

TEST_F(NodeArrayTest, FindsNodesByPath)
{
    using testing::ElementsAre;
    EXPECT_EQ(HSVNArray::arrayWithPathsOfNodes(nodes)[3], normal->path());
    EXPECT_THAT(HSVNArray::arrayWithDescendentsOfPath(nodes, localPath("/a")), ElementsAre(added, bare));
    EXPECT_THAT(HSVNArray::arrayWithDescendentsOfPaths(nodes, {localPath("/a/b"), localPath("/a")}),
                ElementsAre(bare, added, bare));
    EXPECT_EQ(HSVNArray::nodeWithPath(nodes, localPath("/a/b")), added);
    EXPECT_EQ(HSVNArray::nodeWithPath(nodes, localPath("/x")), nullptr);
    EXPECT_EQ(HSVNArray::nodeWithAncestorOfPath(nodes, localPath("/a/b")), modified);
    EXPECT_EQ(HSVNArray::nodeWithAncestorOfPath(nodes, localPath("/a/b/x/y")), added);
    EXPECT_EQ(HSVNArray::nodeWithAncestorOfPath(nodes, localPath("/a")), nullptr);

    const auto later = nodeAt("/a");
    auto withDouble = nodes;
    withDouble.push_back(later);
    const auto dictionary = HSVNArray::dictionaryOfNodesKeyedByPath(withDouble);
    EXPECT_EQ(dictionary.size(), 4U);
    EXPECT_EQ(dictionary.at(localPath("/a")), later);
}

TEST_F(NodeArrayTest, RefusesNilPaths)
{
    EXPECT_THROW(HSVNArray::arrayWithDescendentsOfPath(nodes, nullptr), HSVNAssertionException);
    EXPECT_THROW(HSVNArray::nodeWithPath(nodes, nullptr), HSVNAssertionException);
    EXPECT_THROW(HSVNArray::nodeWithAncestorOfPath(nodes, nullptr), HSVNAssertionException);
}

} // namespace
