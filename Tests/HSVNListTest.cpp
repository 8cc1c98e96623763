#include "AlteredBundle.h"
#include "Command.h"
#include "HSVNContext.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNLock.h"
#include "HSVNURL.h"
#include "ReasonOf.h"
#include "TestRepository.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace {

/// The verb `list` on the installed line, and by what older lines have.
class ListVerb : public testing::TestWithParam<const char*>
{
  protected:
    ListVerb()
    {
        repository.makeFolder("trunk");
        repository.makeFolder("trunk/dir");
        repository.put("trunk/a.txt", "one\n");
        repository.put("trunk/dir/b%c.txt", "");
        mustRun({"svn", "lock", "-q", "-m", "mine", repository.url("trunk/a.txt")});
    }

    static bool isOlder() { return GetParam() != std::string{"1.14"}; }
    static std::string fieldsOf(const HSVNNode& node)
    {
        return fmt::format("{} {} {} {} {} r{} {} {} {}", node.name().value_or("-"), node.path()->string(),
                           node.location()->string(), node.URL() ? node.URL()->string() : "", node.size(),
                           node.revision(), node.date()->description(), node.author().value_or("-"),
                           node.lock() ? node.lock()->token() : "");
    }
    std::vector<std::string> names(const HSVNTarget& target, const HSVNListChoices& choices) const
    {
        std::vector<std::string> found;
        client->list(target, HSVNRevisionSpec::HEAD(), choices,
                     [&](const HSVNNodeRef& node) { found.push_back(node->name().value_or("-")); });
        return found;
    }

    const TestRepository repository;
    const HSVNClientRef client = isOlder() ? clientWithoutExtensions(GetParam()) : std::make_shared<HSVNClient>();
};

} // namespace

TEST_P(ListVerb, TellsWhatTheClassOperationTells)
{
    const auto workingCopy = repository.checkOut("wc", "trunk");
    for (const auto& text : {repository.url("trunk"), workingCopy}) {
        const auto path = HSVNPath::pathWithString(text);
        std::vector<HSVNNodeRef> children;
        const auto directory = HSVNDirectory::directoryAtPath(path, HSVNRevisionSpec::HEAD(), &children, client);
        auto nodes = client->list(path, HSVNRevisionSpec::HEAD(), {.fetchLocks = true});
        EXPECT_EQ(nodes.front()->name(), ".");
        EXPECT_TRUE(nodes.front()->sizeIsUnknown());
        nodes.front()->setName(directory->name());
        children.insert(children.begin(), directory);
        ASSERT_EQ(nodes.size(), children.size());
        for (std::size_t index = 0; index < nodes.size(); ++index) {
            if (isOlder()) { // the test bundle cannot tell a working copy's URL
                nodes[index]->setURL(children[index]->URL());
            }
            EXPECT_EQ(fieldsOf(*nodes[index]), fieldsOf(*children[index]));
            EXPECT_EQ(nodes[index]->className(), children[index]->className());
            EXPECT_EQ(nodes[index]->exactDate(), children[index]->exactDate());
        }
        EXPECT_FALSE(nodes[1]->sizeIsUnknown());
        EXPECT_NE(nodes[1]->exactDate(), nodes[1]->date());
        EXPECT_NE(nodes[1]->lock(), nullptr);
    }
}

TEST_P(ListVerb, NamesItemsByTheirPathsBelowTheTarget)
{
    const auto workingCopy = repository.checkOut("wc", "trunk");
    const HSVNListChoices kinds{.depth = HSVNDepthInfinity, .allFields = false};
    for (const auto& text : {repository.url("trunk"), workingCopy}) {
        EXPECT_THAT(names(text, kinds), ElementsAre(".", "a.txt", "dir", "dir/b%c.txt"));
    }
    const auto nodes = client->list(workingCopy, HSVNRevisionSpec::HEAD(), kinds);
    EXPECT_EQ(nodes.back()->path()->string(), workingCopy + "/dir/b%c.txt");
    if (!isOlder()) {
        EXPECT_EQ(nodes.back()->URL()->string(), repository.url("trunk/dir/b%25c.txt"));
    }
    EXPECT_TRUE(nodes.back()->sizeIsUnknown());
    EXPECT_THAT(names(repository.url("trunk/a.txt"), {}), ElementsAre("a.txt"));
    int received = 0;
    client->list(workingCopy, HSVNRevisionSpec::HEAD(), kinds, [&](const HSVNNodeRef&) { return ++received < 2; });
    EXPECT_EQ(received, 2) << "false stops it";
}

TEST_P(ListVerb, TellsExternalsAndDepthsWhereTheLineHasThem)
{
    repository.change({"propset", "svn:externals", "^/trunk/dir place", "trunk"});
    const std::vector<std::pair<std::string, HSVNListChoices>> choices{{"depth", {.depth = HSVNDepthFiles}},
                                                                       {"includeExternals", {.includeExternals = true}},
                                                                       {"patterns", {.patterns = {"A*"}}}};
    if (isOlder()) {
        for (const auto& [choice, choosing] : choices) {
            EXPECT_EQ(reasonOf<HSVNUnsupportedFeatureException>(
                          [&, &choosing = choosing] { names(repository.url("trunk"), choosing); }),
                      fmt::format("[HSVNContext list]: '{}' is not offered by the bundle of Subversion {}", choice,
                                  GetParam()));
        }
        return;
    }
    EXPECT_THAT(names(repository.url("trunk"), choices[0].second), ElementsAre(".", "a.txt"));
    EXPECT_THAT(names(repository.url("trunk"), choices[1].second), ElementsAre(".", "a.txt", "dir", ".", "b%c.txt"));
    EXPECT_THAT(names(repository.url("trunk"), choices[2].second), ElementsAre("a.txt"));
    const auto external = client->list(repository.url("trunk"), HSVNRevisionSpec::HEAD(), choices[1].second).back();
    EXPECT_EQ(external->externalParentURL(), repository.url("trunk"));
    EXPECT_EQ(external->externalTarget(), "place");
    EXPECT_EQ(external->copy()->externalTarget(), "place");
    EXPECT_EQ(external->path()->string(), repository.url("trunk/place/b%25c.txt"));
    EXPECT_EQ(external->URL(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Lines, ListVerb, testing::Values("1.14", "1.6", "1.5", "1.4"),
                         [](const auto& line) { return "Line" + std::string{line.param}.replace(1, 1, "_"); });
