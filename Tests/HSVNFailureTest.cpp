#include "HSVNAddOptions.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNCommitOptions.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNDirectory.h"
#include "HSVNExportOptions.h"
#include "HSVNImportOptions.h"
#include "HSVNLockOptions.h"
#include "HSVNMergeOptions.h"
#include "HSVNMoveOptions.h"
#include "HSVNNode.h"
#include "HSVNProperties.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNUnlockOptions.h"
#include "HSVNUpdateOptions.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <thread>

// What fails or is interrupted leaves a working copy that can be worked on, and what was done before stays.

namespace {

namespace files = std::filesystem;

/// An exception that the library does not know.
struct ApplicationsFailure
{
};

/// Lets an operation go on for a number of questions, then stops it in one of two ways.
struct Countdown : Recorder
{
    int left = 0;
    bool throws = false;
    bool countsNotifications = false;
    int pauses = 0; // before answers that stop

    void notify(HSVNContext&, const HSVNNotificationRef&)
    {
        if (countsNotifications && left-- <= 0) {
            throw ApplicationsFailure{};
        }
    }

    bool queryContinue(HSVNContext&)
    {
        if (countsNotifications || left-- > 0) {
            return true;
        }
        if (throws) {
            throw ApplicationsFailure{};
        }
        if (pauses-- > 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds{400});
        }
        return false;
    }
};

class Failure : public WorkingCopyTest
{
  protected:
    using Step = std::function<void()>;

    /// Runs an operation again and again, stopped ever later, until it comes to its end.
    void stopEverywhere(
        const std::string& name, const Step& prepare, const Step& run, const Step& then = [] {})
    {
        stopEverywhere(name, prepare, run, then, false);
        stopEverywhere(name + ", by notifications", prepare, run, then, true);
    }

    void stopEverywhere(const std::string& name, const Step& prepare, const Step& run, const Step& then,
                        bool atNotifications)
    {
        SCOPED_TRACE(name);
        bool throws = atNotifications;
        for (int left = 0; left < 4096; left = left * 2 + 1) {
            prepare();
            const auto countdown = std::make_shared<HSVNClientDelegateFor<Countdown>>();
            countdown->left = left;
            countdown->throws = throws;
            countdown->countsNotifications = atNotifications;
            client->setDelegate(countdown);
            bool wasStopped = true;
            try {
                run();
                wasStopped = false;
            } catch (const HSVNOperationCancelledException&) {
                EXPECT_FALSE(throws);
            } catch (const ApplicationsFailure&) {
                EXPECT_TRUE(throws);
            }
            EXPECT_EQ(client->delegate(), countdown);
            client->setDelegate(delegate);
            EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException);
            then();
            expectUsable();
            if (!wasStopped) {
                EXPECT_TRUE(left > 0 || atNotifications) << "never asked whether to go on";
                return;
            }
            throws = atNotifications || !throws;
        }
        ADD_FAILURE() << "never came to an end";
    }

    /// The working copy is not locked, and can be brought back to its start.
    void expectUsable() const
    {
        EXPECT_FALSE(isLocked()) << status();
        reset();
        EXPECT_EQ(status(), "") << "locks and changes are gone";
    }

    void reset() const
    {
        mustRun({"svn", "revert", "--quiet", "--recursive", "--remove-added", root});
        mustRun({"svn", "cleanup", "--quiet", "--remove-unversioned", root});
        mustRun({"svn", "update", "--quiet", "--accept", "theirs-full", root});
        files::remove_all(repository.beside("out"));
    }
};

} // namespace

