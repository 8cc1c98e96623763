#include "CopiedWorkingCopyTest.h"
#include "HSVNBlamedLine.h"
#include "HSVNClient.h"
#include "HSVNClientDelegate.h"
#include "HSVNDifference.h"
#include "HSVNException.h"
#include "HSVNItemInfo.h"
#include "HSVNItemProperties.h"
#include "HSVNLogItem.h"
#include "HSVNNode.h"
#include "HSVNPatchedItem.h"
#include "HSVNTreeDiff.h"
#include "TestBundles.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

// Whatever stands in a versioned item's place, each verb that reads or writes working files does its work or says what
// is in the way: none waits for a pipe, none follows a link, none fails by an assertion.

namespace {

namespace files = std::filesystem;
using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

const std::pair<const char*, void (*)(const std::string& place, const std::string& outside)> obstructions[] = {
    {"nothing", [](const std::string&, const std::string&) {}},
    {"pipe", [](const std::string& place, const std::string&) { ASSERT_EQ(mkfifo(place.c_str(), 0600), 0); }},
    {"directory", [](const std::string& place, const std::string&) { files::create_directory(place); }},
    {"file", [](const std::string& place, const std::string&) { writeFile(place, "in the way\n"); }},
    {"link to a file",
     [](const std::string& place, const std::string& outside) { files::create_symlink(outside + "/file", place); }},
    {"link to a directory",
     [](const std::string& place, const std::string& outside) { files::create_symlink(outside, place); }},
    {"link to a directory like it",
     [](const std::string& place, const std::string& outside) {
         files::create_directory(outside + "/alike");
         for (const char* name : {"child", "going"}) {
             writeFile(outside + "/alike/" + name, "child\n");
         }
         files::create_symlink(outside + "/alike", place);
     }},
    {"link to nowhere", [](const std::string& place, const std::string&) { files::create_symlink("nowhere", place); }},
    {"link to itself",
     [](const std::string& place, const std::string&) { files::create_symlink(files::path{place}.filename(), place); }},
};

/// Sees to it that nobody waits for a pipe for ever: who still does after a time is told of, and let go.
class PipeWatch
{
  public:
    explicit PipeWatch(std::string pipe) : _pipe{std::move(pipe)} {}
    ~PipeWatch()
    {
        {
            const std::lock_guard guard{_mutex};
            _isOver = true;
        }
        _ended.notify_one();
        _thread.join();
        EXPECT_FALSE(_isHung) << "somebody waits for the pipe";
    }
    PipeWatch(const PipeWatch&) = delete;
    PipeWatch& operator=(const PipeWatch&) = delete;

