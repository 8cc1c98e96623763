#include "AlteredBundle.h"
#include "HSVNCallRecorder.h"
#include "HSVNCommitItem.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNDirectory.h"
#include "HSVNItemsSetAside.h"
#include "HSVNMoveHandler.h"
#include "HSVNMoveOptions.h"
#include "HSVNNode.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "Internal/Pool.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <sys/stat.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

namespace files = std::filesystem;

HSVNDeleteOptionsRef deleteOptions(bool force)
{
    auto options = HSVNDeleteOptions::defaults();
    options->setForce(force);
    return options;
}

class DeleteMoveCopy : public WorkingCopyTest
{
  protected:
    void remove(const std::vector<HSVNPathRef>& paths, bool force = false) const
    {
        HSVNNode::deleteNodes(paths, deleteOptions(force), client);
    }
    HSVNRevisionNumber move(const HSVNPathRef& source, const HSVNPathRef& destination) const
    {
        return HSVNNode::moveNodeAtPath(source, destination, HSVNMoveOptions::defaults(), client);
    }
    HSVNRevisionNumber copy(const HSVNPathRef& source, const HSVNPathRef& destination) const
    {
        return HSVNNode::copyNodeAtPath(source, destination, HSVNCopyOptions::defaults(), client);
    }
    HSVNRevisionNumber transfer(bool isCopy, const HSVNPathRef& source, const HSVNPathRef& destination) const
    {
        return isCopy ? copy(source, destination) : move(source, destination);
    }
    /// The paths of the delegate's notifications of deletions.
    std::vector<std::string> deletionsHeard() const
    {
        std::vector<std::string> paths;
        for (const auto& notification : delegate->withAction(HSVNNotifyActionDelete)) {
            paths.push_back(notification->path().value_or(""));
        }
        return paths;
    }

    /// One unversioned item of each place where there can be one.
    std::vector<HSVNPathRef> makeUnversioned() const
    {
        writeFile(item("new.txt"), "");
        writeFile(item("plain/in.txt"), "");
        writeFile(item("tree/deep/in.txt"), "");
        writeFile(repository.beside("elsewhere/out.txt"), "");
        files::create_symlink("nowhere", item("link"));
        return {at("new.txt"), at("plain/in.txt"), at("tree"), outside("elsewhere/out.txt"), at("link")};
    }
};

bool isOnDisk(const HSVNPathRef& path) { return files::exists(files::symlink_status(path->string())); }

using RecordedDeleteMoveCopy = DeleteMoveCopy;

} // namespace

TEST_P(DeleteMoveCopy, AnUnversionedItemIsDeletedOnlyWithForce)
{
    for (const auto& path : makeUnversioned()) {
        SCOPED_TRACE(path->string());
        EXPECT_EQ(reasonOf<HSVNItemModifiedException>([&] { remove({path}); }),
                  "Cannot delete '" + path->string() + "' because it is unversioned and force was not specified");
        EXPECT_TRUE(isOnDisk(path));
        delegate->notifications.clear();
        remove({path}, true);
        EXPECT_FALSE(isOnDisk(path));
        EXPECT_THAT(deletionsHeard(), ElementsAre(path->string()));
    }
}

TEST_P(DeleteMoveCopy, AFailureLeavesWhatWasDeletedBeforeAndNothingAfter)
{
    writeFile(item("new.txt"), "");
    EXPECT_THROW(remove({at("a.txt"), at("new.txt"), at("b.txt")}), HSVNItemModifiedException);
    EXPECT_EQ(status(), "D       a.txt\n?       new.txt\n");
}

TEST_P(DeleteMoveCopy, ModifiedAndMissingItemsAreDeletedOnlyWithForce)
{
    writeFile(item("a.txt"), "changed\n");
    EXPECT_THROW(remove({at("a.txt")}), HSVNItemModifiedException);
    EXPECT_EQ(readFile(item("a.txt")), "changed\n");
    remove({at("a.txt")}, true);
    files::remove(item("b.txt"));
    remove({at("b.txt")}, true);
    remove({at("never-there.txt")}, true);
    EXPECT_EQ(status(), "D       a.txt\nD       b.txt\n");
}

TEST_P(DeleteMoveCopy, WhatCannotBeRemovedIsReported)
{
    const auto path = HSVNLocalPath::pathWithString("/proc/self/status");
    EXPECT_EQ(reasonOf<HSVNException>([&] { remove({path}, true); }),
              "Cannot delete '/proc/self/status'. The file may be in use");
}

