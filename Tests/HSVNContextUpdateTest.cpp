// The verbs that bring a working copy, or a directory outside of any, to what a repository holds.

#include "AlteredBundle.h"
#include "HSVNDirectory.h"
#include "HSVNNode.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <stdexcept>

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class UpdatingVerbs : public WorkingCopyTest
{
  protected:
    /// One of the verbs, on the working copy or on the item that is given.
    struct Verb
    {
        const char* name;
        std::function<void(const std::string& local, HSVNContext&)> call;
    };
    std::vector<Verb> everyVerb() const
    {
        const auto number = HSVNRevision::revisionWithNumber(1);
        const std::string trunk = repository.url("trunk");
        return {
            {"update", [=](const auto& local, auto& context) { context.update(local, number); }},
            {"checkout", [=](const auto& local, auto& context) { context.checkout(trunk, local); }},
            {"switchTo", [=](const auto& local, auto& context) { context.switchTo(local, trunk); }},
            {"exportTree",
             [=](const auto& local, auto& context) {
                 context.exportTree(trunk, local, HSVNRevisionSpec::HEAD(), {.overwrite = true});
             }},
            {"mergeDifference",
             [=](const auto& local, auto& context) {
                 context.mergeDifference({trunk, number}, {trunk, number}, local);
             }},
            {"merge", [=](const auto& local, auto& context) { context.merge(trunk, local); }},
            {"reintegrate", [=](const auto& local, auto& context) { context.reintegrate(trunk, local); }},
        };
    }
    /// Two changes that a working copy at revision 1 does not have, and a local change in conflict with the second.
    void change() const
    {
        for (const char* const text : {"second\n", "third\n"}) {
            writeFile(item("a.txt"), text);
            commitAll();
        }
        mustRun({"svn", "update", "--quiet", "-r", "1", root});
        writeFile(item("a.txt"), "mine\n");
    }
};

/// On the one line that asks.
class AskingVerbs : public UpdatingVerbs
{
  protected:
    /// The verbs that ask how conflicts are settled, each bringing the third revision's change, with what it tells of
    /// the sides.
    struct Asking
    {
        HSVNConflictOperation operation;
        std::function<void(const HSVNConflictChooser&)> call;
    };
    std::vector<Asking> askingVerbs() const
    {
        return {
            {HSVNConflictOperation::Merge,
             [this](const auto& chooser) {
                 const auto range = std::make_pair(HSVNRevision::revisionWithNumber(2), HSVNRevision::HEAD());
                 client->merge(repository.url("trunk"), {range}, root,
                               {.allowMixedRevisions = true, .chooser = chooser});
             }},
            {HSVNConflictOperation::Update,
             [this](const auto& chooser) { client->update(root, HSVNRevision::HEAD(), {.chooser = chooser}); }},
            {HSVNConflictOperation::Switch,
             [this](const auto& chooser) {
                 client->switchTo(root, repository.url("trunk"), HSVNRevisionSpec::HEAD(), {.chooser = chooser});
             }},
        };
    }
    /// As `change` left it.
    void restore() const
    {
        mustRun({"svn", "revert", "--quiet", "-R", root});
        mustRun({"svn", "update", "--quiet", "-r", "1", root});
        writeFile(item("a.txt"), "mine\n");
    }
    /// Uses each verb where its conflict is still to come.
    void forEachVerb(const std::function<void(const Asking&)>& use) const
    {
        for (const auto& verb : askingVerbs()) {
            SCOPED_TRACE(static_cast<int>(verb.operation));
            restore();
            use(verb);
        }
    }
    void SetUp() override { change(); }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, UpdatingVerbs, everyLine(), lineName);
INSTANTIATE_TEST_SUITE_P(Lines, AskingVerbs, testing::Values("1.14"), lineName);

