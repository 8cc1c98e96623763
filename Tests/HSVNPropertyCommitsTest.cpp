#include "HSVNItemProperties.h"
#include "HSVNPropertyNames.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"
#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using PropertyCommits = WorkingCopyTest;

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, PropertyCommits, testing::Values("1.14"), lineName);

TEST_P(PropertyCommits, ChangePropertiesOfURLs)
{
    const auto url = HSVNTarget{repository.url("trunk/a.txt")};
    HSVNRevisionNumber told = 0;
    const auto result = client->setProperty(url, client->latestRevision(url), "color", "red",
                                            {.message = "paint", .revisionProperties = {{"why", "art"}}},
                                            [&](const HSVNCommitResult& commit) { told = commit.revision; });
    EXPECT_EQ(result.revision, 2);
    EXPECT_EQ(told, 2);
    EXPECT_EQ(repository.logMessage(2), "paint");
    EXPECT_EQ(client->revisionProperty(url, "why", HSVNRevision::HEAD()), "art");
    EXPECT_EQ(client->property(url, "color").values.front().second, "red");
    EXPECT_EQ(client->setProperty(url, 2, "color", std::nullopt).revision, 3); // the delegate's message
    EXPECT_THAT(client->property(url, "color").values, IsEmpty());
    repository.put("trunk/a.txt", "newer\n");
    EXPECT_THROW(client->setProperty(url, 3, "color", "blue"), HSVNException) << "it is out of date";
    EXPECT_THAT(reasonOf([&] { client->setProperty(url, 4, "svn:eol-style", "odd"); }), HasSubstr("svn:eol-style"));
    for (const char* const name : {"", "two words", "svn:ignore "}) {
        const auto reason = std::string{"Bad property name: '"} + name;
        EXPECT_THAT(reasonOf([&] { client->property(url, name); }), HasSubstr(reason));
        EXPECT_THAT(reasonOf([&] { client->revisionProperty(url, name, HSVNRevision::HEAD()); }), HasSubstr(reason));
    }
    EXPECT_EQ(repository.youngest(), 4);
}

TEST_P(PropertyCommits, RevisionPropertiesKeepWhatSomebodyElseWrote)
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