TEST_P(DeleteMoveCopy, AReasonNamesTheItemThatIsInTheWay)
{
    writeFile(item("dir/new.txt"), "");
    writeFile(item("plain/in.txt"), "");
    const auto missing = [](const HSVNPathRef& path) { return "'" + path->string() + "' does not exist"; };
    EXPECT_EQ(reasonOf<HSVNUnversionedResourceException>([&] { remove({at("dir")}); }),
              "'" + item("dir/new.txt") + "' is not under version control");
    files::remove(item("dir/new.txt"));
    writeFile(item("dir/c.txt"), "changed\n");
    EXPECT_THAT(reasonOf<HSVNItemModifiedException>([&] { remove({at("dir")}); }), HasSubstr(item("dir/c.txt")));
    for (const bool force : {false, true}) {
        EXPECT_EQ(reasonOf<HSVNException>([&] { remove({outside("none")}, force); }), missing(outside("none")));
    }
    EXPECT_EQ(reasonOf<HSVNException>([&] { remove({at("none")}); }), missing(at("none")));
    for (const bool isCopy : {false, true}) {
        for (const auto& place : {at("plain/it"), outside("it")}) {
            EXPECT_EQ(reasonOf<HSVNException>([&] { transfer(isCopy, at("none"), place); }), missing(at("none")));
        }
    }
    EXPECT_EQ(status(), "M       dir/c.txt\n?       plain\n");
}

TEST_P(DeleteMoveCopy, AnOldRevisionIsWhatTheItemWasThenOrAnError)
{
    writeFile(item("later.txt"), "later\n");
    mustRun({"svn", "add", "--quiet", item("later.txt")});
    mustRun({"svn", "move", "--quiet", item("a.txt"), item("moved.txt")});
    commitAll();
    mustRun({"svn", "update", "--quiet", root});
    writeFile(item("moved.txt"), "today\n");
    writeFile(item("plain.txt"), "");
    auto options = HSVNCopyOptions::defaults();
    options->setRevision(HSVNRevision::revisionWithNumber(1));
    for (const std::string source : {"later.txt", "plain.txt"}) {
        for (const auto& place : {at("old.txt"), outside("old.txt")}) {
            const auto reason =
                reasonOf<HSVNException>([&] { HSVNNode::copyNodeAtPath(at(source), place, options, client); });
            EXPECT_EQ(runCommand({"svn", "copy", "-r1", item(source), item("old.txt")}).errors.substr(14),
                      reason + "\n");
            EXPECT_FALSE(isOnDisk(place));
        }
    }
    HSVNNode::copyNodeAtPath(at("moved.txt"), at("old.txt"), options, client);
    EXPECT_EQ(readFile(item("old.txt")), "a.txt\n");
}

TEST_P(DeleteMoveCopy, WhatIsInTheWayOfAScheduledDeletionGoesToo)
{
    mustRun({"svn", "delete", "--quiet", item("b.txt")});
    writeFile(item("b.txt"), "in the way\n");
    HSVNNode::deleteNodeAtPath(at("b.txt"), at("a.txt"), client);
    EXPECT_FALSE(exists("b.txt"));
    EXPECT_EQ(status(), "D       b.txt\n");
}

TEST_P(DeleteMoveCopy, URLsAreDeletedInOneCommit)
{
    const int before = repository.youngest();
    remove({url("trunk/a.txt"), url("trunk/dir")});
    EXPECT_EQ(repository.youngest(), before + 1);
    EXPECT_EQ(repository.logMessage(before + 1), "a message");
    ASSERT_EQ(delegate->commitItems.size(), 1U);
    EXPECT_EQ(delegate->commitItems[0].size(), 2U);

    delegate->commits = false;
    remove({url("trunk/b.txt")});
    EXPECT_EQ(repository.youngest(), before + 1) << "the message was refused";
    delegate->commits = true;
    EXPECT_THROW(remove({url("trunk/gone")}), HSVNNoSuchEntryException);
    EXPECT_THROW(remove({url("trunk/b.txt"), at("b.txt")}), HSVNException);
    EXPECT_EQ(reasonOf<HSVNException>([&] {
                  remove({at("b.txt"), url("trunk/b.txt")});
              }),
              "'" + url("trunk/b.txt")->string() + "' is not a local path");
    EXPECT_EQ(repository.youngest(), before + 1);
}

TEST_P(DeleteMoveCopy, MovesAndCopiesInARepositoryAreCommits)
{
    int expected = repository.youngest();
    EXPECT_EQ(move(url("trunk/a.txt"), url("trunk/moved.txt")), ++expected);
    EXPECT_EQ(copy(url("trunk"), url("branch")), ++expected);
    EXPECT_EQ(copy(at("b.txt"), url("branch/copied.txt")), ++expected);
    EXPECT_EQ(copy(url("branch/moved.txt"), at("fetched.txt")), HSVNInvalidRevision);
    EXPECT_EQ(repository.contents("branch/moved.txt"), "a.txt\n");
    EXPECT_EQ(repository.contents("branch/copied.txt"), "b.txt\n");
    EXPECT_EQ(status(), "A  +    fetched.txt\n");

    delegate->commits = false;
    EXPECT_EQ(reasonOf<HSVNOperationCancelledException>([&] { move(url("trunk"), url("gone")); }), "Move was canceled");
    EXPECT_EQ(copy(url("trunk"), url("twin")), HSVNInvalidRevision);
    EXPECT_EQ(repository.youngest(), expected);
    EXPECT_THROW(move(at("b.txt"), url("b.txt")), HSVNUnsupportedFeatureException);
    EXPECT_TRUE(exists("b.txt"));
}