TEST_P(Failure, AnOperationStoppedAnywhereLeavesAUsableWorkingCopy)
{
    writeFile(repository.beside("tree/in.txt"), "in\n");
    writeFile(repository.beside("tree/sub/in.txt"), "in\n");
    for (const std::string name : {"a.txt", "b.txt", "dir/c.txt"}) {
        repository.put("trunk/" + name, "second\n");
    }
    reset();
    int number = 0;
    const auto fresh = [&number](const std::string& name) { return name + std::to_string(++number); };
    const auto revision = [](HSVNRevisionNumber to) { return HSVNRevision::revisionWithNumber(to); };
    const auto modify = [this, &fresh] {
        for (const std::string name : {"a.txt", "b.txt", "dir/c.txt"}) {
            writeFile(item(name), fresh("changed "));
        }
    };
    const auto nothing = [] {};

    stopEverywhere("update", nothing,
                   [&] { HSVNNode::updateNodes({at("")}, revision(1), HSVNUpdateOptions::defaults(), client); });
    stopEverywhere("commit", modify,
                   [&] { HSVNNode::commitChangesToNodes({at("")}, HSVNCommitOptions::defaults(), client); });
    stopEverywhere("update of items", nothing, [&] { client->update(root, revision(1)); });
    stopEverywhere("commit of items", modify, [&] { client->commit(root); });
    // Into a folder that was removed, though Subversion keeps the databases of working copies open.
    stopEverywhere("checkout", nothing, [&] {
        HSVNDirectory::checkoutDirectoryAtURL(url("trunk"), outside("out"), HSVNCheckOutOptions::defaults(), client);
        HSVNNode::updateNodes({outside("out")}, revision(1), HSVNUpdateOptions::defaults(), client);
    });
    stopEverywhere(
        "add", [&] { files::copy(repository.beside("tree"), item("new"), files::copy_options::recursive); },
        [&] { HSVNNode::add(at("new"), client); });
    stopEverywhere("revert", modify, [&] { HSVNNode::revertNodes({at("")}, HSVNRevertOptions::defaults(), client); });
    stopEverywhere("delete", nothing, [&] {
        HSVNNode::deleteNodes({at("a.txt"), at("dir"), at("b.txt")}, HSVNDeleteOptions::defaults(), client);
    });
    stopEverywhere("move", nothing,
                   [&] { HSVNNode::moveNodeAtPath(at("dir"), at("moved"), HSVNMoveOptions::defaults(), client); });
    stopEverywhere("copy from the repository", nothing, [&] {
        HSVNNode::copyNodeAtPath(url("trunk/dir"), at("copied"), HSVNCopyOptions::defaults(), client);
    });
    stopEverywhere("copy to the repository", nothing, [&] {
        HSVNNode::copyNodeAtPath(at("dir"), url(fresh("branch")), HSVNCopyOptions::defaults(), client);
    });
    stopEverywhere("batch", nothing, [&] {
        HSVNNode::moveNodes({at("a.txt"), at("b.txt")}, {at("dir/A"), at("dir/B")}, false, HSVNMoveOptions::defaults(),
                            nullptr, nullptr, client);
    });
    stopEverywhere("batch to the repository", nothing, [&] {
        HSVNNode::moveNodes({at("a.txt"), at("dir")}, {url(fresh("A")), url(fresh("B"))}, true,
                            HSVNCopyOptions::defaults(), nullptr, nullptr, client);
    });
    stopEverywhere("import", nothing, [&] {
        HSVNNode::importNodeAtPath(outside("tree"), url(fresh("tree")), HSVNImportOptions::defaults(), client);
    });
    for (const HSVNPathRef& source : {HSVNPathRef{url("trunk")}, at("")}) {
        stopEverywhere("export", nothing, [&] {
            HSVNNode::exportNodeAtPath(source, outside("out"), HSVNExportOptions::defaults(), client);
        });
    }
    stopEverywhere("merge", modify, [&] {
        HSVNNode::mergeNodeAtPath(url("trunk"), revision(4), url("trunk"), revision(1), at(""),
                                  HSVNMergeOptions::defaults(), client);
    });
    stopEverywhere("status", nothing, [&] { HSVNDirectory::workingCopyWithStatusAtPath(at(""), client); });
    // One that is stopped leaves what the next one finishes.
    stopEverywhere(
        "clean up", nothing, [&] { HSVNDirectory::cleanUpWorkingCopyAtPath(at(""), client); },
        [&] {
            mustRun({"svn", "cleanup", root});
        });
}

TEST_P(Failure, AStopWaitsForTheQueueHoweverBusyTheMachineIs)
{
    for (const std::string name : {"a.txt", "b.txt", "dir/c.txt"}) {
        repository.put("trunk/" + name, "second\n");
    }
    for (const int left : {3, 5, 7}) {
        reset();
        const auto countdown = std::make_shared<HSVNClientDelegateFor<Countdown>>();
        countdown->left = left;
        countdown->pauses = 2;
        client->setDelegate(countdown);
        EXPECT_THROW(
            HSVNNode::updateNodes({at("")}, HSVNRevision::revisionWithNumber(1), HSVNUpdateOptions::defaults(), client),
            HSVNOperationCancelledException)
            << left;
        client->setDelegate(delegate);
        expectUsable();
    }
}