  private:
    void watch()
    {
        std::unique_lock guard{_mutex};
        auto patience = std::chrono::milliseconds{10'000};
        while (!_ended.wait_for(guard, patience, [this] { return _isOver; })) {
            _isHung = true;
            patience = std::chrono::milliseconds{20};
            close(open(_pipe.c_str(), O_RDWR | O_NONBLOCK));
        }
    }

    std::string _pipe;
    std::mutex _mutex;
    std::condition_variable _ended;
    bool _isOver = false;
    bool _isHung = false;
    std::thread _thread{[this] { watch(); }};
};

struct ObstructedPlace
{
    HSVNContext& context;
    std::string root;
    std::string url;
    std::string item; ///< obstructed
    std::string target() const { return root + "/" + item; }
    std::string child() const { return target() + "/child"; }
};

/// Verbs that leave the working copy as it is.
const std::pair<const char*, void (*)(const ObstructedPlace&)> readers[] = {
    {"status", [](const ObstructedPlace& at) { at.context.status(at.root, {.getAll = true}); }},
    {"info", [](const ObstructedPlace& at) { at.context.info(at.target()); }},
    {"properties", [](const ObstructedPlace& at) { at.context.properties(at.target()); }},
    {"contents", [](const ObstructedPlace& at) { at.context.contents(at.target(), HSVNRevisionSpec::WORKING()); }},
    {"contents of the base", [](const ObstructedPlace& at) { at.context.contents(at.target()); }},
    {"blame",
     [](const ObstructedPlace& at) {
         at.context.blame(at.target(), {HSVNRevision::revisionWithNumber(1), HSVNRevision::WORKING()}, {},
                          [](const HSVNBlamedLine&) { return true; });
     }},
    {"diff",
     [](const ObstructedPlace& at) {
         at.context.diff(at.root, {HSVNRevision::BASE(), HSVNRevision::WORKING()}, {},
                         [](std::string_view) { return true; });
     }},
    {"diff of it",
     [](const ObstructedPlace& at) {
         at.context.treeDiff(at.target(), {HSVNRevision::BASE(), HSVNRevision::WORKING()});
     }},
    {"diff with the repository",
     [](const ObstructedPlace& at) {
         at.context.treeDiff(at.root, {HSVNRevision::revisionWithNumber(1), HSVNRevision::WORKING()});
     }},
    {"diff summary",
     [](const ObstructedPlace& at) {
         at.context.diffSummary(at.root, {HSVNRevision::BASE(), HSVNRevision::WORKING()}, {},
                                [](const HSVNDifference&) { return true; });
     }},
    {"export", [](const ObstructedPlace& at) { at.context.exportTree(at.root, at.root + ".exported"); }},
    {"export of it", [](const ObstructedPlace& at) { at.context.exportTree(at.target(), at.root + ".one"); }},
    {"export of the base",
     [](const ObstructedPlace& at) { at.context.exportTree(at.root, at.root + ".base", HSVNRevisionSpec::BASE()); }},
};

const std::pair<const char*, void (*)(const ObstructedPlace&)> writers[] = {
    {"lock", [](const ObstructedPlace& at) { at.context.lock(at.target()); }},
    {"set property",
     [](const ObstructedPlace& at) { at.context.setProperty(at.target(), "svn:eol-style", "native", {}); }},
    {"set executable",
     [](const ObstructedPlace& at) { at.context.setProperty(at.target(), "svn:executable", "*", {}); }},
    {"set needs-lock",
     [](const ObstructedPlace& at) { at.context.setProperty(at.target(), "svn:needs-lock", "*", {}); }},
    {"changelist", [](const ObstructedPlace& at) { at.context.addToChangelist(at.target(), "list"); }},
    {"copy",
     [](const ObstructedPlace& at) { at.context.copy({HSVNTargetInRevision{at.target()}}, at.root + "/copied"); }},
    {"copy to the repository",
     [](const ObstructedPlace& at) {
         at.context.copy({HSVNTargetInRevision{at.target()}}, at.url + "/../copied", {.message = "m"});
     }},
    {"move", [](const ObstructedPlace& at) { at.context.move(at.target(), at.root + "/moved"); }},
    {"add", [](const ObstructedPlace& at) { at.context.add(at.target(), {.force = true}); }},
    {"update", [](const ObstructedPlace& at) { at.context.update(at.root); }},
    {"update of it",
     [](const ObstructedPlace& at) { at.context.update(at.target(), HSVNRevision::revisionWithNumber(1)); }},
    {"switch", [](const ObstructedPlace& at) { at.context.switchTo(at.root, at.url + "/../branch"); }},
    {"merge",
     [](const ObstructedPlace& at) {
         at.context.merge(at.url, {{HSVNRevision::revisionWithNumber(2), HSVNRevision::revisionWithNumber(1)}}, at.root,
                          {.allowMixedRevisions = true});
     }},
    {"patch", [](const ObstructedPlace& at) { at.context.patch(at.root + ".patch", at.root); }},
    {"resolve", [](const ObstructedPlace& at) { at.context.resolve(at.root, {.depth = HSVNDepthInfinity}); }},
    {"import",
     [](const ObstructedPlace& at) { at.context.importTree(at.target(), at.url + "/../imported", {.message = "m"}); }},
    {"commit", [](const ObstructedPlace& at) { at.context.commit(at.root, {.message = "m"}); }},
    {"remove", [](const ObstructedPlace& at) { at.context.remove(at.target()); }},
    {"forced remove", [](const ObstructedPlace& at) { at.context.remove(at.target(), {.force = true}); }},
    {"clean-up", [](const ObstructedPlace& at) { at.context.cleanUp(at.root); }},
    {"revert", [](const ObstructedPlace& at) { at.context.revert(at.root, {.depth = HSVNDepthInfinity}); }},
    {"check-out", [](const ObstructedPlace& at) { at.context.checkout(at.url, at.root); }},
    {"vacuum", [](const ObstructedPlace& at) { at.context.vacuum(at.root, {.removeUnversioned = true}); }},
    {"vacuum of it", [](const ObstructedPlace& at) { at.context.vacuum(at.target(), {.removeUnversioned = true}); }},
};

/// What is tried with the items below a directory.
const std::string_view obstructedParents[] = {"nothing", "file", "link to a directory", "link to a directory like it",
                                              "link to nowhere"};

/// The same for what is in a directory.
const std::pair<const char*, void (*)(const ObstructedPlace&)> writersBelow[] = {
    {"update of a child", [](const ObstructedPlace& at) { at.context.update(at.child()); }},
    {"update of children",
     [](const ObstructedPlace& at) {
         at.context.update(at.target(), HSVNRevision::HEAD(), {.depth = HSVNDepthFiles});
     }},
    {"update of a new child", [](const ObstructedPlace& at) { at.context.update(at.target() + "/coming"); }},
    {"deletion of a child by an update",
     [](const ObstructedPlace& at) { at.context.update(at.child(), HSVNRevision::revisionWithNumber(1)); }},
    {"switch of a child",
     [](const ObstructedPlace& at) { at.context.switchTo(at.child(), at.url + "/../branch/file"); }},
    {"revert of a child", [](const ObstructedPlace& at) { at.context.revert(at.child()); }},
    {"revert of a changed child",
     [](const ObstructedPlace& at) {
         at.context.setProperty(at.child(), "color", "red", {});
         at.context.revert(at.child());
     }},
    {"removal of a child", [](const ObstructedPlace& at) { at.context.remove(at.child(), {.force = true}); }},
    {"commit of a child", [](const ObstructedPlace& at) { at.context.commit(at.child(), {.message = "m"}); }},
    {"commit of a changed child",
     [](const ObstructedPlace& at) {
         at.context.setProperty(at.child(), "svn:keywords", "Rev", {});
         at.context.commit(at.child(), {.message = "m"});
     }},
    {"lock of a child", [](const ObstructedPlace& at) { at.context.lock(at.target() + "/going"); }},
    {"set executable of a child",
     [](const ObstructedPlace& at) { at.context.setProperty(at.child(), "svn:executable", "*", {}); }},
    {"set executable of a child that needs a lock",
     [](const ObstructedPlace& at) { at.context.setProperty(at.target() + "/going", "svn:executable", "*", {}); }},
    {"set needs-lock of a child",
     [](const ObstructedPlace& at) { at.context.setProperty(at.child(), "svn:needs-lock", "*", {}); }},
    {"new directory", [](const ObstructedPlace& at) { at.context.makeDirectories({at.target() + "/new"}); }},
    {"copy",
     [](const ObstructedPlace& at) {
         at.context.copy({HSVNTargetInRevision{at.root + "/file"}}, at.target() + "/new");
     }},
    {"move", [](const ObstructedPlace& at) { at.context.move(at.root + "/file", at.target() + "/new"); }},
    {"move of a child", [](const ObstructedPlace& at) { at.context.move(at.child(), at.root + "/new"); }},
    {"copy over a child",
     [](const ObstructedPlace& at) {
         at.context.remove(at.child(), {.keepLocal = true});
         at.context.copy({HSVNTargetInRevision{at.root + "/file"}}, at.child());
     }},
    {"merge into a child",
     [](const ObstructedPlace& at) {
         at.context.merge(at.url + "/directory/child",
                          {{HSVNRevision::revisionWithNumber(2), HSVNRevision::revisionWithNumber(3)}}, at.child());
     }},
    {"patch of a child",
     [](const ObstructedPlace& at) {
         writeFile(at.root + ".patch", "--- child\n+++ child\n@@ -1 +1 @@\n-child\n+patched\n");
         at.context.patch(at.root + ".patch", at.target());
     }},
    {"resolve of a child", [](const ObstructedPlace& at) { at.context.resolve(at.child()); }},
    {"clean-up below", [](const ObstructedPlace& at) { at.context.cleanUp(at.target()); }},
};

class Obstructions : public CopiedWorkingCopyTest
{
  protected:
    static void SetUpTestSuite()
    {
        repository = std::make_unique<TestRepository>();
        repository->change({"mkdir", "trunk"});
        const std::string root = repository->checkOut("wc", "trunk");
        writeFile(root + "/file", "one\n");
        writeFile(root + "/directory/child", "child\n");
        writeFile(root + "/directory/going", "child\n");
        files::create_symlink("file", root + "/link");
        mustRun({"svn", "add", "-q", root + "/file", root + "/directory", root + "/link"});
        mustRun({"svn", "propset", "-q", "svn:needs-lock", "*", root + "/directory/going"});
        mustRun({"svn", "commit", "-qm", "made", root});
        writeFile(root + "/file", "two\n");
        files::remove(root + "/link");
        files::create_symlink("directory", root + "/link");
        writeFile(root + "/directory/child", "changed\n");
        mustRun({"svn", "rm", "-q", "--force", root + "/directory/going"});
        mustRun({"svn", "mkdir", "-q", root + "/directory/coming"});
        mustRun({"svn", "propset", "-q", "svn:executable", "*", root + "/directory/child"});
        mustRun({"svn", "propset", "-q", "color", "red", root + "/file", root + "/directory"});
        mustRun({"svn", "commit", "-qm", "changed", root});
        mustRun({"svn", "copy", "-qm", "branch", repository->url("trunk"), repository->url("branch")});
        mustRun({"svn", "propset", "-q", "color", "blue", root + "/file", root + "/directory"});
        mustRun({"svn", "commit", "-qm", "changed again", root});
        mustRun({"svn", "update", "-q", "-r2", root});
    }

