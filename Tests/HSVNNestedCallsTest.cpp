#include "CopiedWorkingCopyTest.h"
#include "HSVNBlamedLine.h"
#include "HSVNClient.h"
#include "HSVNClientDelegate.h"
#include "HSVNConflict.h"
#include "HSVNDifference.h"
#include "HSVNException.h"
#include "HSVNItemInfo.h"
#include "HSVNItemProperties.h"
#include "HSVNLayoutItem.h"
#include "HSVNLogItem.h"
#include "HSVNNode.h"
#include "HSVNPatchedItem.h"
#include "HSVNTreeDiff.h"
#include "TestBundles.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

// What a receiver or a delegate calls on the very context whose call it serves either does what it does at any other
// time or is refused in words of the library's, and leaves both the call around it and the working copy whole.

namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

/// Sees to it that something is done within each message of a client's.
struct Asker
{
    std::function<void()> within = [] {};

    void notify(HSVNContext&, const HSVNNotificationRef&) { within(); }
    bool queryContinue(HSVNContext&)
    {
        within();
        return true;
    }
    bool promptForLogMessage(HSVNContext&, std::string& message, const std::vector<HSVNCommitItemRef>&)
    {
        within();
        message = "nested";
        return true;
    }
};

struct NestedPlace
{
    HSVNClient& client;
    std::string root;
    std::string url;
    std::string item(const std::string& name) const { return root + "/" + name; }
};

using Verb = void (*)(const NestedPlace& given);

template <class Item>
auto each(const std::function<void()>& within)
{
    return [&within](const Item&) {
        within();
        return true;
    };
}

const std::pair<HSVNRevisionRef, HSVNRevisionRef> localChanges()
{
    return {HSVNRevision::BASE(), HSVNRevision::WORKING()};
}

const std::pair<const char*, Verb> nestedReaders[] = {
    {"status", [](const NestedPlace& given) { given.client.status(given.root, {.getAll = true}); }},
    {"info",
     [](const NestedPlace& given) {
         given.client.info(given.root, HSVNRevisionSpec::UNSPECIFIED(), {.depth = HSVNDepthInfinity});
     }},
    {"properties",
     [](const NestedPlace& given) {
         given.client.properties(given.root, HSVNRevisionSpec::UNSPECIFIED(), {.depth = HSVNDepthInfinity});
     }},
    {"property",
     [](const NestedPlace& given) {
         given.client.property(given.root, "color", HSVNRevisionSpec::UNSPECIFIED(), {.depth = HSVNDepthInfinity});
     }},
    {"layout",
     [](const NestedPlace& given) { given.client.layout(given.root, [](const HSVNLayoutItem&) { return true; }); }},
    {"conflicts", [](const NestedPlace& given) { given.client.conflicts(given.root); }},
    {"list", [](const NestedPlace& given) { given.client.list(given.root); }},
    {"log", [](const NestedPlace& given) { given.client.log(given.root); }},
    {"contents", [](const NestedPlace& given) { given.client.contents(given.item("changed")); }},
    {"blame",
     [](const NestedPlace& given) {
         given.client.blame(given.item("normal"), {HSVNRevision::revisionWithNumber(1), HSVNRevision::WORKING()}, {},
                            [](const HSVNBlamedLine&) { return true; });
     }},
    {"diff", [](const NestedPlace& given) { given.client.treeDiff(given.root, localChanges()); }},
    {"diffSummary",
     [](const NestedPlace& given) {
         given.client.diffSummary(given.root, localChanges(), {}, [](const HSVNDifference&) { return true; });
     }},
    {"export", [](const NestedPlace& given) { given.client.exportTree(given.item("dir"), given.root + ".exported"); }},
    {"URLOfTarget", [](const NestedPlace& given) { given.client.URLOfTarget(given.item("dir")); }},
};

