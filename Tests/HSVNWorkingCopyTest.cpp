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

HSVNPathRef checkedOutPath(const std::string& text) { return HSVNLocalPath::pathWithString(text); }

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
    EXPECT_THAT(update({checkedOutPath(other), at("b.txt")}, HSVNRevision::HEAD()), ElementsAre(2, 2));
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

/// How the lines are told of a depth: a flag on 1.4, null where that has none for it, and a word later.
struct Translation
{
    char operation; ///< 'U'pdate, 'C'ommit or check-'O'ut
    HSVNDepth depth;
    const char* recurse;
    const char* word;
};

constexpr Translation translations[]{
    {'U', HSVNDepthInfinity, "1", "infinity"},
    {'U', HSVNDepthUnknown, "1", "unknown"},
    {'U', HSVNDepthFiles, "0", "files"},
    {'U', HSVNDepthImmediates, nullptr, "immediates"},
    {'U', HSVNDepthEmpty, nullptr, "empty"},
    {'U', HSVNDepthExclude, nullptr, "exclude"},
    {'C', HSVNDepthUnknown, "1", "unknown"},
    {'C', HSVNDepthInfinity, "1", "infinity"},
    {'C', HSVNDepthEmpty, "0", "empty"},
    {'C', HSVNDepthFiles, nullptr, "files"},
    {'C', HSVNDepthImmediates, nullptr, "immediates"},
    {'O', HSVNDepthInfinity, "1", "infinity"},
    {'O', HSVNDepthFiles, "0", "files"},
    {'O', HSVNDepthEmpty, nullptr, "empty"},
    {'O', HSVNDepthImmediates, nullptr, "immediates"},
};

/// A call of a line, and what is to be recorded of it.
struct TranslatedCall
{
    std::function<void()> run;
    HSVNRecordedCall expected;
};

class OlderLines : public WorkingCopyOperations
{
  protected:
    bool is1_4() const { return line() == HSVNVersion::version1_4(); }

    /// The call with the flags that are not the defaults for one depth, and with the defaults for all others.
    TranslatedCall translated(const Translation& translation) const
    {
        const bool isSpecial = translation.depth == HSVNDepthInfinity;
        const std::string flag = isSpecial ? "1" : "0";
        const std::string recurse = translation.recurse != nullptr ? translation.recurse : "";
        const std::string word = translation.word;
        if (translation.operation == 'C') {
            const auto options = HSVNCommitOptions::defaults();
            options->setDepth(translation.depth);
            options->setReleaseLocks(!isSpecial);
            return {[=, this] { HSVNNode::commitChangesToNodes({at("")}, options, client); },
                    is1_4()
                        ? HSVNRecordedCall{"svn_client_commit3", {"[" + root + "]", recurse, flag}}
                        : HSVNRecordedCall{"svn_client_commit4", {"[" + root + "]", word, flag, "0", "null", "null"}}};
        }
        if (translation.operation == 'U') {
            const auto options = HSVNUpdateOptions::defaults();
            options->setDepth(translation.depth);
            options->setDepthIsSticky(isSpecial);
            options->setProcessExternals(!isSpecial);
            options->setAllowUnversionedObstructions(isSpecial);
            return {[=, this] { HSVNNode::updateNodes({at("")}, HSVNRevision::HEAD(), options, client); },
                    is1_4()
                        ? HSVNRecordedCall{"svn_client_update2", {"[" + root + "]", "HEAD", recurse, flag}}
                        : HSVNRecordedCall{"svn_client_update3", {"[" + root + "]", "HEAD", word, flag, flag, flag}}};
        }
        const auto options = HSVNCheckOutOptions::defaults();
        options->setRevision(std::make_shared<HSVNRevisionSpec>(HSVNRevision::revisionWithNumber(3),
                                                                HSVNRevision::revisionWithNumber(2)));
        options->setDepth(translation.depth);
        options->setProcessExternals(!isSpecial);
        options->setAllowUnversionedObstructions(isSpecial);
        const std::string target = repository.beside(word);
        const std::string source = repository.url("trunk");
        return {
            [=, this] { HSVNDirectory::checkoutDirectoryAtURL(url("trunk"), checkedOutPath(target), options, client); },
            is1_4() ? HSVNRecordedCall{"svn_client_checkout2", {source, target, "2", "3", recurse, flag}}
                    : HSVNRecordedCall{"svn_client_checkout3", {source, target, "2", "3", word, flag, flag}}};
    }
};

} // namespace