    ObstructedPlace fresh(const std::string& item)
    {
        const std::string root = freshCopy({".exported", ".one", ".base", ".patch", ".outside"});
        writeFile(root + ".outside/file", "outside\n");
        const std::string name = item == "directory" ? "directory/child" : item;
        writeFile(root + ".patch",
                  "Index: " + name + "\n--- " + name + "\n+++ " + name + "\n@@ -1 +1 @@\n-two\n+patched\n");
        client = std::make_shared<HSVNClient>(bundleOfLine(installedLine()), nullptr);
        return {*client, root, repository->url("trunk"), item};
    }

    static void expectClearWords(const ObstructedPlace& at, void (*call)(const ObstructedPlace&))
    {
        const PipeWatch watch{at.target()};
        std::string failure;
        try {
            call(at);
        } catch (const HSVNPlatformException& exception) {
            failure = exception.className() + ": " + exception.reason();
        }
        EXPECT_THAT(failure, Not(AnyOf(HasSubstr("malfunction"), HasSubstr("assertion"), HasSubstr("sqlite"))));
    }

    /// What links lead to, with texts and permissions.
    static std::set<std::string> outside(const ObstructedPlace& at)
    {
        std::set<std::string> items;
        for (const auto& entry : files::recursive_directory_iterator{at.root + ".outside"}) {
            items.insert(fmt::format("{} {:o} {}", entry.path().string(),
                                     static_cast<unsigned>(entry.status().permissions()),
                                     entry.is_directory() ? "" : readFile(entry.path())));
        }
        return items;
    }