const std::pair<const char*, Verb> nestedWriters[] = {
    {"add", [](const NestedPlace& given) { given.client.add(given.item("unversioned")); }},
    {"setProperty", [](const NestedPlace& given) { given.client.setProperty(given.item("normal"), "a", "b"); }},
    {"addToChangelist",
     [](const NestedPlace& given) { given.client.addToChangelist(given.root, "other", {.depth = HSVNDepthInfinity}); }},
    {"removeFromChangelists",
     [](const NestedPlace& given) { given.client.removeFromChangelists(given.root, {.depth = HSVNDepthInfinity}); }},
    {"copy",
     [](const NestedPlace& given) {
         given.client.copy({HSVNTargetInRevision{given.item("dir")}}, given.item("nested-copy"));
     }},
    {"move", [](const NestedPlace& given) { given.client.move(given.item("dir"), given.item("nested-move")); }},
    {"makeDirectories", [](const NestedPlace& given) { given.client.makeDirectories(given.item("nested-directory")); }},
    {"remove", [](const NestedPlace& given) { given.client.remove(given.item("dir/one"), {.force = true}); }},
    {"resolve", [](const NestedPlace& given) { given.client.resolve(given.root, {.depth = HSVNDepthInfinity}); }},
    {"revert", [](const NestedPlace& given) { given.client.revert(given.root, {.depth = HSVNDepthInfinity}); }},
    {"update", [](const NestedPlace& given) { given.client.update(given.root); }},
    {"switchTo",
     [](const NestedPlace& given) {
         given.client.switchTo(given.item("tree"), given.url + "/dir", HSVNRevisionSpec::HEAD(),
                               {.ignoreAncestry = true});
     }},
    {"merge",
     [](const NestedPlace& given) {
         given.client.merge(given.url, {{HSVNRevision::revisionWithNumber(3), HSVNRevision::revisionWithNumber(2)}},
                            given.root, {.allowMixedRevisions = true});
     }},
    {"patch", [](const NestedPlace& given) { given.client.patch(given.root + ".patch", given.root); }},
    {"lock", [](const NestedPlace& given) { given.client.lock(given.item("changed")); }},
    {"commit", [](const NestedPlace& given) { given.client.commit(given.item("changed")); }},
    {"relocate", [](const NestedPlace& given) { given.client.relocate(given.root, given.url, given.url); }},
    {"vacuum", [](const NestedPlace& given) { given.client.vacuum(given.root, {.vacuumPristines = true}); }},
    {"upgrade", [](const NestedPlace& given) { given.client.upgrade(given.root); }},
    {"cleanUp", [](const NestedPlace& given) { given.client.cleanUp(given.root); }},
};

/// A call that has receivers.
using Around = void (*)(const NestedPlace& given, const std::function<void()>& within);

const std::pair<const char*, Around> receivers[] = {
    {"status",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.status(given.root, {.getAll = true}, each<HSVNNodeRef>(within));
     }},
    {"info",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.info(given.root, HSVNRevisionSpec::UNSPECIFIED(), {.depth = HSVNDepthInfinity},
                           each<HSVNItemInfo>(within));
     }},
    {"properties",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.properties(given.root, HSVNRevisionSpec::UNSPECIFIED(), {.depth = HSVNDepthInfinity},
                                 each<HSVNItemProperties>(within));
     }},
    {"layout",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.layout(given.root, each<HSVNLayoutItem>(within));
     }},
    {"conflicts",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.conflicts(given.root, {}, each<std::string>(within));
     }},
    {"list",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.list(given.root, HSVNRevisionSpec::HEAD(), {}, each<HSVNNodeRef>(within));
     }},
    {"log",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.log(given.root, {}, each<HSVNLogItemRef>(within));
     }},
    {"blame",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.blame(given.item("conflicted"), {HSVNRevision::revisionWithNumber(1), HSVNRevision::WORKING()},
                            {}, each<HSVNBlamedLine>(within));
     }},
    {"diffSummary",
     [](const NestedPlace& given, const std::function<void()>& within) {
         given.client.diffSummary(given.root, localChanges(), {}, each<HSVNDifference>(within));
     }},
};

// Calls that notify, ask whether to go on, or ask for a log message; together with `writers`.
const std::pair<const char*, Verb> furtherCalls[] = {
    {"remove of much", [](const NestedPlace& given) { given.client.remove(given.item("tree"), {.force = true}); }},
    {"recursive property",
     [](const NestedPlace& given) { given.client.setProperty(given.root, "a", "b", {.depth = HSVNDepthInfinity}); }},
    {"update of an old revision",
     [](const NestedPlace& given) { given.client.update(given.root, HSVNRevision::revisionWithNumber(2)); }},
    {"commit of much", [](const NestedPlace& given) { given.client.commit(given.item("dir")); }},
};