TEST_P(DeleteMoveCopy, AnExistingDestinationIsReported)
{
    writeFile(item("new.txt"), "");
    for (const bool isCopy : {false, true}) {
        EXPECT_THROW(transfer(isCopy, at("a.txt"), at("b.txt")), HSVNEntryExistsException);
        EXPECT_THROW(transfer(isCopy, at("a.txt"), at("new.txt")), HSVNEntryExistsException);
        EXPECT_THROW(transfer(isCopy, at("new.txt"), at("a.txt")), HSVNEntryExistsException);
        EXPECT_THROW(transfer(isCopy, url("trunk/a.txt"), url("trunk/b.txt")), HSVNEntryExistsException);
    }
    EXPECT_EQ(status(), "?       new.txt\n");
}

TEST_P(DeleteMoveCopy, GoToUnversionedFoldersOnDisk)
{
    writeFile(item("plain/here.txt"), "");
    writeFile(repository.beside("elsewhere/here.txt"), "");
    writeFile(item("new.txt"), "new\n");
    writeFile(item("fresh/in.txt"), "in\n");
    files::create_symlink("a.txt", item("fresh/link"));
    writeFile(item("b.txt"), "changed\n");
    files::last_write_time(item("new.txt"), files::file_time_type{} - std::chrono::hours{5});
    const auto time = files::last_write_time(item("new.txt"));
    for (const auto& place : {at("plain"), outside("elsewhere")}) {
        for (const auto& [source, contents] : std::vector<std::pair<std::string, std::string>>{
                 {"a.txt", "a.txt\n"}, {"b.txt", "changed\n"}, {"dir", ""}, {"new.txt", "new\n"}, {"fresh", ""}})
        {
            SCOPED_TRACE(place->string() + ", " + source);
            const auto destination = place->pathByAddingComponent("to-" + source);
            EXPECT_EQ(copy(at(source), destination), HSVNInvalidRevision);
            EXPECT_TRUE(exists(source));
            if (!contents.empty()) {
                EXPECT_EQ(readFile(destination->string()), contents);
            }
        }
        EXPECT_EQ(readFile(place->string() + "/to-dir/c.txt"), "dir/c.txt\n");
        EXPECT_EQ(readFile(place->string() + "/to-fresh/in.txt"), "in\n");
        EXPECT_TRUE(files::is_symlink(place->string() + "/to-fresh/link"));
        EXPECT_EQ(files::last_write_time(place->string() + "/to-new.txt"), time);
        EXPECT_THROW(copy(at("new.txt"), place->pathByAddingComponent("here.txt")), HSVNEntryExistsException);
    }
    EXPECT_EQ(status(), "M       b.txt\n?       fresh\n?       new.txt\n?       plain\n") << "copies change nothing";

    int number = 0;
    for (const std::string source : {"a.txt", "b.txt", "dir", "new.txt", "fresh"}) {
        SCOPED_TRACE(source);
        const auto place = ++number % 2 == 0 ? at("plain") : outside("elsewhere");
        EXPECT_EQ(move(at(source), place->pathByAddingComponent(source)), HSVNInvalidRevision);
        EXPECT_FALSE(exists(source));
        EXPECT_TRUE(isOnDisk(place->pathByAddingComponent(source)));
    }
    EXPECT_EQ(status(), "D       a.txt\nD       b.txt\nD       dir\n?       plain\n");
    EXPECT_EQ(readFile(item("plain/b.txt")), "changed\n");
}

TEST_P(DeleteMoveCopy, ATransferOnDiskThatFailsLeavesTheSource)
{
    const std::string ends = " to unversioned directory at '";
    for (const auto& [source, destination] : {std::pair{"new", "missing/folder/new"},
                                              {"new", "new/inside"},
                                              {"a.txt", "b.txt/below"},
                                              {"never-there", "plain/it"}})
    {
        SCOPED_TRACE(destination);
        writeFile(item("new/in.txt"), "");
        writeFile(item("plain/in.txt"), "");
        for (const bool isCopy : {false, true}) {
            const auto from = at(source);
            const auto to = at(destination);
            EXPECT_THAT(reasonOf<HSVNException>([&] { transfer(isCopy, from, to); }),
                        testing::AnyOf(std::string{"Failed to "} + (isCopy ? "copy" : "move") + " item at '" +
                                           item(source) + "'" + ends + item(destination) + "'",
                                       testing::Not(HasSubstr(ends))));
            EXPECT_FALSE(exists(destination));
            EXPECT_EQ(status(), "?       new\n?       plain\n");
        }
    }
}