    /// Nothing is written through a link, and no work is left in the working copy.
    static void expectWhole(const ObstructedPlace& at, const std::set<std::string>& outsideBefore)
    {
        EXPECT_EQ(outside(at), outsideBefore);
        CopiedWorkingCopyTest::expectWhole(at.root);
    }

    HSVNClientRef client;
};

TEST_F(Obstructions, AreToldOfInClearWords)
{
    for (const std::string item : {"file", "directory", "link"}) {
        for (const auto& [obstruction, obstruct] : obstructions) {
            const auto given = [&, make = obstruct] {
                ObstructedPlace at = fresh(item);
                files::remove_all(at.target());
                make(at.target(), at.root + ".outside");
                return at;
            };
            const auto what = std::string{obstruction} + " in the place of the " + item;
            const ObstructedPlace unchanged = given();
            const auto before = outside(unchanged);
            for (const auto& [verb, call] : readers) {
                SCOPED_TRACE(std::string{verb} + ": " + what);
                expectClearWords(unchanged, call);
            }
            expectWhole(unchanged, before);
            const auto expectRefusal = [&](const auto& writer) {
                SCOPED_TRACE(std::string{writer.first} + ": " + what);
                const ObstructedPlace at = given();
                expectClearWords(at, writer.second);
                expectWhole(at, before);
            };
            std::ranges::for_each(writers, expectRefusal);
            if (item == "directory" && std::ranges::count(obstructedParents, obstruction) > 0) {
                std::ranges::for_each(writersBelow, expectRefusal);
            }
        }
    }
}

TEST_F(Obstructions, ThatNothingIsWrittenThroughAreNoneOfUpdates)
{
    const ObstructedPlace at = fresh("directory");
    files::rename(at.target(), at.root + ".outside/moved");
    files::create_symlink(at.root + ".outside/moved", at.target());
    const auto before = outside(at);
    for (const std::string& target : {at.root, at.target(), at.child()}) {
        EXPECT_EQ(at.context.update(target, HSVNRevision::revisionWithNumber(2)).front(), 2U) << target;
    }
    expectWhole(at, before);
}

TEST_F(Obstructions, AreFoundBehindTheRootOfAnotherWorkingCopy)
{
    const ObstructedPlace at = fresh("directory");
    files::remove(at.child());
    mustRun({"svn", "checkout", "-q", "--depth", "empty", repository->url("branch"), at.child()});
    EXPECT_THROW(at.context.remove(at.target(), {.force = true}), HSVNException);
    CopiedWorkingCopyTest::expectWhole(at.root);
}

} // namespace
