#include "AlteredBundle.h"
#include "HSVNAddOptions.h"
#include "HSVNCallRecorder.h"
#include "HSVNCheckOutOptions.h"
#include "HSVNCommitItem.h"
#include "HSVNCommitOptions.h"
#include "HSVNCopyOptions.h"
#include "HSVNDeleteOptions.h"
#include "HSVNDirectory.h"
#include "HSVNNode.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNUpdateOptions.h"
#include "ReasonOf.h"
#include "SampleWorkingCopy.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <thread>

using testing::ElementsAre;

namespace {

HSVNPathRef localPath(const std::string& text) { return HSVNLocalPath::pathWithString(text); }

class WorkingCopyOperations : public WorkingCopyTest
{
  protected:
    HSVNRevisionNumber commit(const std::vector<HSVNPathRef>& paths) const
    {
        return HSVNNode::commitChangesToNodes(paths, HSVNCommitOptions::defaults(), client);
    }
    std::vector<HSVNRevisionNumber> update(const std::vector<HSVNPathRef>& paths, const HSVNRevisionRef& revision) const
    {
        return HSVNNode::updateNodes(paths, revision, HSVNUpdateOptions::defaults(), client);
    }
    const HSVNNotification& first() const { return *delegate->notifications.front(); }
    const HSVNNotification& last() const { return *delegate->notifications.back(); }
};

} // namespace

TEST_P(WorkingCopyOperations, AddTakesWhatItsOptionsTell)
{
    const auto options = HSVNAddOptions::defaults();
    writeFile(item("new/in.txt"), "");
    writeFile(item("new/ignored.o"), "");
    HSVNNode::add(at("new"), client);
    EXPECT_EQ(status(), "A       new\nA       new/in.txt\n");

    options->setMatchIgnorePatterns(false);
    HSVNNode::add(at("new"), options, client);
    EXPECT_EQ(status(), "A       new\nA       new/ignored.o\nA       new/in.txt\n") << "forced into a versioned folder";
    options->setForce(false);
    EXPECT_THROW(HSVNNode::add(at("new"), options, client), HSVNEntryExistsException);

    writeFile(item("flat/in.txt"), "");
    options->setRecursive(false);
    HSVNNode::add(at("flat"), options, client);
    EXPECT_TRUE(status().starts_with("A       flat\n?       flat/in.txt\n")) << status();
    EXPECT_TRUE(delegate->ownActions().empty());
}

TEST_P(WorkingCopyOperations, RevertRestoresAllItsPaths)
{
    const auto options = HSVNRevertOptions::defaults();
    writeFile(item("a.txt"), "changed\n");
    writeFile(item("b.txt"), "changed\n");
    HSVNNode::revertNodes({at("a.txt"), at("b.txt")}, options, client);
    EXPECT_EQ(status(), "");

    writeFile(item("a.txt"), "changed\n");
    options->setRecursive(false);
    HSVNNode::revertNodes({at("")}, options, client);
    EXPECT_EQ(readFile(item("a.txt")), "changed\n") << "only the folder itself was to be reverted";
    EXPECT_EQ(delegate->withAction(HSVNNotifyActionRevert).size(), 2U);
}

TEST_P(WorkingCopyOperations, AConflictIsReportedAndResolved)
{
    repository.put("trunk/a.txt", "theirs\n");
    writeFile(item("a.txt"), "mine\n");
    EXPECT_THAT(update({at("")}, HSVNRevision::HEAD()), ElementsAre(2));
    const auto updates = delegate->withAction(HSVNNotifyActionUpdateUpdate);
    ASSERT_FALSE(updates.empty());
    EXPECT_EQ(updates.front()->contentState(), 7) << "conflicted";
    EXPECT_EQ(updates.front()->path(), item("a.txt"));
    EXPECT_THROW(commit({at("")}), HSVNMergeConflictException);

    HSVNNode::resolveNodeAtPath(at("a.txt"), HSVNResolveOptions::defaults(), client);
    EXPECT_EQ(commit({at("")}), 3);
}