TEST_P(DeleteMoveCopy, AMoveWithoutItsLocksIsMadeOnDisk)
{
    client->setBundle(std::make_shared<AlteredBundle>([](HSVNBundleEntryPoints& table) {
        table.client_move4 = [](svn_commit_info_t**, const char*, const char*, svn_boolean_t, svn_client_ctx_t*,
                                apr_pool_t*) { return HSVN_SUBVERSION_ERROR(SVN_ERR_WC_NOT_LOCKED, nullptr); };
    }));
    EXPECT_EQ(move(at("a.txt"), outside("moved.txt")), HSVNInvalidRevision);
    EXPECT_EQ(readFile(repository.beside("moved.txt")), "a.txt\n");
    EXPECT_EQ(status(), "D       a.txt\n");
}

TEST_P(DeleteMoveCopy, AMoveOnDiskWhoseSourceStaysNamesBothPlaces)
{
    const std::string source = "/proc/self/limits";
    EXPECT_EQ(reasonOf<HSVNException>([&] { move(HSVNLocalPath::pathWithString(source), outside("limits")); }),
              "Copied item at '" + source + "' to unversioned directory at '" + repository.beside("limits") +
                  "', but cannot delete it: Cannot delete '" + source + "'. The file may be in use");
    EXPECT_TRUE(isOnDisk(outside("limits")));
}

TEST_P(DeleteMoveCopy, ACopyToAnUnversionedFolderIsPlainContent)
{
    writeFile(item("plain/in.txt"), "");
    const std::string nested = item("plain/nested");
    mustRun({"svn", "checkout", "--quiet", repository.url("trunk/dir"), nested});
    copy(at("plain"), outside("copied"));
    EXPECT_TRUE(files::exists(repository.beside("copied/nested/c.txt")));
    EXPECT_FALSE(files::exists(repository.beside("copied/nested/.svn")));
    EXPECT_TRUE(files::exists(nested + "/.svn")) << "of the source";
}

INSTANTIATE_TEST_SUITE_P(Lines, DeleteMoveCopy, everyLineAndAccess(), lineName);

TEST_P(RecordedDeleteMoveCopy, MakeTheCallsOfTheirLine)
{
    writeFile(item("plain/in.txt"), "");
    HSVNCallRecorder recorder{GetParam()};
    HSVNNode::deleteNodes({}, deleteOptions(false), client);
    EXPECT_THAT(recorder.calls(), IsEmpty());

    remove({at("a.txt"), at("b.txt")}, true);
    remove({url("trunk/a.txt"), url("trunk/b.txt")});
    auto copyOptions = HSVNCopyOptions::defaults();
    copyOptions->setRevision(HSVNRevision::revisionWithNumber(1));
    HSVNNode::copyNodeAtPath(url("trunk"), url("branch"), copyOptions, client);
    auto moveOptions = HSVNMoveOptions::defaults();
    moveOptions->setForce(true);
    HSVNNode::moveNodeAtPath(at("dir/c.txt"), at("plain/c.txt"), moveOptions, client);
    const auto call = [](const char* name, std::vector<std::string> arguments) {
        return HSVNRecordedCall{name, std::move(arguments)};
    };
    EXPECT_THAT(
        recorder.calls(),
        ElementsAre(call("svn_client_delete2", {"[" + item("a.txt") + "]", "1"}),
                    call("svn_client_delete2", {"[" + item("b.txt") + "]", "1"}),
                    call("svn_client_delete2",
                         {"[" + repository.url("trunk/a.txt") + ", " + repository.url("trunk/b.txt") + "]", "0"}),
                    call("svn_client_copy3", {repository.url("trunk"), "1", repository.url("branch")}),
                    call("svn_client_move4", {item("dir/c.txt"), item("plain/c.txt"), "1"}),
                    call("svn_client_cleanup", {item("dir")}),
                    call("svn_client_delete2", {"[" + item("dir/c.txt") + "]", "1"})));
}

INSTANTIATE_TEST_SUITE_P(Lines, RecordedDeleteMoveCopy, recordedLines(), lineName);

namespace {

/// A handler that keeps what it is asked and answers as it is set up to.
struct Answers
{
    std::vector<std::string> asked;
    std::function<bool()> goesOn = [] { return true; };
    std::function<std::int32_t()> overwrites = [] { return HSVNOverwriteCancel; };
    void* lastInfo = nullptr;

