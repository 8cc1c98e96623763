// Verbs that lines before 1.7 or 1.8 have no functions for: layouts, merge information, properties of URLs.

#include "AlteredBundle.h"
#include "HSVN.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <functional>
#include <gmock/gmock.h>
#include <map>
#include <utility>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// A branch with a change that trunk does not have, in revision 3.
class NewerVerbs : public WorkingCopyTest
{
  protected:
    NewerVerbs()
    {
        repository.change({"cp", "HEAD", "trunk", "branch"});
        writeFile(repository.beside("changed"), "changed\n");
        repository.change({"put", repository.beside("changed"), "branch/a.txt"});
        mustRun({"svn", "update", "--quiet", root});
    }
    HSVNTarget branch() const { return repository.url("branch"); }
    std::vector<HSVNRevisionNumber> revisions(const HSVNMergedRevisionsChoices& choices) const
    {
        std::vector<HSVNRevisionNumber> numbers;
        for (const auto& item : client->mergedRevisions(branch(), HSVNTarget{root}, choices)) {
            numbers.push_back(item->revision());
        }
        return numbers;
    }
};

class LackedVerbs : public NewerVerbs
{
  protected:
    void SetUp() override
    {
        client = clientWithoutExtensions(GetParam());
        client->setDelegate(delegate);
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, NewerVerbs, testing::Values("1.14"), lineName);
INSTANTIATE_TEST_SUITE_P(Lines, LackedVerbs, recordedLines(), lineName);

TEST_P(LackedVerbs, AreRefusedByName)
{
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"patch", [this] { client->patch(item("changes.patch"), root); }},
        {"mergingSummary", [this] { client->mergingSummary(branch(), HSVNTarget{root}); }},
        {"mergedRevisions", [this] { revisions({}); }},
        {"layout", [this] { client->layout(root); }},
        {"setProperty", [this] { client->setProperty(branch(), 1, "color", "red"); }},
        {"storedCredentials", [this] { client->storedCredentials(); }},
        {"removeStoredCredentials", [this] { client->removeStoredCredentials([](const auto&) { return false; }); }},
    };
    for (const auto& [verb, call] : calls) {
        EXPECT_EQ(reasonOf<HSVNUnsupportedFeatureException>(call),
                  "[HSVNContext " + std::string{verb} + "] is not offered by the bundle of Subversion " + GetParam());
    }
}

TEST_P(NewerVerbs, ALayoutTellsWhatIsNotAsTheDirectoryAbove)
{
    mustRun({"svn", "update", "--quiet", "-r1", item("b.txt")});
    mustRun({"svn", "update", "--quiet", "--set-depth=empty", item("dir")});
    mustRun({"svn", "switch", "--quiet", repository.url("branch/a.txt"), item("a.txt")});
    std::map<std::string, HSVNLayoutItem> items; // Subversion tells what is in a directory in any order
    for (const auto& told : client->layout(root)) {
        EXPECT_TRUE(told.path.empty() || items.contains("")) << "the directory comes first";
        items[told.path] = told;
    }
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items.at("").revision, 3);
    EXPECT_EQ(items.at("").depth, HSVNDepthInfinity);
    EXPECT_EQ(items.at("a.txt").url, repository.url("branch/a.txt"));
    EXPECT_EQ(items.at("b.txt").revision, 1);
    EXPECT_TRUE(items.at("b.txt").hasOwnRevision);
    EXPECT_EQ(items.at("dir").depth, HSVNDepthEmpty);
    EXPECT_TRUE(items.at("dir").hasOwnDepth);
    EXPECT_FALSE(items.at("dir").hasOwnRevision);
}