TEST_P(WorkingCopyOperations, UpdateOfOnePathNamesItInItsNotifications)
{
    repository.put("trunk/a.txt", "two\n");
    EXPECT_THAT(update({at("")}, HSVNRevision::HEAD()), ElementsAre(2));
    EXPECT_EQ(readFile(item("a.txt")), "two\n");
    EXPECT_THAT(delegate->ownActions(),
                ElementsAre("HSVNNotifyActionUpdateStarted", "HSVNNotifyActionUpdateSucceeded"));
    EXPECT_EQ(first().path(), root);
    EXPECT_EQ(last().path(), root);
    EXPECT_THAT(update({at("")}, HSVNRevision::revisionWithNumber(1)), ElementsAre(1));
    EXPECT_EQ(readFile(item("a.txt")), "a.txt\n");
}

TEST_P(WorkingCopyOperations, UpdateOfTwoPathsSendsItsNotificationsWithoutAPath)
{
    const std::string other = repository.checkOut("other");
    repository.put("trunk/b.txt", "two\n");
    EXPECT_THAT(update({localPath(other), at("b.txt")}, HSVNRevision::HEAD()), ElementsAre(2, 2));
    EXPECT_EQ(readFile(item("b.txt")), "two\n");
    EXPECT_THAT(delegate->ownActions(),
                ElementsAre("HSVNNotifyActionUpdateStarted", "HSVNNotifyActionUpdateSucceeded"));
    EXPECT_FALSE(first().path());
    EXPECT_FALSE(last().path());
    EXPECT_THAT(update({}, HSVNRevision::HEAD()), ElementsAre());
}

TEST_P(WorkingCopyOperations, UpdateToARevisionThatIsNotThereFails)
{
    EXPECT_THROW(update({at("")}, HSVNRevision::revisionWithNumber(99)), HSVNException);
    EXPECT_THAT(delegate->ownActions(), ElementsAre("HSVNNotifyActionUpdateStarted", "HSVNNotifyActionUpdateFailed"));
    EXPECT_FALSE(last().path());
    EXPECT_THROW(update({at("")}, HSVNRevision::MINE()), HSVNException);
}

TEST_P(WorkingCopyOperations, CommitReturnsTheNewRevisionOrNone)
{
    EXPECT_EQ(commit({}), HSVNInvalidRevision);
    EXPECT_TRUE(delegate->notifications.empty());

    EXPECT_EQ(commit({at("")}), HSVNInvalidRevision);
    EXPECT_THAT(delegate->ownActions(),
                ElementsAre("HSVNNotifyActionCommitStarted", "HSVNNotifyActionCommitSucceeded"));
    EXPECT_EQ(last().revision(), HSVNInvalidRevision);

    delegate->notifications.clear();
    writeFile(item("a.txt"), "two\n");
    EXPECT_EQ(commit({at("a.txt")}), 2);
    EXPECT_EQ(first().path(), item("a.txt"));
    EXPECT_EQ(last().path(), item("a.txt"));
    EXPECT_EQ(last().revision(), 2);
    EXPECT_EQ(delegate->withAction(HSVNNotifyActionCommitModified).at(0)->path(), item("a.txt"));
    EXPECT_EQ(repository.contents("trunk/a.txt"), "two\n");
    EXPECT_EQ(repository.logMessage(2), "a message");
    const auto& items = delegate->commitItems.back();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->actions(), HSVNCommitActionTextModified);
    EXPECT_EQ(items[0]->path()->string(), item("a.txt"));
}

TEST_P(WorkingCopyOperations, AFailedCommitSendsItsExceptionAndLeavesNoLock)
{
    repository.put("trunk/a.txt", "theirs\n");
    writeFile(item("a.txt"), "mine\n");
    EXPECT_THROW(commit({at("")}), HSVNTransactionOutOfDateException);
    ASSERT_THAT(delegate->ownActions(), ElementsAre("HSVNNotifyActionCommitStarted", "HSVNNotifyActionCommitFailed"));
    EXPECT_FALSE(last().path());
    EXPECT_THROW(last().error()->raise(), HSVNTransactionOutOfDateException);
    HSVNNode::revertNodes({at("a.txt")}, HSVNRevertOptions::defaults(), client);
    EXPECT_THAT(update({at("")}, HSVNRevision::HEAD()), ElementsAre(2));
}