    bool willMoveNodeAtPath(const HSVNPathRef& source, const HSVNPathRef& destination, bool isCopy,
                            const HSVNContextRef&, void* contextInfo)
    {
        asked.push_back((isCopy ? "copy " : "move ") + source->lastComponent() + " " + destination->lastComponent());
        lastInfo = contextInfo;
        return goesOn();
    }
    std::int32_t promptToOverwriteNodeAtPath(const HSVNPathRef& destination, bool isCopy, const HSVNContextRef&,
                                             void* contextInfo)
    {
        asked.push_back((isCopy ? "copy over " : "move over ") + destination->lastComponent());
        lastInfo = contextInfo;
        return overwrites();
    }
};

struct OnlyMoves
{
    int asked = 0;
    bool willMoveNodeAtPath(const HSVNPathRef&, const HSVNPathRef&, bool, const HSVNContextRef&, void*)
    {
        return ++asked > 0;
    }
};

class MoveBatch : public DeleteMoveCopy
{
  protected:
    HSVNRevisionNumber batch(bool isCopy, const std::vector<std::pair<HSVNPathRef, HSVNPathRef>>& pairs,
                             const HSVNMoveHandlerRef& by) const
    {
        std::vector<HSVNPathRef> sources;
        std::vector<HSVNPathRef> destinations;
        for (const auto& [source, destination] : pairs) {
            sources.push_back(source);
            destinations.push_back(destination);
        }
        HSVNOptionsRef options = HSVNMoveOptions::defaults();
        if (isCopy) {
            options = HSVNCopyOptions::defaults();
        }
        return HSVNNode::moveNodes(sources, destinations, isCopy, options, by, info, client);
    }
    HSVNRevisionNumber batch(bool isCopy, const std::vector<std::pair<HSVNPathRef, HSVNPathRef>>& pairs) const
    {
        return batch(isCopy, pairs, handler);
    }

    std::shared_ptr<HSVNMoveHandlerFor<Answers>> handler = std::make_shared<HSVNMoveHandlerFor<Answers>>();
    int place = 0;
    void* info = &place;
};

} // namespace

TEST_P(MoveBatch, MovesPairByPairAndAsksBeforeEach)
{
    EXPECT_EQ(batch(false, {{at("a.txt"), at("A")}, {at("b.txt"), at("B")}}), HSVNInvalidRevision);
    EXPECT_THAT(handler->asked, ElementsAre("move a.txt A", "move b.txt B"));
    EXPECT_EQ(handler->lastInfo, info);
    EXPECT_TRUE(exists("A") && exists("B") && !exists("a.txt"));
    EXPECT_EQ(batch(true, {{at("dir"), at("twin")}}, nullptr), HSVNInvalidRevision);
    EXPECT_TRUE(exists("twin/c.txt") && exists("dir/c.txt"));
    EXPECT_THAT(delegate->commitItems, IsEmpty());
    EXPECT_EQ(HSVNNode::moveNodes({}, {}, true, nullptr, nullptr, nullptr, client), HSVNInvalidRevision);
}

TEST_P(MoveBatch, ANoStopsItWithTheEarlierItemsMoved)
{
    handler->goesOn = [this] { return handler->asked.size() < 2; };
    EXPECT_EQ(reasonOf<HSVNOperationCancelledException>([&] {
                  batch(false, {{at("a.txt"), at("A")}, {at("b.txt"), at("B")}, {at("dir"), at("D")}});
              }),
              "Move was canceled by user");
    EXPECT_THAT(handler->asked, ElementsAre("move a.txt A", "move b.txt B"));
    EXPECT_TRUE(exists("A") && exists("b.txt") && exists("dir"));
}

TEST_P(MoveBatch, ABatchIntoTheRepositoryAsksForOneMessage)
{
    const int before = repository.youngest();
    EXPECT_EQ(batch(false, {{url("trunk/a.txt"), url("trunk/A")}, {url("trunk/b.txt"), url("trunk/B")}}), before + 2);
    ASSERT_EQ(delegate->commitItems.size(), 1U);
    std::vector<std::pair<std::string, HSVNCommitActions>> items;
    for (const auto& item : delegate->commitItems[0]) {
        items.emplace_back(item->URL()->string(), item->actions());
    }
    EXPECT_THAT(items, ElementsAre(std::pair(repository.url("trunk/A"), HSVNCommitActionAdd),
                                   std::pair(repository.url("trunk/a.txt"), HSVNCommitActionDelete),
                                   std::pair(repository.url("trunk/B"), HSVNCommitActionAdd),
                                   std::pair(repository.url("trunk/b.txt"), HSVNCommitActionDelete)));
    EXPECT_EQ(repository.logMessage(before + 1), "a message");
    EXPECT_EQ(repository.logMessage(before + 2), "a message");

    delegate->commits = false;
    EXPECT_EQ(reasonOf<HSVNOperationCancelledException>([&] {
                  batch(true, {{at("dir"), url("trunk/twin")}});
              }),
              "Move was canceled by user");
    EXPECT_EQ(repository.youngest(), before + 2);
}

TEST_P(MoveBatch, ASkippedItemLeavesTheRevisionOfTheLastOne)
{
    handler->overwrites = [] { return HSVNOverwriteSkip; };
    const auto revision = batch(true, {{url("trunk/a.txt"), url("trunk/A")}, {url("trunk/a.txt"), url("trunk/b.txt")}});
    EXPECT_EQ(revision, repository.youngest());
    EXPECT_EQ(repository.contents("trunk/A"), "a.txt\n");
}