class NestedCalls : public CopiedWorkingCopyTest
{
  protected:
    static void SetUpTestSuite()
    {
        repository = std::make_unique<TestRepository>();
        repository->change({"mkdir", "trunk"});
        const std::string root = repository->checkOut("wc", "trunk");
        const std::string other = repository->checkOut("other", "trunk");
        for (const std::string name : {"changed", "conflicted", "normal", "dir/one", "dir/two", "tree/deep/child"}) {
            writeFile(root + "/" + name, name + "\n");
        }
        svn({"add", "--force", root});
        svn({"propset", "-R", "color", "red", root});
        svn({"commit", "-m", "made", root});
        svn({"update", root, other});
        writeFile(other + "/conflicted", "theirs\n");
        svn({"commit", "-m", "theirs", other});
        writeFile(root + "/conflicted", "mine\n");
        svn({"update", "--accept", "postpone", root});
        writeFile(other + "/normal", "newer\n");
        svn({"commit", "-m", "not updated to", other});
        for (const std::string name : {"changed", "dir/one", "dir/two", "unversioned/file"}) {
            writeFile(root + "/" + name, "mine\n");
        }
        svn({"changelist", "list", root + "/changed", root + "/dir/one", root + "/dir/two"});
        mustRun({"cp", "-a", repository->path(), repository->beside("untouched")});
    }
    static void svn(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), {"svn", "--non-interactive", "-q"});
        mustRun(arguments);
    }

    NestedPlace fresh()
    {
        std::filesystem::remove_all(repository->path());
        mustRun({"cp", "-a", repository->beside("untouched"), repository->path()});
        const std::string root = freshCopy({".exported", ".patch"});
        writeFile(root + ".patch", "--- dir/two\n+++ dir/two\n@@ -1 +1 @@\n-mine\n+patched\n");
        client = std::make_shared<HSVNClient>(bundleOfLine(installedLine()), asker);
        return {*client, root, repository->url("trunk")};
    }

    using Call = std::function<void(const NestedPlace&, const std::function<void()>& within)>;

    /// Runs readers and writers within a call, each once and for all at some message of its.
    void check(const std::string& name, const Call& around)
    {
        int messages = 0;
        const NestedPlace undisturbed = fresh();
        const std::string usual = failureIn([&] { around(undisturbed, [&] { ++messages; }); });
        if (messages == 0) {
            return; // such as relocation, which has nothing to say
        }
        const int middle = messages / 2 + 1;
        SCOPED_TRACE("in " + name + ", at message " + std::to_string(middle) + " of " + std::to_string(messages));
        int told = 0;
        const NestedPlace read = fresh();
        EXPECT_EQ(failureIn([&] {
                      around(read, [&] {
                          if (++told == middle) {
                              runAll(nestedReaders, read);
                          }
                      });
                  }),
                  usual);
        EXPECT_GE(told, messages);
        expectWhole(read);
        told = 0;
        const NestedPlace written = fresh();
        const std::string failure = failureIn([&] {
            around(written, [&] {
                if (++told == middle) {
                    runAll(nestedWriters, written);
                }
            });
        });
        EXPECT_THAT(failure, inClearWords());
        expectWhole(written);
    }

    template <class Verbs>
    static void runAll(const Verbs& verbs, const NestedPlace& given)
    {
        for (const auto& [verb, call] : verbs) {
            EXPECT_THAT(failureIn([&given, run = call] { run(given); }), inClearWords()) << verb;
        }
    }

    void expectWhole(const NestedPlace& place)
    {
        asker->within = [] {};
        CopiedWorkingCopyTest::expectWhole(place.root);
        EXPECT_EQ(failureIn([&] { place.client.status(place.root); }), "");
    }

    static testing::Matcher<std::string> inClearWords()
    {
        return Not(AnyOf(HasSubstr("sqlite"), HasSubstr("database"), HasSubstr("internal"), HasSubstr("no exception")));
    }

    static std::string failureIn(const std::function<void()>& call)
    {
        try {
            call();
        } catch (const HSVNPlatformException& exception) {
            return exception.reason();
        } catch (const std::exception& exception) {
            return std::string{"no exception of the library: "} + exception.what();
        }
        return "";
    }

    std::shared_ptr<HSVNClientDelegateFor<Asker>> asker = std::make_shared<HSVNClientDelegateFor<Asker>>();
    HSVNClientRef client;
};

TEST_F(NestedCalls, WorkOrAreRefusedInReceivers)
{
    for (const auto& [name, around] : receivers) {
        check(name, around);
    }
}

TEST_F(NestedCalls, WorkOrAreRefusedInDelegates)
{
    const auto checkVerb = [&](const char* name, Verb verb) {
        check(name, [&](const NestedPlace& place, const std::function<void()>& within) {
            asker->within = within;
            verb(place);
        });
    };
    for (const auto& [name, verb] : nestedWriters) {
        checkVerb(name, verb);
    }
    for (const auto& [name, verb] : furtherCalls) {
        checkVerb(name, verb);
    }
}

} // namespace