TEST_P(Failure, ACheckOutGoesWhereAnEndedOneLeftAnAreaWithoutValue)
{
    const std::vector<std::pair<std::map<std::string, std::string>, bool>> areas{
        {{{"", ""}}, true},
        {{{"pristine/", ""}, {"tmp/", ""}}, true},
        {{{"pristine/", ""}, {"tmp/", ""}, {"wc.db", ""}}, true},
        {{{"wc.db", ""}, {"wc.db-journal", std::string(512, '\0')}}, true},
        {{{"wc.db", ""}, {"entries", "12\n"}, {"format", "12\n"}}, true},
        {{{"lock", ""}, {"text-base/", ""}, {"tmp/prop-base/", ""}}, true},
        {{{"wc.db", "no database, but who knows"}}, false},
        {{{"wc.db-journal", "of a database that is gone"}}, false},
        {{{"wc.db", ""}, {"pristine/00/00ff.svn-base", "somebody's text"}}, false},
        {{{"entries", "10\n\ndir\n3\nfile:///somewhere\n"}}, false},
        {{{"notes.txt", "what does this do here"}}, false},
    };
    const auto out = repository.beside("out");
    const auto area = out + "/.svn/";
    HSVNClientRef fresh = client;
    const auto run = std::vector<std::function<void()>>{
        [&] {
            HSVNDirectory::checkoutDirectoryAtURL(url("trunk"), outside("out"), HSVNCheckOutOptions::defaults(), fresh);
        },
        [&] { fresh->checkout(url("trunk"), out); }};
    for (const auto& [content, isWithoutValue] : areas) {
        for (const auto& checkOut : run) {
            SCOPED_TRACE(content.rbegin()->first + (isWithoutValue ? ", without value" : ", of value"));
            fresh = std::make_shared<HSVNClient>(bundleOfLine(line()), delegate);
            for (const auto& [name, bytes] : content) {
                files::create_directories((area + name).substr(0, (area + name).rfind('/')));
                if (!name.empty() && name.back() != '/') {
                    writeFile(area + name, bytes);
                }
            }
            if (isWithoutValue) {
                EXPECT_NO_THROW(checkOut());
                EXPECT_EQ(mustRun({"svn", "status", out}), "");
                EXPECT_EQ(readFile(out + "/a.txt"), "a.txt\n");
            } else {
                try {
                    checkOut();                  // which may work, or not
                } catch (const HSVNException&) { // NOLINT(bugprone-empty-catch)
                }
                for (const auto& [name, bytes] : content) {
                    EXPECT_TRUE(bytes.empty() || readFile(area + name) == bytes) << name;
                }
            }
            files::remove_all(out);
        }
    }
    HSVNDirectory::checkoutDirectoryAtURL(url("trunk"), outside("out"), HSVNCheckOutOptions::defaults(), client);
    writeFile(out + "/a.txt", "changed\n");
    run.front()();
    EXPECT_EQ(mustRun({"svn", "status", out}), "M       " + out + "/a.txt\n") << "of a whole working copy";
}

TEST_P(Failure, AnInterruptedBatchLeavesFinishedItemsDoneAndTheRestUntouched)
{
    struct Interrupter : Recorder
    {
        std::string at;
        void notify(HSVNContext&, const HSVNNotificationRef& notification)
        {
            if (notification->path() == at) {
                throw ApplicationsFailure{};
            }
        }
    };
    const auto interrupter = std::make_shared<HSVNClientDelegateFor<Interrupter>>();
    client->setDelegate(interrupter);
    interrupter->at = item("b.txt");
    EXPECT_THROW(HSVNNode::deleteNodes({at("a.txt"), at("b.txt"), at("dir")}, HSVNDeleteOptions::defaults(), client),
                 ApplicationsFailure);
    EXPECT_FALSE(exists("a.txt"));
    EXPECT_TRUE(exists("dir/c.txt"));
    client->setDelegate(delegate);
    expectUsable();

    EXPECT_THROW(HSVNNode::moveNodes({at("a.txt"), at("none"), at("b.txt")}, {at("A"), at("N"), at("B")}, false,
                                     HSVNMoveOptions::defaults(), nullptr, nullptr, client),
                 HSVNException);
    EXPECT_TRUE(exists("A") && !exists("a.txt") && !exists("N") && exists("b.txt"));
    expectUsable();

    const int before = repository.youngest();
    EXPECT_THROW(HSVNNode::moveNodes({url("trunk/a.txt"), url("trunk/none"), url("trunk/b.txt")},
                                     {url("trunk/A"), url("trunk/N"), url("trunk/B")}, false,
                                     HSVNMoveOptions::defaults(), nullptr, nullptr, client),
                 HSVNException);
    EXPECT_EQ(repository.youngest(), before + 1);
    EXPECT_EQ(delegate->commitItems.back().size(), 6U);
}