TEST_P(MoveBatch, AClientWithoutADelegateKeepsTheOneWithTheMessage)
{
    client->setDelegate(nullptr);
    batch(true, {{url("trunk/dir"), url("trunk/twin")}}, nullptr);
    EXPECT_NE(client->delegate(), nullptr);
    EXPECT_EQ(repository.logMessage(repository.youngest()), "");
    client->setDelegate(delegate);
}

TEST_P(MoveBatch, TheHandlersAnswerDecidesAboutAnExistingDestination)
{
    const std::vector<std::pair<HSVNPathRef, HSVNPathRef>> pairs{
        {at("a.txt"), at("first")}, {at("a.txt"), at("b.txt")}, {at("a.txt"), at("last")}};
    const auto clear = [this] { remove({at("first"), at("last")}, true); };

    handler->overwrites = [] { return HSVNOverwriteSkip; };
    EXPECT_EQ(batch(true, pairs), HSVNInvalidRevision);
    EXPECT_EQ(status(), "A  +    first\nA  +    last\n");
    clear();

    handler->overwrites = [] { return HSVNOverwriteCancel; };
    EXPECT_EQ(reasonOf<HSVNOperationCancelledException>([&] { batch(true, pairs); }), "Operation canceled by user");
    EXPECT_EQ(status(), "A  +    first\n");
    clear();

    for (const std::int32_t answer : {3, -1}) {
        handler->overwrites = [answer] { return answer; };
        try {
            batch(true, pairs);
            ADD_FAILURE() << "no exception";
        } catch (const HSVNPlatformException& exception) {
            EXPECT_EQ(exception.name(), "NSInternalInconsistencyException");
            EXPECT_EQ(exception.reason(), "Unrecognised overwrite result");
        }
        EXPECT_EQ(status(), "A  +    first\n");
        clear();
    }

    handler->asked.clear();
    handler->overwrites = [] { return HSVNOverwriteReplace; };
    EXPECT_EQ(batch(true, pairs), HSVNInvalidRevision);
    EXPECT_EQ(status(), "R  +    b.txt\nA  +    first\nA  +    last\n");
    EXPECT_EQ(readFile(item("b.txt")), "a.txt\n");
    EXPECT_THAT(handler->asked, ElementsAre("copy a.txt first", "copy a.txt b.txt", "copy over b.txt",
                                            "copy a.txt b.txt", "copy a.txt last"));

    EXPECT_THROW(batch(true, pairs, std::make_shared<HSVNMoveHandlerFor<OnlyMoves>>()), HSVNEntryExistsException);
    EXPECT_THROW(batch(true, pairs, nullptr), HSVNEntryExistsException);
}

namespace {

std::string folderFor(const std::string& source, const std::string& destination)
{
    return source + " to " + destination;
}

std::string joined(const std::string& folder, const std::string& name) { return folder + '/' + name; }

} // namespace

TEST_P(MoveBatch, ReplacesEveryKindOfDestination)
{
    const std::vector<std::string> sources{"a.txt", "new.txt", "dir", "fresh"};
    const std::vector<std::string> destinations{"over.txt", "plain.txt", "folder", "plain", "gone.txt", "added.txt"};
    writeFile(item("given/dir/d.txt"), "dir/d.txt");
    for (const std::string name : {"a.txt", "over.txt", "folder/in.txt", "gone.txt"}) {
        writeFile(item("given/" + name), name);
    }
    mustRun({"svn", "add", "--quiet", item("given")});
    commitAll();
    std::vector<std::string> copies;
    std::vector<std::string> additions{"svn", "add", "--quiet"};
    for (const auto& source : sources) {
        for (const auto& destination : destinations) {
            const std::string name = folderFor(source, destination);
            copies.insert(copies.end(), {"cp", "HEAD", "trunk/given", "trunk/" + name});
            additions.push_back(item(name + "/added.txt"));
        }
    }
    repository.change(copies);
    mustRun({"svn", "update", "--quiet", root});
    for (const auto& addition : additions) {
        if (addition.front() == '/') {
            writeFile(addition, "");
        }
    }
    mustRun(additions);

    handler->overwrites = [] { return HSVNOverwriteReplace; };
    bool isCopy = false;
    for (const auto& source : sources) {
        for (const auto& destination : destinations) {
            isCopy = !isCopy;
            const std::string folder = folderFor(source, destination);
            SCOPED_TRACE(folder + (isCopy ? ", copied" : ", moved"));
            for (const std::string name : {"new.txt", "fresh/f.txt", "plain.txt", "plain/in.txt"}) {
                writeFile(item(joined(folder, name)), name);
            }
            files::remove(item(folder + "/gone.txt"));
            batch(isCopy, {{at(joined(folder, source)), at(joined(folder, destination))}});
            EXPECT_EQ(exists(joined(folder, source)), isCopy);
            const std::string child = source == "dir" ? "/d.txt" : source == "fresh" ? "/f.txt" : "";
            EXPECT_EQ(readFile(item(joined(folder, destination) + child)), source + child);
            EXPECT_FALSE(exists(joined(folder, destination) + "/in.txt"));
        }
        isCopy = !isCopy;
    }
}