TEST_P(NewerVerbs, MergeInformationFollowsAMerge)
{
    const auto before = client->mergingSummary(branch(), HSVNTarget{root});
    EXPECT_EQ(before.ancestor.url, repository.url("trunk"));
    EXPECT_EQ(before.ancestor.revision, 1);
    EXPECT_EQ(before.base.revision, 1);
    EXPECT_EQ(before.source.url, repository.url("branch"));
    EXPECT_EQ(before.source.revision, 3);
    EXPECT_EQ(before.target.url, repository.url("trunk"));
    EXPECT_EQ(before.repositoryRoot, repository.url());
    EXPECT_FALSE(before.reintegrates);
    EXPECT_THAT(revisions({}), IsEmpty());
    EXPECT_THAT(revisions({.eligible = true}), ElementsAre(3));
    mustRun({"svn", "merge", "--quiet", repository.url("branch"), root});
    commitAll();
    mustRun({"svn", "update", "--quiet", root});
    EXPECT_THAT(revisions({}), ElementsAre(2, 3));
    const auto third = HSVNRevision::revisionWithNumber(3);
    EXPECT_THAT(revisions({.range = {third, third}}), ElementsAre(3));
    EXPECT_THAT(revisions({.eligible = true}), IsEmpty());
    EXPECT_EQ(client->mergingSummary(branch(), HSVNTarget{root}).base.revision, 3);
    EXPECT_TRUE(client->mergingSummary(HSVNTarget{repository.url("trunk")}, branch()).reintegrates);
}

TEST_P(NewerVerbs, MergedRevisionsStopWhenTheirReceiverHasEnough)
{
    int count = 0;
    client->mergedRevisions(branch(), HSVNTarget{root}, {.eligible = true}, [&](const HSVNLogItemRef& item) {
        ++count;
        EXPECT_EQ(item->changedPaths(), std::vector<std::string>{"/branch/a.txt"});
        return false;
    });
    EXPECT_EQ(count, 1);
}

TEST_P(NewerVerbs, PropertiesOfURLsAreCommitted)
{
    const auto url = HSVNTarget{repository.url("trunk/a.txt")};
    HSVNRevisionNumber told = 0;
    const auto result = client->setProperty(url, client->latestRevision(url), "color", "red",
                                            {.message = "paint", .revisionProperties = {{"why", "art"}}},
                                            [&](const HSVNCommitResult& commit) { told = commit.revision; });
    EXPECT_EQ(result.revision, 4);
    EXPECT_EQ(told, 4);
    EXPECT_EQ(repository.logMessage(4), "paint");
    EXPECT_EQ(client->revisionProperty(url, "why", HSVNRevision::HEAD()), "art");
    EXPECT_EQ(client->property(url, "color").values.front().second, "red");
    EXPECT_EQ(client->setProperty(url, 4, "color", std::nullopt).revision, 5); // the delegate's message
    EXPECT_THAT(client->property(url, "color").values, IsEmpty());
    repository.put("trunk/a.txt", "newer\n");
    EXPECT_THROW(client->setProperty(url, 5, "color", "blue"), HSVNException) << "it is out of date";
    EXPECT_THAT(reasonOf([&] { client->setProperty(url, 6, "svn:eol-style", "odd"); }), HasSubstr("svn:eol-style"));
    EXPECT_EQ(repository.youngest(), 6);
}

TEST_P(NewerVerbs, LatestRevisionsAreThoseOfTheServer)
{
    repository.put("trunk/new.txt", "");
    EXPECT_EQ(client->latestRevision(root), 4);
    EXPECT_EQ(client->latestRevision(repository.url()), 4);
    EXPECT_THROW(client->latestRevision(repository.beside("nowhere")), HSVNPlatformException);
}

TEST_P(NewerVerbs, RevisionPropertiesKeepWhatSomebodyElseWrote)
{
    mustRun({"bash", "-c", "printf '#!/bin/sh\n' > \"$0\" && chmod +x \"$0\"",
             repository.path() + "/hooks/pre-revprop-change"});
    const auto url = HSVNTarget{repository.url()};
    const auto first = HSVNRevision::revisionWithNumber(1);
    const auto set = [&](const char* value, const std::optional<std::string>& former) {
        client->setRevisionProperty(url, "color", value, first, {.formerValue = former});
    };
    set("red", std::nullopt);
    EXPECT_THROW(set("blue", std::nullopt), HSVNException);
    EXPECT_THROW(set("blue", "green"), HSVNException);
    set("blue", "red");
    EXPECT_EQ(client->revisionProperty(url, "color", first), "blue");
}