namespace {

/// Names that Subversion can have in a repository.
std::vector<std::string> hardNames()
{
    std::string umlauts;
    while (umlauts.size() < 254) {
        umlauts += "\xC3\xBC";
    }
    return {"with blank",
            " leading",
            "trailing ",
            "at@sign",
            "at@",
            "@",
            "name@1",
            "100%",
            "%41",
            "%zz",
            "hash#mark",
            "what?",
            "-dash",
            "--force",
            "semi;colon",
            "quo'te\"s",
            "back\\slash",
            "star*[a]",
            "~",
            "~home",
            "a:b",
            "scheme:",
            "...",
            ".hidden",
            "&amp;",
            "composed caf\xC3\xA9",
            "composed cafe\xCC\x81",
            "\xE6\x97\xA5\xE6\x9C\xAC",
            "\xF0\x9F\x98\x80",
            std::string(255, 'x'),
            umlauts};
}

} // namespace

TEST_P(Failure, HardNamesWork)
{
    const auto folder = at("work");
    std::vector<HSVNPathRef> paths;
    std::vector<HSVNPathRef> plain;
    std::vector<HSVNPathRef> urls;
    std::vector<HSVNPathRef> plainURLs;
    for (const auto& name : hardNames()) {
        const std::string number = std::to_string(paths.size());
        writeFile(item("work/" + name), name);
        paths.push_back(folder->pathByAddingComponent(name));
        plain.push_back(folder->pathByAddingComponent(number));
        urls.push_back(url("trunk/work")->pathByNormalizingAndAddingComponent(name));
        plainURLs.push_back(url("trunk/work/" + number));
    }
    const auto commit = [&] { return HSVNNode::commitChangesToNodes({folder}, HSVNCommitOptions::defaults(), client); };
    const auto update = [&] {
        return HSVNNode::updateNodes({folder}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), client);
    };
    const auto move = [&](const std::vector<HSVNPathRef>& sources, const std::vector<HSVNPathRef>& destinations) {
        HSVNNode::moveNodes(sources, destinations, false, HSVNMoveOptions::defaults(), nullptr, nullptr, client);
    };
    auto adding = HSVNAddOptions::defaults();
    adding->setMatchIgnorePatterns(false);
    HSVNNode::add(folder, adding, client);
    ASSERT_GT(commit(), 0);
    for (std::size_t index = 0; index < paths.size(); ++index) {
        HSVNNode::setProperty("a", "value", paths[index], client);
        EXPECT_EQ(HSVNNode::propertyWithName("a", paths[index], HSVNRevisionSpec::UNSPECIFIED(), client), "value");
        EXPECT_EQ(HSVNNode::URLForNodeAtPath(paths[index], client)->string(), urls[index]->string());
        HSVNNode::exportNodeAtPath(urls[index], outside("out"), HSVNExportOptions::defaults(), client);
        EXPECT_EQ(readFile(repository.beside("out")), hardNames()[index]);
        files::remove(repository.beside("out"));
        HSVNNode::copyNodeAtPath(paths[index], outside("out"), HSVNCopyOptions::defaults(), client);
        files::remove(repository.beside("out"));
    }
    ASSERT_GT(HSVNNode::commitChangesToNodes(paths, HSVNCommitOptions::defaults(), client), 0);
    EXPECT_EQ(HSVNNode::updateNodes(paths, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), client).size(),
              paths.size());
    if (!isServed(GetParam())) { // nobody there to own a lock
        HSVNNode::lockNodes(paths, "why", HSVNLockOptions::defaults(), client);
        HSVNNode::unlockNodes(paths, HSVNUnlockOptions::defaults(), client);
    }
    move(paths, plain);
    ASSERT_GT(commit(), 0);
    move(plainURLs, urls);
    update();
    for (const auto& path : paths) {
        EXPECT_EQ(readFile(path->string()), path->lastComponent());
    }
    HSVNNode::deleteNodes(urls, HSVNDeleteOptions::defaults(), client);
    update();
    EXPECT_TRUE(files::is_empty(folder->string()));
}