namespace {

/// What a handler may throw: outside every hierarchy that the library knows.
struct HandlersOwn
{
};

/// Says whether to go on.
struct Canceller : Recorder
{
    bool goesOn = true;
    bool queryContinue(HSVNContext&) { return goesOn; }
};

} // namespace

TEST_P(MoveBatch, AReplacedDestinationComesBackWhenTheItemDoesNotArrive)
{
    for (const std::string name : {"gone.txt", "kept.txt", "changed.txt"}) {
        writeFile(item("dir/" + name), name);
    }
    mustRun({"svn", "add", "--quiet", item("dir/gone.txt"), item("dir/kept.txt"), item("dir/changed.txt")});
    mustRun({"svn", "propset", "--quiet", "old", "value", item("b.txt")});
    commitAll();
    mustRun({"svn", "propset", "--quiet", "new", "value", item("b.txt"), item("dir"), item("dir/kept.txt")});
    mustRun({"svn", "propdel", "--quiet", "old", item("b.txt")});
    mustRun({"svn", "delete", "--quiet", item("dir/gone.txt")});
    writeFile(item("b.txt"), "changed\n");
    writeFile(item("dir/changed.txt"), "changed\n");
    writeFile(item("dir/added/in.txt"), "added\n");
    writeFile(item("dir/added.txt"), "added\n");
    mustRun({"svn", "add", "--quiet", item("dir/added"), item("dir/added.txt")});
    mustRun({"svn", "propset", "--quiet", "new", "value", item("dir/added.txt")});
    writeFile(item("dir/new.txt"), "new\n");
    writeFile(item("plain/in.txt"), "in\n");
    writeFile(item("plain.txt"), "plain\n");
    const auto everything = [this] {
        std::string text = status() + mustRun({"svn", "proplist", "--verbose", "--recursive", root});
        for (const std::string name : {"b.txt", "dir/changed.txt", "dir/kept.txt", "dir/added/in.txt", "dir/added.txt",
                                       "dir/new.txt", "plain/in.txt", "plain.txt"})
        {
            text += readFile(item(name));
        }
        return text;
    };
    const std::string before = everything();
    const auto canceller = std::make_shared<HSVNClientDelegateFor<Canceller>>();
    client->setDelegate(canceller);
    const std::vector<std::function<bool()>> obstacles{
        [] { return false; },
        []() -> bool { throw HandlersOwn{}; },
        [&] { return !(canceller->goesOn = false); },
    };
    for (const std::string destination : {"b.txt", "dir", "plain", "plain.txt"}) {
        for (const bool isCopy : {false, true}) {
            for (std::size_t number = 0; number < obstacles.size(); ++number) {
                SCOPED_TRACE(destination + ", obstacle " + std::to_string(number));
                handler->asked.clear();
                canceller->goesOn = true;
                bool isReplacing = false;
                handler->overwrites = [&] {
                    isReplacing = true;
                    return HSVNOverwriteReplace;
                };
                handler->goesOn = [&] { return !isReplacing || obstacles[number](); };
                try {
                    batch(isCopy, {{at("a.txt"), at(destination)}});
                    ADD_FAILURE() << "no exception";
                } catch (const HSVNOperationCancelledException&) {
                    EXPECT_NE(number, 1U);
                } catch (const HandlersOwn&) {
                    EXPECT_EQ(number, 1U);
                }
                EXPECT_EQ(handler->asked.size(), 3U);
                EXPECT_EQ(everything(), before);
            }
        }
    }
    client->setDelegate(delegate);
}

TEST_P(MoveBatch, WhatIsReplacedIsSetAsideWithoutBeingCopied)
{
    const auto number = [](const std::string& path) {
        struct stat attributes
        {
        };
        return ::lstat(path.c_str(), &attributes) == 0 ? attributes.st_ino : 0;
    };
    writeFile(item("plain/in.txt"), "");
    for (const std::string destination : {"b.txt", "dir", "plain"}) {
        const auto before = number(item(destination));
        ino_t aside = 0;
        handler->overwrites = [] { return HSVNOverwriteReplace; };
        handler->goesOn = [&] {
            for (const auto& folder : HSVNFindItemsSetAside(root)) {
                aside = number(folder + "/" + destination);
            }
            return aside == 0;
        };
        EXPECT_THROW(batch(true, {{at("a.txt"), at(destination)}}), HSVNOperationCancelledException);
        EXPECT_EQ(aside, before) << destination;
        EXPECT_EQ(number(item(destination)), before) << destination;
    }
    EXPECT_EQ(status(), "?       plain\n");
}

