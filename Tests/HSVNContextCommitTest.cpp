// The verbs that commit, or schedule the same in a working copy.

#include "AlteredBundle.h"
#include "HSVNDirectory.h"
#include "HSVNNode.h"
#include "HSVNNotification.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <regex>
#include <stdexcept>
#include <utility>

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// Does something once, amid a commit.
struct Hook
{
    std::function<void()> once;

    void notify(HSVNContext&, const HSVNNotificationRef& notification)
    {
        if (notification->action() == HSVNNotifyActionCommitModified && once) {
            std::exchange(once, nullptr)();
        }
    }
    bool promptForLogMessage(HSVNContext&, std::string& message, const std::vector<HSVNCommitItemRef>&)
    {
        message = "asked";
        return true;
    }
};

class CommittingVerbs : public WorkingCopyTest
{
  protected:
    /// What each of the verbs is given.
    struct Given
    {
        std::optional<std::string> message{};
        std::map<std::string, std::string> properties{};
        HSVNReceiver<const HSVNCommitResult&> receiver{};
    };
    using Change = std::function<HSVNCommitResult(HSVNContext&, const Given&)>;

    template <class Choices>
    static Choices choices(const Given& given)
    {
        Choices choices;
        choices.message = given.message;
        choices.revisionProperties = given.properties;
        return choices;
    }
    /// Each makes one revision.
    std::vector<Change> everyChange() const
    {
        return {
            [this](auto& context, const auto& given) {
                return context.makeDirectories(repository.url("made"), choices<HSVNMakeDirectoriesChoices>(given),
                                               given.receiver);
            },
            [this](auto& context, const auto& given) {
                return context.importTree(item("dir"), repository.url("imported"), choices<HSVNImportChoices>(given),
                                          given.receiver);
            },
            [this](auto& context, const auto& given) {
                return context.copy({repository.url("trunk")}, repository.url("copied"),
                                    choices<HSVNCopyChoices>(given), given.receiver);
            },
            [this](auto& context, const auto& given) {
                return context.move(repository.url("trunk/b.txt"), repository.url("moved"),
                                    choices<HSVNMoveChoices>(given), given.receiver);
            },
            [this](auto& context, const auto& given) {
                return context.remove(repository.url("trunk/dir"), choices<HSVNDeleteChoices>(given), given.receiver);
            },
            [this](auto& context, const auto& given) {
                writeFile(item("a.txt"), "changed\n");
                return context.commit(root, choices<HSVNCommitChoices>(given), given.receiver);
            },
        };
    }
    /// Runs every change with a message that the delegate gives, or else the caller.
    void expectTheMessage(bool isGiven)
    {
        const std::string text = "one\r\ntwo\rthree\n";
        delegate->message = isGiven ? "not asked for" : text;
        int youngest = repository.youngest();
        for (const auto& change : everyChange()) {
            change(*client, {.message = isGiven ? std::optional{text} : std::nullopt});
            EXPECT_EQ(repository.youngest(), ++youngest);
            EXPECT_EQ(repository.logMessage(youngest), "one\ntwo\nthree\n");
        }
        EXPECT_EQ(delegate->commitItems.size(), isGiven ? 0 : everyChange().size());
    }
    std::string revisionProperty(const std::string& name) const
    {
        return mustRun({"svn", "propget", "--no-newline", "--revprop", "-r", "HEAD", name, repository.url()});
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, CommittingVerbs, everyLine(), lineName);

TEST_P(CommittingVerbs, TellTheirRevisionAndGiveItProperties)
{
    const bool hasProperties = !isOlderLine();
    std::vector<HSVNRevisionNumber> revisions;
    Given given;
    if (hasProperties) {
        given.properties = {{"color", "red\nblue"}, {"empty", ""}};
    }
    given.receiver = [&](const HSVNCommitResult& result) {
        revisions.push_back(result.revision);
        EXPECT_TRUE(result.date && result.author && !result.postCommitError);
    };
    for (const auto& change : everyChange()) {
        const auto result = change(*client, given);
        EXPECT_EQ(result.revision, repository.youngest());
        ASSERT_FALSE(revisions.empty());
        EXPECT_EQ(revisions.back(), repository.youngest());
        if (hasProperties) {
            EXPECT_EQ(revisionProperty("color"), "red\nblue");
        }
        EXPECT_EQ(repository.logMessage(repository.youngest()), "a message");
    }
    EXPECT_EQ(revisions.size(), everyChange().size());
    EXPECT_EQ(delegate->commitItems.size(), everyChange().size());
    given.properties = {{"no name", ""}};
    for (const auto& change : everyChange()) {
        EXPECT_THROW(change(*client, given), HSVNException);
    }
    EXPECT_EQ(revisions.back(), repository.youngest());
}

TEST_P(CommittingVerbs, EndTheLinesOfTheirMessageInTheWayOfRepositories) { expectTheMessage(false); }

TEST_P(CommittingVerbs, TakeAMessageWithoutAsking)
{
    expectTheMessage(true);
    HSVNContext plain{bundleOfLine(line())};
    plain.makeDirectories(repository.url("plain"), {.message = "without a delegate"});
    EXPECT_EQ(repository.logMessage(repository.youngest()), "without a delegate");
    plain.makeDirectories(repository.url("plain/second"));
    EXPECT_EQ(repository.logMessage(repository.youngest()), "");
}

TEST_P(CommittingVerbs, LeaveEverythingAsItWasWhenTheDelegateAborts)
{
    delegate->commits = false;
    const int youngest = repository.youngest();
    for (const auto& change : everyChange()) {
        const auto result = change(*client, {});
        EXPECT_TRUE(result.messageRefused);
        EXPECT_EQ(result.revision, HSVNInvalidRevision);
        EXPECT_EQ(repository.youngest(), youngest);
    }
    EXPECT_FALSE(client->commit(item("b.txt")).messageRefused) << "nothing to commit is no refusal";
}

TEST_P(CommittingVerbs, AreDoneWhenTheirReceiverThrows)
{
    Given given;
    given.receiver = [](const HSVNCommitResult&) { throw std::runtime_error{"not printed"}; };
    int youngest = repository.youngest();
    for (const auto& change : everyChange()) {
        EXPECT_THROW(change(*client, given), std::runtime_error);
        EXPECT_EQ(repository.youngest(), ++youngest);
    }
    EXPECT_EQ(status(), "") << "the working copy knows of the last one";
}

TEST_P(CommittingVerbs, AskAnewForWhatACallbackCommits)
{
    const auto hooks = std::make_shared<HSVNClientDelegateFor<Hook>>();
    const auto own = std::make_shared<HSVNClient>(bundleOfLine(line()), hooks);
    const std::vector<std::pair<const char*, std::function<void()>>> nested{
        {"its own", [&] { own->makeDirectories(repository.url("by-verb"), {.message = "its own"}); }},
        {"asked", [&] { own->makeDirectories(repository.url("asked")); }},
        {"asked", [&] { HSVNDirectory::createDirectoryAtPath(url("by-class"), own); }}};
    int youngest = repository.youngest();
    for (const auto& [message, call] : nested) {
        SCOPED_TRACE(youngest);
        hooks->once = call;
        writeFile(item("a.txt"), std::to_string(youngest));
        own->commit(root, {.message = "outer"});
        EXPECT_EQ(repository.logMessage(++youngest), message);
        EXPECT_EQ(repository.logMessage(++youngest), "outer");
    }
}

TEST_P(CommittingVerbs, TellWhatAHookSaidAfterwards)
{
    const std::string hook = repository.path() + "/hooks/post-commit";
    writeFile(hook, "#!/bin/sh\necho complained >&2\nexit 1\n");
    std::filesystem::permissions(hook, std::filesystem::perms::owner_all);
    EXPECT_THAT(client->makeDirectories(repository.url("made")).postCommitError.value_or(""), HasSubstr("complained"));
}

TEST_P(CommittingVerbs, OfWorkingCopiesAskForNoMessage)
{
    if (isOlderLine()) {
        GTEST_SKIP() << "with all choices";
    }
    client->makeDirectories(item("made/deep"), {.makeParents = true});
    client->copy({item("a.txt")}, item("made"), {.asChild = true});
    client->move(item("b.txt"), item("moved"));
    client->remove(item("dir"), {.keepLocal = true});
    EXPECT_THAT(delegate->commitItems, IsEmpty());
    EXPECT_EQ(status(), "D       b.txt\n        > moved to moved\nD       dir\nA       made\n"
                        "A  +    made/a.txt\nA       made/deep\nA  +    moved\n        > moved from b.txt\n");
}

TEST_P(CommittingVerbs, MakeADirectoryWithAllOfItsParentsOrNone)
{
    struct Stopping
    {
        bool goesOn = true;

        void notify(HSVNContext&, const HSVNNotificationRef&) { goesOn = false; }
        bool queryContinue(HSVNContext&) const { return goesOn; }
    };
    if (isOlderLine()) {
        GTEST_SKIP() << "with all choices";
    }
    std::filesystem::create_directory(item("found"));
    const auto stopping = HSVNClient::clientOwningDelegate(std::make_shared<HSVNClientDelegateFor<Stopping>>());
    for (const std::string above : {"made", "found"}) {
        EXPECT_THROW(stopping->makeDirectories(item(above + "/deep/er"), {.makeParents = true}),
                     HSVNOperationCancelledException);
        EXPECT_THROW(client->makeDirectories(item(above + "/deep/" + std::string(300, 'x')), {.makeParents = true}),
                     HSVNException);
        EXPECT_EQ(status(), "?       found\n");
        EXPECT_FALSE(exists(above + "/deep"));
    }
}

TEST_P(CommittingVerbs, DoWithoutWhatTheirLineLacksOrNameIt)
{
    if (!isOlderLine()) {
        GTEST_SKIP() << "the installed line has it all";
    }
    client = clientWithoutExtensions(std::string{GetParam()});
    client->setDelegate(delegate);
    client->copy(item("a.txt"), item("copied"));
    client->move(item("b.txt"), item("moved"));
    client->remove(item("dir/c.txt"));
    client->makeDirectories(item("made"));
    EXPECT_TRUE(exists("copied") && exists("moved") && exists("made") && !exists("dir/c.txt"));
    EXPECT_EQ(client->commit(root).revision, 2);

    const auto number = HSVNRevision::revisionWithNumber(1);
    const std::string to = repository.url("to");
    const std::vector<std::pair<const char*, std::function<void()>>> refused{
        {"commit]: 'includeExternals'", [&] { client->commit(root, {.includeExternals = true}); }},
        {"importTree]: 'automaticProperties'",
         [&] { client->importTree(item("dir"), to, {.automaticProperties = false}); }},
        {"importTree]: 'ignoreUnknownKinds'",
         [&] { client->importTree(item("dir"), to, {.ignoreUnknownKinds = true}); }},
        {"makeDirectories]: 'makeParents'", [&] { client->makeDirectories(to, {.makeParents = true}); }},
        {"makeDirectories]: 'revisionProperties'",
         [&] {
             client->makeDirectories(to, {.revisionProperties = {{"color", "red"}}});
         }},
        {"remove]: 'keepLocal'", [&] { client->remove(item("dir"), {.keepLocal = true}); }},
        {"copy]: 'several sources'",
         [&] {
             client->copy({item("a.txt"), item("moved")}, item("dir"));
         }},
        {"copy]: 'peg revision'",
         [&] {
             client->copy({{repository.url("trunk"), number}}, to);
         }},
        {"copy]: 'asChild'", [&] { client->copy({item("a.txt")}, item("dir"), {.asChild = true}); }},
        {"copy]: 'makeParents'", [&] { client->copy({item("a.txt")}, item("x/y"), {.makeParents = true}); }},
        {"copy]: 'processExternals'", [&] { client->copy({item("a.txt")}, item("x"), {.processExternals = false}); }},
        {"copy]: 'pinExternals'", [&] { client->copy({item("a.txt")}, item("x"), {.pinExternals = true}); }},
        {"move]: 'several sources'",
         [&] {
             client->move({item("a.txt"), item("moved")}, item("dir"));
         }},
        {"move]: 'asChild'", [&] { client->move(item("a.txt"), item("dir"), {.asChild = true}); }},
        {"move]: 'makeParents'", [&] { client->move(item("a.txt"), item("x/y"), {.makeParents = true}); }},
    };
    for (const auto& [choice, call] : refused) {
        EXPECT_THAT(reasonOf<HSVNUnsupportedFeatureException>(call),
                    AllOf(HasSubstr(choice), HasSubstr("Subversion " + std::string{GetParam()})));
    }
    EXPECT_EQ(repository.youngest(), 2);
    EXPECT_EQ(status(), "");
}

/// A failure without the transaction's number, which counts on.
std::string withoutTransaction(const std::string& failure)
{
    return std::regex_replace(failure, std::regex{"transaction '[^']*'"}, "transaction");
}

TEST_P(CommittingVerbs, FailAsTheClassOperationsDo)
{
    const auto existing = repository.url("trunk");
    const std::string missing = repository.url("nowhere");
    const auto head = HSVNRevisionSpec::HEAD();
    const auto options = HSVNCopyOptions::defaults();
    options->setRevision(HSVNRevision::HEAD());
    using Call = std::function<void()>;
    struct Case
    {
        const char* name;
        Call verb;
        Call operation;
    };
    const std::vector<Case> cases{
        {"directory that exists", [&] { client->makeDirectories(existing); },
         [&] { HSVNDirectory::createDirectoryAtPath(url("trunk"), client); }},
        {"directory without parent", [&] { client->makeDirectories(missing + "/new"); },
         [&] { HSVNDirectory::createDirectoryAtPath(url("nowhere/new"), client); }},
        {"import of nothing", [&] { client->importTree(item("nowhere"), repository.url("new")); },
         [&] { HSVNNode::importNodeAtPath(at("nowhere"), url("new"), HSVNImportOptions::defaults(), client); }},
        {"deletion of nothing", [&] { client->remove(missing); },
         [&] { HSVNNode::deleteNodes({url("nowhere")}, HSVNDeleteOptions::defaults(), client); }},
        {"copy to what exists",
         [&] {
             client->copy({{existing, head}}, repository.url("trunk/a.txt"));
         },
         [&] { HSVNNode::copyNodeAtPath(url("trunk"), url("trunk/a.txt"), options, client); }},
        {"copy of nothing",
         [&] {
             client->copy({{missing, head}}, repository.url("new"));
         },
         [&] { HSVNNode::copyNodeAtPath(url("nowhere"), url("new"), options, client); }},
        {"move to what exists", [&] { client->move(repository.url("trunk/b.txt"), repository.url("trunk/a.txt")); },
         [&] {
             HSVNNode::moveNodeAtPath(url("trunk/b.txt"), url("trunk/a.txt"), HSVNMoveOptions::defaults(), client);
         }},
        {"commit of no working copy", [&] { client->commit(repository.beside("given")); },
         [&] { HSVNNode::commitChangesToNodes({outside("given")}, HSVNCommitOptions::defaults(), client); }},
        {"commit of a URL", [&] { client->commit(existing); },
         [&] { HSVNNode::commitChangesToNodes({url("trunk")}, HSVNCommitOptions::defaults(), client); }},
        {"administrative area", [&] { client->makeDirectories(item(".svn/x")); },
         [&] { HSVNDirectory::createDirectoryAtPath(at(".svn/x"), client); }},
    };
    for (const auto& [name, verb, operation] : cases) {
        const auto expected = withoutTransaction(failureOf(operation));
        EXPECT_NE(expected, "") << name;
        EXPECT_EQ(withoutTransaction(failureOf(verb)), expected) << name;
    }
    EXPECT_EQ(repository.youngest(), 1);
    EXPECT_EQ(status(), "");
}

TEST_P(CommittingVerbs, RefuseWhatIsNoTargetOfTheirKind)
{
    if (isOlderLine()) {
        GTEST_SKIP() << "paths of older lines are absolute";
    }
    EXPECT_THAT(reasonOf<HSVNException>([&] { client->importTree(repository.url(), item("x")); }),
                HasSubstr("is not a local path"));
    EXPECT_THROW(client->makeDirectories(HSVNTarget::verbatim("//not\xff//canonical/../")), HSVNException);
    EXPECT_EQ(reasonOf([&] {
                  client->copy({{item("a.txt"), HSVNRevisionSpecRef{}}}, item("x"));
              }),
              "Invalid parameter not satisfying: revision != nil");
}