TEST_P(WorkingCopyOperations, CheckoutAnswersTheNewFolderAtItsBaseRevision)
{
    repository.put("trunk/later.txt", "");
    const auto options = HSVNCheckOutOptions::defaults();
    options->setRevision(HSVNRevisionSpec::revisionWithNumber(1));
    const auto folder = HSVNDirectory::checkoutDirectoryAtURL(url("trunk"), outside("new"), options, client);
    EXPECT_EQ(folder->path()->string(), repository.beside("new"));
    EXPECT_EQ(folder->URL()->string(), repository.url("trunk"));
    EXPECT_EQ(folder->revision(), 1);
    EXPECT_TRUE(std::filesystem::exists(repository.beside("new/a.txt")));
    EXPECT_FALSE(std::filesystem::exists(repository.beside("new/later.txt")));
    ASSERT_THAT(delegate->ownActions(),
                ElementsAre("HSVNNotifyActionCheckOutStarted", "HSVNNotifyActionCheckOutSucceeded"));
    for (const auto* notification : {&first(), &last()}) {
        EXPECT_EQ(notification->path(), repository.beside("new"));
        EXPECT_EQ(notification->alternatePath()->string(), repository.url("trunk"));
    }
}

TEST_P(WorkingCopyOperations, AFailedCheckoutNamesBothPlacesAndTheError)
{
    const std::string reason = reasonOf<HSVNException>([&] {
        HSVNDirectory::checkoutDirectoryAtURL(url("nowhere"), outside("new"), HSVNCheckOutOptions::defaults(), client);
    });
    EXPECT_EQ(last().action(), HSVNNotifyActionCheckOutFailed);
    EXPECT_EQ(last().path(), repository.beside("new"));
    EXPECT_EQ(last().alternatePath()->string(), repository.url("nowhere"));
    EXPECT_EQ(last().error()->reason(), reason);
}

INSTANTIATE_TEST_SUITE_P(Lines, WorkingCopyOperations, everyLine(), lineName);