TEST_P(Failure, ControlCharactersInANameAreReportedAndCanBeDeleted)
{
    for (const std::string name : {"tab\tbed", "new\nline", "return\r", "bell\x07", "escape\x1b", "delete\x7f"}) {
        SCOPED_TRACE(name);
        writeFile(item(name), "");
        EXPECT_NE(reasonOf<HSVNException>([&] { HSVNNode::add(at(name), client); }), "(nothing was thrown)");
        const auto there = url("trunk")->pathByNormalizingAndAddingComponent(name);
        EXPECT_THROW(HSVNNode::importNodeAtPath(at(name), std::static_pointer_cast<const HSVNURL>(there),
                                                HSVNImportOptions::defaults(), client),
                     HSVNException);
        EXPECT_THROW(HSVNNode::moveNodeAtPath(url("trunk/a.txt"), there, HSVNMoveOptions::defaults(), client),
                     HSVNException);
        auto options = HSVNDeleteOptions::defaults();
        options->setForce(true);
        HSVNNode::deleteNodes({at(name)}, options, client);
        EXPECT_EQ(status(), "");
    }
}

TEST_P(Failure, PathsThatCannotBeAreReported)
{
    std::string deep = item("a.txt");
    while (deep.size() < 5000) {
        deep += '/' + std::string(200, 'd');
    }
    std::string deepURL = repository.url("trunk") + deep;
    for (const std::string& text : {deep, item(std::string(256, 'x')), item("bad \xFF\xFE utf-8")}) {
        SCOPED_TRACE(text.substr(root.size(), 20));
        const auto forced = HSVNDeleteOptions::defaults();
        forced->setForce(true);
        const auto path = [&] { return HSVNLocalPath::pathWithString(text); };
        using Node = HSVNNode;
        const std::vector<std::function<void()>> calls{
            [&] { Node::add(path(), client); },
            [&] { Node::commitChangesToNodes({path()}, HSVNCommitOptions::defaults(), client); },
            [&] {
                Node::updateNodes({path(), nullptr}, HSVNRevision::HEAD(), HSVNUpdateOptions::defaults(), client);
            },
            [&] { Node::deleteNodes({path()}, HSVNDeleteOptions::defaults(), client); },
            [&] { Node::moveNodeAtPath(at("a.txt"), path(), HSVNMoveOptions::defaults(), client); },
            [&] { Node::moveNodeAtPath(path(), at("there"), HSVNMoveOptions::defaults(), client); },
            [&] { Node::copyNodeAtPath(at("a.txt"), path(), HSVNCopyOptions::defaults(), client); },
            [&] { Node::copyNodeAtPath(path(), at("there"), HSVNCopyOptions::defaults(), client); },
            [&] { Node::importNodeAtPath(path(), url("x"), HSVNImportOptions::defaults(), client); },
            [&] { Node::exportNodeAtPath(path(), outside("out"), HSVNExportOptions::defaults(), client); },
            [&] { Node::exportNodeAtPath(at("a.txt"), path(), HSVNExportOptions::defaults(), client); },
            [&] { Node::lockNodes({path()}, {}, HSVNLockOptions::defaults(), client); },
            [&] { Node::setProperty("a", "b", path(), client); },
            [&] { Node::deleteNodeAtPath(path(), at("a.txt"), client); },
            [&] { Node::nodeAtPath(path(), HSVNRevisionSpec::BASE(), client); },
            [&] {
                HSVNDirectory::checkoutDirectoryAtURL(url("trunk"), path(), HSVNCheckOutOptions::defaults(), client);
            },
        };
        for (std::size_t index = 0; index < calls.size(); ++index) {
            EXPECT_NE(reasonOf(calls[index]), "(nothing was thrown)") << index;
            EXPECT_EQ(status(), "") << index;
        }
    }
    EXPECT_THROW(
        HSVNNode::copyNodeAtPath(at("a.txt"), HSVNURL::URLWithString(deepURL), HSVNCopyOptions::defaults(), client),
        HSVNException);
    EXPECT_TRUE(exists("a.txt"));
}

INSTANTIATE_TEST_SUITE_P(Lines, Failure, testing::Values("1.14", "1.14 svnserve"), lineName);
