#include "AlteredBundle.h"
#include "HSVNDirectory.h"
#include "HSVNLock.h"
#include "HSVNNode.h"
#include "HSVNStatus.h"
#include "HSVNStatusOptions.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <set>

using testing::ElementsAre;
using testing::SizeIs;

namespace {

/// The verb `status` on the installed line, and by what older lines have.
class StatusVerb : public WorkingCopyTest
{
  protected:
    StatusVerb()
    {
        if (isOlderLine()) {
            client = clientWithoutExtensions(GetParam());
            client->setDelegate(delegate);
        }
    }

    /// Commits changes to two items, elsewhere, so that an update brings conflicts.
    void changeElsewhere() const
    {
        const auto other = repository.checkOut("other", "trunk");
        writeFile(other + "/a.txt", "theirs\n");
        mustRun({"svn", "delete", "-q", other + "/b.txt"});
        mustRun({"svn", "propset", "-q", "color", "theirs", other + "/dir"});
        mustRun({"svn", "commit", "-q", "-m", "elsewhere", other});
    }

    std::string fieldsOf(const HSVNNode& node) const
    {
        const auto& status = *node.status();
        // What was never committed has no revision; old records say 0.
        const bool isNew = status.schedule() == HSVNScheduleAdd;
        return fmt::format("{} {} {} {} {}{}{}", node.path()->string().substr(root.size()), status.nodeStatus(),
                           status.textStatus(), status.propertyStatus(), isNew ? -1 : status.revision(),
                           status.versioned() ? "" : " unversioned", node.isDirectory() ? " directory" : "");
    }
    std::vector<std::string> fields(const HSVNStatusChoices& choices) const
    {
        std::vector<std::string> all;
        for (const auto& node : client->status(root, choices)) {
            all.push_back(fieldsOf(*node));
        }
        return all;
    }
};

} // namespace

TEST_P(StatusVerb, TellsTheSameOnEveryLine)
{
    writeFile(item("a.txt"), "changed\n");
    writeFile(item("new.txt"), "new\n");
    writeFile(item("added.txt"), "added\n");
    mustRun({"svn", "add", "-q", item("added.txt")});
    mustRun({"svn", "propset", "-q", "color", "red", item("b.txt")});
    mustRun({"svn", "delete", "-q", item("dir/c.txt")});
    EXPECT_THAT(fields({}),
                testing::UnorderedElementsAre("/a.txt 64 64 0 1", "/new.txt 1 1 0 -1 unversioned",
                                              "/added.txt 4 4 0 -1", "/b.txt 64 2 64 1", "/dir/c.txt 16 16 0 1"));
    EXPECT_THAT(fields({.depth = HSVNDepthImmediates, .getAll = true}), SizeIs(6)) << "without /dir/c.txt";
    int received = 0;
    client->status(root, {.getAll = true}, [&](const HSVNNodeRef&) { return ++received < 2; });
    EXPECT_EQ(received, 2) << "false stops it";
    EXPECT_THROW(client->status(root, {}, [](const HSVNNodeRef&) { throw std::range_error("no"); }), std::range_error);
}

TEST_P(StatusVerb, TellsConflictsMovesAndTheRepositorysSide)
{
    changeElsewhere();
    std::map<std::string, HSVNNodeRef> nodes;
    const auto take = [&](const HSVNNodeRef& node) { nodes[node->name().value_or("")] = node; };
    EXPECT_EQ(client->status(root, {.getAll = true, .contactRepository = true}, take), 2);
    EXPECT_EQ(nodes["a.txt"]->status()->repositoryNodeStatus(), HSVNStatusKindModified);
    EXPECT_EQ(nodes["a.txt"]->status()->repositoryTextStatus(), HSVNStatusKindModified);
    EXPECT_EQ(nodes["b.txt"]->status()->repositoryNodeStatus(), HSVNStatusKindDeleted);
    EXPECT_EQ(nodes["c.txt"]->status()->repositoryNodeStatus(), HSVNStatusKindNone);
    EXPECT_FALSE(nodes["c.txt"]->hasNewerRevisionInRepository());
    EXPECT_EQ(nodes["c.txt"]->status()->repositoryTextStatus(), HSVNStatusKindNormal) << "known to be so";
    EXPECT_NE(nodes["a.txt"]->exactDate(), nodes["a.txt"]->date());

    writeFile(item("a.txt"), "mine\n");
    writeFile(item("b.txt"), "mine\n");
    mustRun({"svn", "propset", "-q", "color", "mine", item("dir")});
    mustRun({"svn", "update", "-q", "--accept", "postpone", root});
    mustRun({"svn", "move", "-q", item("dir/c.txt"), item("dir/d.txt")});
    mustRun({"svn", "changelist", "-q", "list", item("a.txt")});
    nodes.clear();
    client->status(root, {}, take);
    EXPECT_TRUE(nodes["a.txt"]->status()->textConflicted());
    EXPECT_FALSE(nodes["a.txt"]->status()->treeConflicted());
    EXPECT_TRUE(nodes["dir"]->status()->propertiesConflicted());
    EXPECT_FALSE(nodes["dir"]->status()->textConflicted());
    if (!line().isLessThan(HSVNVersion{1, 6})) {
        EXPECT_TRUE(nodes["b.txt"]->status()->treeConflicted());
    }
    if (line() != HSVNVersion{1, 4}) {
        EXPECT_EQ(nodes["a.txt"]->status()->changelist(), "list");
    }
    if (!isOlderLine()) {
        EXPECT_EQ(nodes["c.txt"]->status()->movedTo(), item("dir/d.txt"));
        EXPECT_EQ(nodes["d.txt"]->status()->movedFrom(), item("dir/c.txt"));
        EXPECT_EQ(nodes["c.txt"]->status()->revision(), 2) << "what was there until now";
    }
    const auto copy = nodes["a.txt"]->copy();
    EXPECT_TRUE(copy->status()->textConflicted());
    EXPECT_EQ(copy->status()->changelist(), nodes["a.txt"]->status()->changelist());
}