namespace {

/// What an option set does to a call: the function called on each line and its arguments, or the refusal.
struct Translation
{
    const char* name;
    std::function<void(const std::string& path, const HSVNContextRef&)> run;
    HSVNRecordedCall on1_4;
    const char* refusalOn1_4; ///< the reason of the exception on 1.4; null when it is not refused
    HSVNRecordedCall later;
};

HSVNUpdateOptionsRef updateOptions(HSVNDepth depth, bool sticky = false, bool externals = true,
                                   bool obstructions = false)
{
    const auto options = HSVNUpdateOptions::defaults();
    options->setDepth(depth);
    options->setDepthIsSticky(sticky);
    options->setProcessExternals(externals);
    options->setAllowUnversionedObstructions(obstructions);
    return options;
}

HSVNCheckOutOptionsRef checkOutOptions(HSVNDepth depth, bool externals = true, bool obstructions = false)
{
    const auto options = HSVNCheckOutOptions::defaults();
    options->setRevision(
        std::make_shared<HSVNRevisionSpec>(HSVNRevision::revisionWithNumber(3), HSVNRevision::revisionWithNumber(2)));
    options->setDepth(depth);
    options->setProcessExternals(externals);
    options->setAllowUnversionedObstructions(obstructions);
    return options;
}

HSVNCommitOptionsRef commitOptions(HSVNDepth depth, bool releaseLocks = true)
{
    const auto options = HSVNCommitOptions::defaults();
    options->setDepth(depth);
    options->setReleaseLocks(releaseLocks);
    return options;
}

auto updating(const HSVNUpdateOptionsRef& options)
{
    return [=](const std::string& path, const HSVNContextRef& context) {
        HSVNNode::updateNodes({localPath(path)}, HSVNRevision::HEAD(), options, context);
    };
}

auto committing(const HSVNCommitOptionsRef& options)
{
    return [=](const std::string& path, const HSVNContextRef& context) {
        HSVNNode::commitChangesToNodes({localPath(path)}, options, context);
    };
}

auto checkingOut(const HSVNCheckOutOptionsRef& options)
{
    return [=](const std::string& path, const HSVNContextRef& context) {
        const std::string source = mustRun({"svn", "info", "--show-item", "url", "--no-newline", path});
        // Subversion keeps the databases of folders open: none is checked out twice.
        const std::string target = path + "-new/" + std::to_string(options->depth());
        HSVNDirectory::checkoutDirectoryAtURL(HSVNURL::URLWithString(source), localPath(target), options, context);
    };
}

constexpr const char* badDepth = "Invalid depth";
constexpr const char* badCheckOutDepth =
    "Incompatible depth argument for 1.4 (HSVNDepthInfinity and HSVNDepthFiles supported)";

/// In the calls' arguments, PATH stands for the working copy, URL for what it is of.
std::vector<Translation> translations()
{
    const auto update2 = [](const char* recurse, const char* ignoreExternals) {
        return HSVNRecordedCall{"svn_client_update2", {"[PATH]", "HEAD", recurse, ignoreExternals}};
    };
    const auto update3 = [](const char* depth, const char* sticky, const char* ignoreExternals, const char* allow) {
        return HSVNRecordedCall{"svn_client_update3", {"[PATH]", "HEAD", depth, sticky, ignoreExternals, allow}};
    };
    const auto commit3 = [](const char* recurse, const char* keepLocks) {
        return HSVNRecordedCall{"svn_client_commit3", {"[PATH]", recurse, keepLocks}};
    };
    const auto commit4 = [](const char* depth, const char* keepLocks) {
        return HSVNRecordedCall{"svn_client_commit4", {"[PATH]", depth, keepLocks, "0", "null", "null"}};
    };
    const auto checkout2 = [](const std::string& number, const char* recurse, const char* ignoreExternals) {
        return HSVNRecordedCall{"svn_client_checkout2",
                                {"URL", "PATH-new/" + number, "2", "3", recurse, ignoreExternals}};
    };
    const auto checkout3 = [](const std::string& number, const char* depth, const char* ignoreExternals,
                              const char* allow) {
        return HSVNRecordedCall{"svn_client_checkout3",
                                {"URL", "PATH-new/" + number, "2", "3", depth, ignoreExternals, allow}};
    };
    return {
        {"UpdateInfinity", updating(updateOptions(HSVNDepthInfinity, true, false, true)), update2("1", "1"), nullptr,
         update3("infinity", "1", "1", "1")},
        {"UpdateUnknown", updating(updateOptions(HSVNDepthUnknown)), update2("1", "0"), nullptr,
         update3("unknown", "0", "0", "0")},
        {"UpdateFiles", updating(updateOptions(HSVNDepthFiles)), update2("0", "0"), nullptr,
         update3("files", "0", "0", "0")},
        {"UpdateImmediates",
         updating(updateOptions(HSVNDepthImmediates)),
         {},
         badDepth,
         update3("immediates", "0", "0", "0")},
        {"UpdateEmpty", updating(updateOptions(HSVNDepthEmpty)), {}, badDepth, update3("empty", "0", "0", "0")},
        {"UpdateExclude", updating(updateOptions(HSVNDepthExclude)), {}, badDepth, update3("exclude", "0", "0", "0")},
        {"CommitUnknown", committing(commitOptions(HSVNDepthUnknown)), commit3("1", "0"), nullptr,
         commit4("unknown", "0")},
        {"CommitInfinity", committing(commitOptions(HSVNDepthInfinity, false)), commit3("1", "1"), nullptr,
         commit4("infinity", "1")},
        {"CommitEmpty", committing(commitOptions(HSVNDepthEmpty)), commit3("0", "0"), nullptr, commit4("empty", "0")},
        {"CommitFiles", committing(commitOptions(HSVNDepthFiles)), {}, badDepth, commit4("files", "0")},
        {"CommitImmediates", committing(commitOptions(HSVNDepthImmediates)), {}, badDepth, commit4("immediates", "0")},
        {"CheckoutInfinity", checkingOut(checkOutOptions(HSVNDepthInfinity, false, true)), checkout2("3", "1", "1"),
         nullptr, checkout3("3", "infinity", "1", "1")},
        {"CheckoutFiles", checkingOut(checkOutOptions(HSVNDepthFiles)), checkout2("1", "0", "0"), nullptr,
         checkout3("1", "files", "0", "0")},
        {"CheckoutEmpty",
         checkingOut(checkOutOptions(HSVNDepthEmpty)),
         {},
         badCheckOutDepth,
         checkout3("0", "empty", "0", "0")},
        {"CheckoutImmediates",
         checkingOut(checkOutOptions(HSVNDepthImmediates)),
         {},
         badCheckOutDepth,
         checkout3("2", "immediates", "0", "0")},
    };
}

/// The calls that change something, with the places that differ from run to run named.
std::vector<HSVNRecordedCall> changingCalls(const HSVNCallRecorder& recorder, const std::string& path,
                                            const std::string& url)
{
    std::vector<HSVNRecordedCall> calls = recorder.calls();
    std::erase_if(calls, [](const auto& call) { return call.name == "svn_client_info"; });
    for (auto& call : calls) {
        for (auto& argument : call.arguments) {
            for (const auto& [text, name] : {std::pair{url, "URL"}, std::pair{path, "PATH"}}) {
                if (const auto position = argument.find(text); position != std::string::npos) {
                    argument.replace(position, text.size(), name);
                }
            }
        }
    }
    return calls;
}

using OlderLines = WorkingCopyOperations;

} // namespace