TEST_P(MoveBatch, ACleanUpNamesWhatAnEndedProgramHadSetAside)
{
    writeFile(item("dir/.hsvn-aB3xyz/b.txt"), "the only one\n");
    writeFile(item("dir/.hsvn-aB3xyz/.hsvn-inside/b.txt"), "");
    writeFile(item(".hsvn-aB3xyz"), "no folder");
    writeFile(item(".hsvn-other/b.txt"), "no such name");
    const auto folder = item("dir/.hsvn-aB3xyz");
    EXPECT_THAT(HSVNFindItemsSetAside(root), ElementsAre(folder));
    for (const auto& cleanUp :
         std::vector<std::function<void()>>{[&] { HSVNDirectory::cleanUpWorkingCopyAtPath(at(""), client); },
                                            [&] { std::make_shared<HSVNClient>()->cleanUp(root); }})
    {
        testing::internal::CaptureStderr();
        cleanUp();
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("'" + folder + "' holds what was set aside"));
    }
    EXPECT_EQ(readFile(folder + "/b.txt"), "the only one\n");
    for (const auto* const left : {"dir/.hsvn-aB3xyz", ".hsvn-aB3xyz", ".hsvn-other"}) {
        files::remove_all(item(left));
    }
}

TEST_P(MoveBatch, AReplacedDestinationThatCannotComeBackIsLogged)
{
    writeFile(item("plain.txt"), "plain\n");
    std::string kept;
    handler->overwrites = [] { return HSVNOverwriteReplace; };
    handler->goesOn = [&] {
        for (const auto& entry : files::directory_iterator{root}) {
            if (entry.path().filename().string().starts_with(".hsvn-")) {
                kept = entry.path();
                files::remove(entry.path() / "plain.txt");
            }
        }
        return kept.empty();
    };
    testing::internal::CaptureStderr();
    const auto reason = reasonOf<HSVNOperationCancelledException>([&] {
        batch(true, {{at("a.txt"), at("plain.txt")}});
    });
    EXPECT_EQ(reason,
              "Move was canceled by user. What was at '" + item("plain.txt") + "' is kept at '" + kept + "/plain.txt'");
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("in full: Cannot put '" + item("plain.txt") + "' back from '" + kept + "': No such file"));
    EXPECT_TRUE(files::remove(kept)) << "what is left is kept";
}

TEST_P(MoveBatch, ADestinationInTheRepositoryIsReplacedOrComesBack)
{
    handler->overwrites = [] { return HSVNOverwriteReplace; };
    const int before = repository.youngest();
    EXPECT_EQ(batch(true, {{at("a.txt"), url("trunk/b.txt")}}), before + 2);
    EXPECT_EQ(repository.contents("trunk/b.txt"), "a.txt\n");
    EXPECT_EQ(delegate->commitItems.size(), 1U);

    handler->goesOn = [this] { return handler->asked.back() != "copy b.txt dir" || handler->asked.size() < 6; };
    EXPECT_THROW(batch(true, {{at("b.txt"), url("trunk/dir")}}), HSVNOperationCancelledException);
    EXPECT_EQ(repository.contents("trunk/dir/c.txt"), "dir/c.txt\n");
    EXPECT_THROW(batch(true, {{url("trunk/a.txt"), url("trunk/b.txt")}}), HSVNAssertionException)
        << "only local items replace";
    EXPECT_EQ(repository.contents("trunk/b.txt"), "a.txt\n");
}

TEST_P(MoveBatch, NothingIsClearedForAnItemThatCannotCome)
{
    handler->overwrites = [] { return HSVNOverwriteReplace; };
    EXPECT_THROW(batch(false, {{at("dir/c.txt"), at("dir")}}), HSVNInvalidArgumentException);
    writeFile(item("new.txt"), "");
    handler->overwrites = [this] {
        files::remove(item("new.txt"));
        return HSVNOverwriteReplace;
    };
    EXPECT_THROW(batch(false, {{at("new.txt"), at("b.txt")}}), HSVNNoSuchEntryException);
    EXPECT_EQ(status(), "");
}

TEST_P(MoveBatch, TheDelegateIsBackWhateverTheHandlerThrows)
{
    handler->goesOn = []() -> bool { throw HandlersOwn{}; };
    EXPECT_THROW(batch(true, {{url("trunk/a.txt"), url("trunk/A")}}), HandlersOwn);
    handler->goesOn = [] { return true; };
    EXPECT_THROW(batch(true, {{url("trunk/a.txt"), url("trunk/A")}, {url("trunk/none"), url("trunk/B")}}),
                 HSVNException);
    EXPECT_EQ(repository.contents("trunk/A"), "a.txt\n") << "items before the failure stay";
}

// Single moves and copies are tested on every line over svnserve: what a batch adds to them is the same on all.
INSTANTIATE_TEST_SUITE_P(Lines, MoveBatch, testing::Values("1.4", "1.5", "1.6", "1.14", "1.14 svnserve"), lineName);