TEST_P(StatusVerb, TellsKindAndScheduleOfItemsThatAreNotThere)
{
    mustRun({"sh", "-ec",
             "cd \"$0\"; svn copy -q dir copy; touch new; mkdir newdir; svn remove -q b.txt dir; touch b.txt dir;"
             " svn add -q new newdir b.txt; svn copy -q a.txt copied;"
             " rm -r a.txt b.txt new newdir copied copy/c.txt; touch newdir",
             root});
    std::vector<std::string> found;
    for (const auto& node : client->status(root, {})) {
        found.push_back(fmt::format("{} {}{}", node->path()->string().substr(root.size() + 1),
                                    node->status()->schedule(), node->isDirectory() ? " directory" : ""));
    }
    EXPECT_THAT(found, testing::UnorderedElementsAre("a.txt 0", "b.txt 3", "new 1", "newdir 1 directory", "copied 1",
                                                     "copy 1 directory", "copy/c.txt 0", "dir 2 directory"));
}

TEST_P(StatusVerb, TellsOfAConflictOverWhatIsNoFile)
{
    if (isOlderLine()) {
        GTEST_SKIP() << "the older function fails";
    }
    mustRun({"sh", "-ec",
             "cd \"$0\"; svn copy -q a.txt pipe; svn commit -q -m 'A pipe'; svn update -q -r1; mkfifo pipe;"
             " svn update -q --accept postpone || true",
             root});
    const auto isInConflict = [](const HSVNNodeRef& node) { return node->status()->treeConflicted(); };
    const auto scanned = HSVNDirectory::statusForNodesInDirectoryAtPath(at(""), HSVNStatusOptions::defaults(), client);
    for (const auto& nodes : {client->status(root, {}), scanned}) {
        EXPECT_THAT(nodes, testing::Contains(testing::Truly(isInConflict)));
    }
}

TEST_P(StatusVerb, FillsANodeThatNobodyKeptAnew)
{
    std::weak_ptr<HSVNNode> last;
    int refilled = 0;
    client->status(root, {.getAll = true}, [&](const HSVNNodeRef& node) {
        if (!node->isDirectory()) {
            refilled += last.lock() == node ? 1 : 0;
            last = node;
        }
    });
    EXPECT_EQ(refilled, 2) << "of three files";
    std::vector<HSVNNodeRef> kept;
    client->status(root, {.getAll = true}, [&](const HSVNNodeRef& node) { kept.push_back(node); });
    std::set<std::string> paths;
    std::set<const HSVNStatus*> records;
    for (const auto& node : kept) {
        paths.insert(node->path()->string());
        records.insert(node->status().get());
    }
    EXPECT_THAT(paths, SizeIs(5));
    EXPECT_THAT(records, SizeIs(5));
}

TEST_P(StatusVerb, NamesChoicesThatALineDoesNotHave)
{
    const std::vector<std::pair<std::string, HSVNStatusChoices>> choices{{"changelists", {.changelists = {"list"}}}};
    for (const auto& [choice, choosing] : choices) {
        if (!isOlderLine()) {
            EXPECT_NO_THROW(fields(choosing));
            continue;
        }
        EXPECT_EQ(reasonOf<HSVNUnsupportedFeatureException>([&, &choosing = choosing] { fields(choosing); }),
                  fmt::format("[HSVNContext status]: '{}' is not offered by the bundle of Subversion {}.{}", choice,
                              line().major(), line().minor()));
    }
}

INSTANTIATE_TEST_SUITE_P(Lines, StatusVerb, everyLine(), lineName);