TEST_P(OlderLines, CallTheFunctionOfTheirLineWithTranslatedDepths)
{
    HSVNCallRecorder recorder{GetParam()};
    const bool is1_4 = line() == HSVNVersion::version1_4();
    for (const auto& translation : translations()) {
        SCOPED_TRACE(translation.name);
        writeFile(item("a.txt"), translation.name);
        recorder.clear();
        delegate->notifications.clear();
        const auto run = [&] { translation.run(root, client); };
        if (is1_4 && translation.refusalOn1_4) {
            // Checkout's refusal alone is of the library's own class.
            EXPECT_EQ(translation.refusalOn1_4 == badCheckOutDepth ? reasonOf<HSVNException>(run)
                                                                   : reasonOf<HSVNInvalidArgumentException>(run),
                      translation.refusalOn1_4);
            EXPECT_EQ(last().error()->name(), "NSInvalidArgumentException");
            EXPECT_THAT(delegate->ownActions(), ElementsAre(testing::EndsWith("Started"), testing::EndsWith("Failed")));
            EXPECT_TRUE(recorder.calls().empty());
        } else {
            run();
            const auto calls = changingCalls(recorder, root, repository.url("trunk"));
            const HSVNRecordedCall& expected = is1_4 ? translation.on1_4 : translation.later;
            ASSERT_EQ(calls.size(), 1U);
            EXPECT_EQ(calls[0].name, expected.name);
            EXPECT_EQ(calls[0].arguments, expected.arguments);
        }
    }
}