TEST_P(OlderLines, CallTheFunctionOfTheirLineWithTranslatedDepths)
{
    HSVNCallRecorder recorder{GetParam()};
    for (const auto& translation : translations) {
        SCOPED_TRACE(std::string{translation.operation} + " " + translation.word);
        writeFile(item("a.txt"), std::string{translation.operation} + translation.word);
        recorder.clear();
        delegate->notifications.clear();
        const auto [run, expected] = translated(translation);
        if (is1_4() && translation.recurse == nullptr) {
            // Checkout's refusal alone is of the library's own class.
            if (translation.operation == 'O') {
                EXPECT_EQ(reasonOf<HSVNException>(run),
                          "Incompatible depth argument for 1.4 (HSVNDepthInfinity and HSVNDepthFiles supported)");
            } else {
                EXPECT_EQ(reasonOf<HSVNInvalidArgumentException>(run), "Invalid depth");
            }
            EXPECT_EQ(last().error()->name(), "NSInvalidArgumentException");
            EXPECT_THAT(delegate->ownActions(), ElementsAre(testing::EndsWith("Started"), testing::EndsWith("Failed")));
            EXPECT_TRUE(recorder.calls().empty());
        } else {
            run();
            auto calls = recorder.calls();
            std::erase_if(calls, [](const auto& call) { return call.name == "svn_client_info"; });
            EXPECT_THAT(calls, ElementsAre(expected));
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
        HSVNNode::add(checkedOutPath(path), add, client);
        revert->setRecursive(flag);
        HSVNNode::revertNodes({checkedOutPath(path), checkedOutPath(item("a.txt"))}, revert, client);
        resolve->setRecursive(flag);
        HSVNNode::resolveNodeAtPath(checkedOutPath(root), resolve, client);
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
        const auto folder = checkedOutPath(workingCopy);
        const auto file = checkedOutPath(workingCopy + "/new.txt");
        return {
            [=, this] { update({folder}, HSVNRevision::HEAD()); },
            [=, this] { commit({folder}); },
            [=, this] { HSVNNode::add(file, client); },
            [=, this] { HSVNNode::revertNodes({folder}, HSVNRevertOptions::defaults(), client); },
            [=, this] { HSVNNode::deleteNodes({folder}, HSVNDeleteOptions::defaults(), client); },
            [=, this] {
                HSVNNode::copyNodeAtPath(file, checkedOutPath(workingCopy + "/copy.txt"), HSVNCopyOptions::defaults(),
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
        HSVNNode::updateNodes({checkedOutPath("/nowhere")}, HSVNRevision::BASE(), HSVNUpdateOptions::defaults(),
                              client);
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
        return HSVNNode::updateNodes({checkedOutPath("/a"), checkedOutPath("/b")}, HSVNRevision::HEAD(),
                                     HSVNUpdateOptions::defaults(), client);
    };
    answeredRevisions = {0x7fffffff, SVN_INVALID_REVNUM};
    EXPECT_THAT(update(), ElementsAre(0x7fffffff, HSVNInvalidRevision));
    answeredRevisions = {1, 0x80000000};
    EXPECT_THROW(update(), HSVNInvalidArgumentException) << "a number beyond 32 bits";
    answeredRevisions = {7};
    EXPECT_EQ(reasonOf([&] { update(); }), "Expected resultant revision array with length of 2, found 1");
}