TEST_P(UpdatingVerbs, NameWhatTheirLineLacks)
{
    const auto chooser = [](const auto&...) { return HSVNResolutionChoice::Postpone; };
    const auto head = HSVNRevision::HEAD();
    const auto spec = HSVNRevisionSpec::HEAD();
    const std::string trunk = repository.url("trunk");
    using Call = std::function<void(HSVNContext&)>;
    std::vector<std::pair<const char*, Call>> refused{
        {"switchTo] is", [&](auto& old) { old.switchTo(root, trunk); }},
        {"merge] is", [&](auto& old) { old.merge(trunk, root); }},
        {"reintegrate] is", [&](auto& old) { old.reintegrate(trunk, root); }},
        {"update]: 'addsAsModification'", [&](auto& old) { old.update(root, head, {.addsAsModification = true}); }},
        {"update]: 'makeParents'", [&](auto& old) { old.update(root, head, {.makeParents = true}); }},
        {"update]: 'chooser'", [&](auto& old) { old.update(root, head, {.chooser = chooser}); }},
        {"exportTree]: 'expandKeywords'",
         [&](auto& old) { old.exportTree(trunk, repository.beside("out"), spec, {.expandKeywords = false}); }},
        {"mergeDifference]: 'ignoreMergeInfo'",
         [&](auto& old) { old.mergeDifference(trunk, trunk, root, {.ignoreMergeInfo = true}); }},
        {"mergeDifference]: 'diffIgnoreAncestry'",
         [&](auto& old) { old.mergeDifference(trunk, trunk, root, {.diffIgnoreAncestry = true}); }},
        {"mergeDifference]: 'chooser'",
         [&](auto& old) { old.mergeDifference(trunk, trunk, root, {.chooser = chooser}); }},
    };
    if (line().isLessThan(HSVNVersion::version1_5())) {
        refused.insert(
            refused.end(),
            {{"update]: 'depthIsSticky'", [&](auto& old) { old.update(root, head, {.depthIsSticky = true}); }},
             {"update]: 'allowObstructions'", [&](auto& old) { old.update(root, head, {.allowObstructions = true}); }},
             {"checkout]: 'allowObstructions'",
              [&](auto& old) { old.checkout(trunk, repository.beside("out"), spec, {.allowObstructions = true}); }}});
    }
    const auto old = clientWithoutExtensions(std::string{GetParam()});
    for (const auto& each : refused) {
        EXPECT_THAT(reasonOf<HSVNUnsupportedFeatureException>([&] { each.second(*old); }),
                    AllOf(HasSubstr(each.first), HasSubstr("Subversion " + std::string{GetParam()})));
    }
    EXPECT_EQ(status(), "");
    EXPECT_FALSE(std::filesystem::exists(repository.beside("out")));
}

TEST_P(UpdatingVerbs, NameATargetThatIsNoLocalPath)
{
    for (const auto& verb : everyVerb()) {
        const std::string trunk = repository.url("trunk");
        const auto reason = reasonOf<HSVNException>([&] { verb.call(trunk, *client); });
        EXPECT_THAT(reason, testing::AnyOf(HasSubstr(trunk), HasSubstr("is not offered"))) << verb.name;
    }
    const auto head = HSVNRevisionSpecRef{};
    EXPECT_EQ(reasonOf([&] { client->update(root, nullptr); }), "Invalid parameter not satisfying: revision != nil");
    for (const auto& call : std::vector<std::function<void()>>{
             [&] { client->checkout(repository.url("trunk"), root, head); },
             [&] { client->switchTo(root, repository.url("trunk"), head); },
             [&] { client->exportTree(root, repository.beside("out"), head); },
             [&] {
                 client->merge(repository.url("trunk"), {{HSVNRevision::HEAD(), nullptr}}, root);
             }})
    {
        EXPECT_EQ(reasonOf(call), "Invalid parameter not satisfying: revision != nil");
    }
    EXPECT_EQ(status(), "");
}

TEST_P(UpdatingVerbs, AnswerTheRevisionOfTheItem)
{
    change();
    EXPECT_THAT(client->update({item("dir"), item("b.txt")}, HSVNRevision::revisionWithNumber(2)), ElementsAre(2, 2));
    EXPECT_EQ(client->checkout(repository.url("trunk"), repository.beside("other")), 3);
    EXPECT_EQ(client->checkout(repository.url("trunk"), repository.beside("peg"),
                               HSVNRevisionSpec::pegRevisionWithNumber(2), {.depth = HSVNDepthFiles}),
              2);
    if (!isOlderLine()) {
        EXPECT_EQ(client->switchTo(repository.beside("peg"), repository.url("trunk"), {}), 3);
        EXPECT_THAT(client->update({item("dir"), repository.beside("nowhere")}), ElementsAre(3, HSVNInvalidRevision));
        EXPECT_EQ(client->switchTo(repository.beside("other"), repository.url("trunk/dir"), HSVNRevisionSpec::HEAD(),
                                   {.ignoreAncestry = true}),
                  3);
        EXPECT_TRUE(std::filesystem::exists(repository.beside("other/c.txt")));
    }
    EXPECT_EQ(client->exportTree(repository.url("trunk"), repository.beside("tree"), HSVNRevisionSpec::HEAD()), 3);
    EXPECT_EQ(readFile(repository.beside("tree/a.txt")), "third\n");
    EXPECT_EQ(client->exportTree(repository.url("trunk/a.txt"), repository.beside("file")), 3);
    EXPECT_EQ(client->exportTree(root, repository.beside("mine")), HSVNInvalidRevision);
    EXPECT_EQ(readFile(repository.beside("mine/a.txt")), "mine\n");
    EXPECT_THAT(delegate->ownActions(), testing::Contains("HSVNNotifyActionExportSucceeded"));
}

TEST_P(UpdatingVerbs, ApplyADifferenceOnEveryLine)
{
    change();
    const auto revision = [](int number) { return HSVNRevision::revisionWithNumber(number); };
    const HSVNTargetInRevision first{repository.url("trunk"), revision(1)};
    mustRun({"svn", "revert", "--quiet", item("a.txt")});
    client->mergeDifference(first, repository.url("trunk"), root, {.dryRun = true});
    EXPECT_EQ(readFile(item("a.txt")), "a.txt\n");
    client->mergeDifference(first, repository.url("trunk"), root);
    EXPECT_EQ(readFile(item("a.txt")), "third\n") << "without a revision, a URL is one of HEAD";
    EXPECT_GE(delegate->withAction(HSVNNotifyActionMergeCompleted).size(), 2U);
}