TEST_P(OlderLines, NegateFlagsWhereSubversionDoes)
{
    HSVNCallRecorder recorder{GetParam()};
    const auto add = HSVNAddOptions::defaults();
    const auto revert = HSVNRevertOptions::defaults();
    const auto resolve = HSVNResolveOptions::defaults();
    for (const bool flag : {true, false}) {
        const std::string text = flag ? "1" : "0";
        const std::string negated = flag ? "0" : "1";
        const std::string path = item(flag ? "new1" : "new2");
        writeFile(path, "");
        recorder.clear();
        add->setRecursive(flag);
        add->setForce(!flag);
        add->setMatchIgnorePatterns(flag);
        HSVNNode::add(localPath(path), add, client);
        revert->setRecursive(flag);
        HSVNNode::revertNodes({localPath(path), localPath(item("a.txt"))}, revert, client);
        resolve->setRecursive(flag);
        HSVNNode::resolveNodeAtPath(localPath(root), resolve, client);
        const std::vector<HSVNRecordedCall> expected{
            {"svn_client_add3", {path, text, negated, negated}},
            {"svn_client_revert", {"[" + path + ", " + item("a.txt") + "]", text}},
            {"svn_client_resolved", {root, text}},
        };
        EXPECT_EQ(recorder.calls(), expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Lines, OlderLines, recordedLines(), lineName);

namespace {

struct NewestLine : WorkingCopyOperations
{
    /// Calls that change the working copy at a path.
    std::vector<std::function<void()>> changesOf(const std::string& workingCopy)
    {
        const auto folder = localPath(workingCopy);
        const auto file = localPath(workingCopy + "/new.txt");
        return {
            [=, this] { update({folder}, HSVNRevision::HEAD()); },
            [=, this] { commit({folder}); },
            [=, this] { HSVNNode::add(file, client); },
            [=, this] { HSVNNode::revertNodes({folder}, HSVNRevertOptions::defaults(), client); },
            [=, this] { HSVNNode::deleteNodes({folder}, HSVNDeleteOptions::defaults(), client); },
            [=, this] {
                HSVNNode::copyNodeAtPath(file, localPath(workingCopy + "/copy.txt"), HSVNCopyOptions::defaults(),
                                         client);
            },
            [=, this] { HSVNDirectory::cleanUpWorkingCopyAtPath(folder, client); },
        };
    }
};

} // namespace

TEST_P(NewestLine, ReportsWorkingCopiesOfOlderFormats)
{
    for (const std::string sample : {"1.4", "1.6"}) {
        const SampleWorkingCopy old{sample};
        writeFile(old.path() + "/new.txt", "");
        for (const auto& change : changesOf(old.path())) {
            EXPECT_THROW(change(), HSVNUnsupportedWorkingCopyFormatException);
        }
    }
}

TEST_P(NewestLine, ReportsADatabaseThatAnotherProcessHoldsAsLocked)
{
    BackgroundCommand holder{{"python3", "-c",
                              "import sqlite3, sys, time\n"
                              "database = sqlite3.connect(sys.argv[1] + '/.svn/wc.db')\n"
                              "database.execute('begin exclusive')\n"
                              "open(sys.argv[2], 'w').close()\n"
                              "time.sleep(100)",
                              root, repository.beside("held")}};
    while (!std::filesystem::exists(repository.beside("held")) && holder.isRunning()) {
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    ASSERT_TRUE(holder.isRunning());
    EXPECT_THROW(changesOf(root).front()(), HSVNWorkingCopyLockedException); // once: Subversion waits for 10 s
}

INSTANTIATE_TEST_SUITE_P(Lines, NewestLine, testing::Values("1.14"), lineName);

TEST(WorkingCopyUpdate, ReportsAKindOfRevisionThatSubversionRefusesAsABadArgument)
{
    const auto bundle = std::make_shared<AlteredBundle>([](HSVNBundleEntryPoints& table) {
        table.client_update3 = [](auto**, const auto*, const auto*, auto, auto, auto, auto, auto*, auto*) {
            return AlteredBundle::original().error_create(SVN_ERR_CLIENT_BAD_REVISION, nullptr, "bad");
        };
    });
    const auto delegate = std::make_shared<RecordingDelegate>();
    const auto client = std::make_shared<HSVNClient>(bundle, delegate);
    client->setBundleVersion(HSVNVersion::version1_5());
    try {
        HSVNNode::updateNodes({localPath("/nowhere")}, HSVNRevision::BASE(), HSVNUpdateOptions::defaults(), client);
        FAIL() << "no exception";
    } catch (const HSVNInvalidArgumentException& exception) {
        EXPECT_EQ(exception.reason(), "Invalid revision");
        EXPECT_EQ(exception.name(), "NSInvalidArgumentException");
    }
    ASSERT_THAT(delegate->ownActions(), ElementsAre("HSVNNotifyActionUpdateStarted", "HSVNNotifyActionUpdateFailed"));
    EXPECT_EQ(delegate->notifications.back()->error()->reason(), "Invalid revision");
}

namespace {

/// What the altered update answers.
std::vector<svn_revnum_t> answeredRevisions;

svn_error_t* answerRevisions(apr_array_header_t** results, const apr_array_header_t*, const svn_opt_revision_t*,
                             svn_depth_t, svn_boolean_t, svn_boolean_t, svn_boolean_t, svn_client_ctx_t*,
                             apr_pool_t* pool)
{
    *results = AlteredBundle::original().apr_array_make(pool, 0, sizeof(svn_revnum_t));
    for (const svn_revnum_t revision : answeredRevisions) {
        *static_cast<svn_revnum_t*>(AlteredBundle::original().apr_array_push(*results)) = revision;
    }
    return nullptr;
}

} // namespace

TEST(WorkingCopyUpdate, ChecksTheRevisionsThatSubversionAnswers)
{
    const auto client = std::make_shared<HSVNClient>(
        std::make_shared<AlteredBundle>([](auto& table) { table.client_update3 = answerRevisions; }), nullptr);
    client->setBundleVersion(HSVNVersion::version1_6());
    const auto update = [&] {
        return HSVNNode::updateNodes({localPath("/a"), localPath("/b")}, HSVNRevision::HEAD(),
                                     HSVNUpdateOptions::defaults(), client);
    };
    answeredRevisions = {0x7fffffff, SVN_INVALID_REVNUM};
    EXPECT_THAT(update(), ElementsAre(0x7fffffff, HSVNInvalidRevision));
    answeredRevisions = {1, 0x80000000};
    EXPECT_THROW(update(), HSVNInvalidArgumentException) << "a number beyond 32 bits";
    answeredRevisions = {7};
    EXPECT_EQ(reasonOf([&] { update(); }), "Expected resultant revision array with length of 2, found 1");
}

TEST(WorkingCopyPreconditions, AreTestedInOrderBeforeAnythingElse)
{
    const HSVNContextRef context = std::make_shared<HSVNContext>();
    const HSVNPathRef path = localPath("/nowhere");
    const auto url = HSVNURL::URLWithString("file:///nowhere");
    const auto unknownDepth = HSVNCheckOutOptions::defaults();
    unknownDepth->setDepth(HSVNDepthUnknown);
    const auto excluded = HSVNCheckOutOptions::defaults();
    excluded->setDepth(HSVNDepthExclude);
    const auto add = HSVNAddOptions::defaults();
    const auto resolve = HSVNResolveOptions::defaults();
    const auto update = HSVNUpdateOptions::defaults();
    const auto checkOut = HSVNCheckOutOptions::defaults();
    const std::vector<std::pair<const char*, std::function<void()>>> cases{
        {"path != nil", [&] { HSVNNode::add(nullptr, nullptr, nullptr); }},
        {"path != nil", [&] { HSVNNode::add(nullptr, nullptr); }},
        {"options != nil", [&] { HSVNNode::add(path, nullptr, nullptr); }},
        {"context != nil", [&] { HSVNNode::add(path, add, nullptr); }},
        {"options != nil", [&] { HSVNNode::revertNodes({path}, nullptr, nullptr); }},
        {"context != nil", [&] { HSVNNode::revertNodes({path}, HSVNRevertOptions::defaults(), nullptr); }},
        {"path != nil", [&] { HSVNNode::resolveNodeAtPath(nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { HSVNNode::resolveNodeAtPath(path, nullptr, nullptr); }},
        {"context != nil", [&] { HSVNNode::resolveNodeAtPath(path, resolve, nullptr); }},
        {"revision != nil", [&] { HSVNNode::updateNodes({path}, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { HSVNNode::updateNodes({path}, HSVNRevision::HEAD(), nullptr, nullptr); }},
        {"context != nil", [&] { HSVNNode::updateNodes({path}, HSVNRevision::HEAD(), update, nullptr); }},
        {"options != nil", [&] { HSVNNode::commitChangesToNodes({}, nullptr, nullptr); }},
        {"url != nil", [&] { HSVNDirectory::checkoutDirectoryAtURL(nullptr, nullptr, nullptr, nullptr); }},
        {"path != nil", [&] { HSVNDirectory::checkoutDirectoryAtURL(url, nullptr, nullptr, nullptr); }},
        {"options != nil", [&] { HSVNDirectory::checkoutDirectoryAtURL(url, path, nullptr, nullptr); }},
        {"[options depth] != HSVNDepthUnknown",
         [&] { HSVNDirectory::checkoutDirectoryAtURL(url, path, unknownDepth, nullptr); }},
        {"[options depth] != HSVNDepthExclude",
         [&] { HSVNDirectory::checkoutDirectoryAtURL(url, path, excluded, nullptr); }},
        {"context != nil", [&] { HSVNDirectory::checkoutDirectoryAtURL(url, path, checkOut, nullptr); }},
        {"path != nil", [&] { HSVNNode::revertNodes({nullptr}, HSVNRevertOptions::defaults(), context); }},
    };
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const auto& [condition, call] = cases[index];
        try {
            call();
            ADD_FAILURE() << index << ": " << condition;
        } catch (const HSVNAssertionException& exception) {
            EXPECT_EQ(exception.reason(), std::string{"Invalid parameter not satisfying: "} + condition) << index;
        }
    }
    EXPECT_THROW(HSVNNode::commitChangesToNodes({path}, HSVNCommitOptions::defaults(), nullptr),
                 HSVNInvalidArgumentException);
}