TEST_P(AskingVerbs, AskHowAConflictIsSettled)
{
    forEachVerb([&](const Asking& verb) {
        int asked = 0;
        verb.call([&](const std::string& path, const HSVNConflictRecord& conflict) {
            ++asked;
            EXPECT_EQ(path, item("a.txt"));
            EXPECT_EQ(conflict.kind, HSVNConflictKind::Text);
            EXPECT_EQ(conflict.operation, verb.operation);
            EXPECT_EQ(conflict.reason, HSVNConflictReason::Edited);
            EXPECT_EQ(conflict.sourceRight.value_or(HSVNConflictVersion{}).pegRevision, 3);
            EXPECT_EQ(readFile(conflict.theirPath.value_or("")), "third\n");
            return HSVNResolutionChoice::IncomingText;
        });
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(readFile(item("a.txt")), "third\n");
        EXPECT_FALSE(hasConflict()) << status();
    });
}

TEST_P(AskingVerbs, LeaveAConflictWhenNobodySettlesIt)
{
    forEachVerb([&](const Asking& verb) {
        EXPECT_THROW(verb.call([](const auto&...) -> HSVNResolutionChoice { throw std::range_error{"no answer"}; }),
                     std::range_error);
        EXPECT_TRUE(hasConflict());
        restore();
        EXPECT_EQ(reasonOf([&] { verb.call([](const auto&...) { return HSVNResolutionChoice::IncomingAddIgnore; }); }),
                  "The choice 11 does not settle the conflict of '" + item("a.txt") + "' at once");
        restore();
        verb.call(nullptr);
        EXPECT_TRUE(hasConflict());
    });
}

TEST_P(AskingVerbs, AskNobodyAboutTheConflictsOfWhatTheChooserDoes)
{
    const std::string other = repository.checkOut("other", "trunk");
    mustRun({"svn", "update", "--quiet", "-r", "1", other});
    writeFile(other + "/a.txt", "mine\n");
    int asked = 0;
    client->update(root, HSVNRevision::HEAD(), {.chooser = [&](const auto&...) {
                       ++asked;
                       client->update(other);
                       return HSVNResolutionChoice::IncomingText;
                   }});
    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(hasConflict());
    EXPECT_THAT(mustRun({"svn", "status", other}), HasSubstr("C "));
}

TEST_P(UpdatingVerbs, FailAsTheClassOperationsDo)
{
    const auto missing = HSVNRevision::revisionWithNumber(99);
    const auto number = HSVNRevision::revisionWithNumber(1);
    const auto trunk = repository.url("trunk");
    struct Case
    {
        const char* name;
        std::function<void()> verb;
        std::function<void()> operation;
    };
    const std::vector<Case> cases{
        {"update to a missing revision", [&] { client->update(root, missing); },
         [&] { HSVNNode::updateNodes({at("")}, missing, HSVNUpdateOptions::defaults(), client); }},
        {"check-out of nothing", [&] { client->checkout(repository.url("nowhere"), repository.beside("out")); },
         [&] {
             HSVNDirectory::checkoutDirectoryAtURL(url("nowhere"), outside("out"), HSVNCheckOutOptions::defaults(),
                                                   client);
         }},
        {"check-out of a file", [&] { client->checkout(repository.url("trunk/a.txt"), repository.beside("out")); },
         [&] {
             HSVNDirectory::checkoutDirectoryAtURL(url("trunk/a.txt"), outside("out"), HSVNCheckOutOptions::defaults(),
                                                   client);
         }},
        {"export of nothing", [&] { client->exportTree(repository.url("nowhere"), repository.beside("out")); },
         [&] { HSVNNode::exportNodeAtPath(url("nowhere"), outside("out"), HSVNExportOptions::defaults(), client); }},
        {"export onto something", [&] { client->exportTree(trunk, root); },
         [&] { HSVNNode::exportNodeAtPath(url("trunk"), at(""), HSVNExportOptions::defaults(), client); }},
        {"merge of nothing",
         [&] {
             client->mergeDifference({repository.url("nowhere"), number}, {trunk, number}, root);
         },
         [&] {
             HSVNNode::mergeNodeAtPath(url("nowhere"), number, url("trunk"), number, at(""),
                                       HSVNMergeOptions::defaults(), client);
         }},
        {"merge into no working copy",
         [&] {
             client->mergeDifference({trunk, number}, {trunk, number}, repository.beside("given"));
         },
         [&] {
             HSVNNode::mergeNodeAtPath(url("trunk"), number, url("trunk"), number, outside("given"),
                                       HSVNMergeOptions::defaults(), client);
         }},
    };
    for (const auto& [name, verb, operation] : cases) {
        const auto expected = failureOf(operation);
        EXPECT_NE(expected, "") << name;
        EXPECT_EQ(failureOf(verb), expected) << name;
    }
    EXPECT_EQ(status(), "");
}
