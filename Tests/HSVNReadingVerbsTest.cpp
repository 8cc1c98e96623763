// What is read of items and files: by whichever door, and on lines that have the older functions only.

#include "AlteredBundle.h"
#include "Command.h"
#include "HSVNException.h"
#include "HSVNFile.h"
#include "HSVNItemInfo.h"
#include "HSVNLocalPath.h"
#include "HSVNStandardStreams.h"
#include "HSVNURL.h"
#include "ReasonOf.h"
#include "TestRepository.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A working copy with a.txt and dir/b.txt, read through a client of the line that is the test's parameter; that of an
/// older line has the first table's functions only.
class ReadingVerbs : public testing::TestWithParam<std::string>
{
  protected:
    ReadingVerbs()
    {
        _repository.put("a.txt", "first $Rev$\n");
        _repository.makeFolder("dir");
        _repository.put("dir/b.txt", "b\n");
        _root = _repository.checkOut();
    }

    std::string item(const std::string& name) const { return _root + '/' + name; }
    bool isOlder() const { return GetParam() != "1.14"; }

    TestRepository _repository;
    std::string _root;
    HSVNClientRef _client = isOlder() ? clientWithoutExtensions(GetParam()) : std::make_shared<HSVNClient>();
};

TEST_P(ReadingVerbs, TakeTargetsAndRevisionsAsApplicationsHaveThem)
{
    const std::filesystem::path file{item("a.txt")};
    const auto url = HSVNURL::URLWithString(_repository.url("a.txt"));
    const auto* const expected = "first $Rev$\n";
    EXPECT_EQ(_client->contents(file), expected);
    EXPECT_EQ(_client->contents(std::string_view{item("a.txt")}, HSVNRevision::BASE()), expected);
    EXPECT_EQ(_client->contents(url, HSVNRevision::revisionWithNumber(1)), expected);
    EXPECT_THROW(_client->contents(url, HSVNRevision::revisionWithNumber(0)), HSVNException);
    EXPECT_EQ(_client->contents(file, {}, {}), expected);
    for (const HSVNRevisionArgument& nil : {HSVNRevisionArgument{nullptr}, HSVNRevisionArgument{HSVNRevisionRef{}}}) {
        EXPECT_EQ(reasonOf([&] { _client->contents(url, nil); }), "Invalid parameter not satisfying: revision != nil");
    }
    EXPECT_EQ(HSVNTargets(std::set<std::filesystem::path>{file, "~", ""}).texts(),
              (std::vector<std::string>{"", "./~", item("a.txt")}));
    EXPECT_EQ(HSVNTarget{"~"}.text(), HSVNLocalPath{"~"}.string()) << "in a text it is the home directory";
}

TEST_P(ReadingVerbs, InfoTellsOfAnItemInItsWorkingCopy)
{
    mustRun({"svn", "copy", "-q", item("a.txt"), item("copied")});
    const auto items = _client->info(_root, HSVNRevisionSpec::UNSPECIFIED(), {.depth = HSVNDepthInfinity});
    std::vector<std::string> names;
    for (const auto& info : items) {
        EXPECT_EQ(info.repositoryRootURL, _repository.url());
        EXPECT_FALSE(info.uuid->empty());
        if (info.kind == HSVNNodeKindDirectory) {
            EXPECT_EQ(info.workingCopy->depth, GetParam() == "1.4" ? HSVNDepthUnknown : HSVNDepthInfinity);
        }
        names.push_back(std::filesystem::relative(info.target, _root));
    }
    EXPECT_THAT(names, testing::UnorderedElementsAre(".", "a.txt", "copied", "dir", "dir/b.txt"));

    const auto copy = _client->info(item("copied")).at(0);
    EXPECT_EQ(copy.url, _repository.url("copied"));
    EXPECT_EQ(copy.kind, HSVNNodeKindFile);
    EXPECT_EQ(copy.lastChangedRevision, 1);
    EXPECT_EQ(copy.lastChangedDate, HSVNContext{}.info(item("a.txt")).at(0).lastChangedDate);
    ASSERT_TRUE(copy.workingCopy);
    EXPECT_EQ(copy.workingCopy->schedule, HSVNScheduleAdd);
    EXPECT_EQ(copy.workingCopy->copyFromURL, _repository.url("a.txt"));
    EXPECT_EQ(copy.workingCopy->copyFromRevision, 3);
    EXPECT_EQ(copy.workingCopy->checksum->size(), copy.workingCopy->checksumIsSHA1 ? 40U : 32U);
}

TEST_P(ReadingVerbs, InfoTellsOfAnItemOfARepository)
{
    const auto items = _client->info(_repository.url(), HSVNRevisionSpec::HEAD(), {.depth = HSVNDepthInfinity});
    std::vector<std::string> names;
    for (const auto& info : items) {
        EXPECT_FALSE(info.workingCopy);
        EXPECT_EQ(info.revision, 3);
        names.push_back(info.target);
        if (info.target == "a.txt") {
            EXPECT_EQ(info.size, GetParam() == "1.4" ? -1 : 12);
        }
    }
    EXPECT_THAT(names, ElementsAre("repository", "a.txt", "dir", "dir/b.txt"));
}

TEST_P(ReadingVerbs, InfoNamesTheFilesOfAConflict)
{
    mustRun({"svn", "propset", "-q", "color", "red", item("a.txt")});
    std::ofstream{item("a.txt")} << "theirs\n";
    mustRun({"svn", "commit", "-q", "-m", "theirs", _root});
    mustRun({"svn", "update", "-q", "-r", "3", _root});
    mustRun({"svn", "propset", "-q", "color", "blue", item("a.txt")});
    std::ofstream{item("a.txt")} << "mine\n";
    mustRun({"svn", "update", "-q", "--accept", "postpone", _root});
    auto conflicts = _client->info(item("a.txt")).at(0).workingCopy->conflicts;
    std::ranges::sort(conflicts, {}, &HSVNConflictRecord::kind);
    const auto isThere = [](const std::optional<std::string>& path) { return path && std::filesystem::exists(*path); };
    ASSERT_EQ(conflicts.size(), 2U);
    EXPECT_EQ(conflicts[0].kind, HSVNConflictKind::Text);
    EXPECT_TRUE(isThere(conflicts[0].basePath) && isThere(conflicts[0].theirPath) && isThere(conflicts[0].myPath));
    EXPECT_EQ(conflicts[1].kind, HSVNConflictKind::Property);
    EXPECT_TRUE(isThere(conflicts[1].propertyRejectPath));
}

TEST_P(ReadingVerbs, ContentsAreThoseOfTheClassOperation)
{
    for (const auto& [target, revision] : {std::pair{item("a.txt"), HSVNRevisionSpec::BASE()},
                                           std::pair{_repository.url("a.txt"), HSVNRevisionSpec::HEAD()}})
    {
        const auto stream = std::make_shared<HSVNMemoryOutputStream>();
        HSVNFile::catRevision(revision, HSVNPath::pathWithString(target), stream, _client);
        EXPECT_EQ(_client->contents(target, revision), "first $Rev$\n");
        EXPECT_EQ(stream->bytes(), "first $Rev$\n");
    }
}

TEST_P(ReadingVerbs, ASameConditionIsTheSameErrorByWhicheverDoor)
{
    for (const auto& target : {item("none"), item("dir"), _repository.url("none"), _repository.url("dir"),
                               _repository.path(), std::string{"a//./b"}, std::string{"file:///nowhere/a"}})
    {
        const auto path = HSVNPath::pathWithString(target);
        const auto spec =
            std::dynamic_pointer_cast<const HSVNLocalPath>(path) ? HSVNRevisionSpec::BASE() : HSVNRevisionSpec::HEAD();
        const auto failure = [](const auto& call) -> std::string {
            try {
                call();
            } catch (const HSVNException& exception) {
                return exception.className() + ": " + exception.reason();
            }
            return "nothing";
        };
        const auto byClass =
            failure([&] { HSVNFile::catRevision(spec, path, std::make_shared<HSVNMemoryOutputStream>(), _client); });
        EXPECT_EQ(failure([&] { _client->contents(path, spec); }), byClass) << target;
        EXPECT_NE(byClass, "nothing") << target;
    }
}

TEST_P(ReadingVerbs, AReceiverStopsThemByAnExceptionOrByFalse)
{
    int items = 0;
    const auto stop = [&](const auto&) { return ++items == 0; };
    const auto fail = [](const auto&) { throw std::range_error("enough"); };
    const auto spec = HSVNRevisionSpec::UNSPECIFIED();
    _client->info(_root, spec, {.depth = HSVNDepthInfinity}, stop);
    _client->contents(item("a.txt"), spec, {}, stop);
    EXPECT_EQ(items, 2);
    EXPECT_THROW(_client->info(_root, spec, {}, fail), std::range_error);
    EXPECT_THROW(_client->contents(item("a.txt"), spec, {}, fail), std::range_error);
}

TEST_P(ReadingVerbs, WhatAnOlderFunctionCannotDoIsRefusedByName)
{
    const auto spec = HSVNRevisionSpec::UNSPECIFIED();
    const std::vector<std::pair<std::string, std::function<void()>>> calls{
        {"info]: 'includeExternals'", [&] { _client->info(_root, spec, {.includeExternals = true}); }},
        {"info]: 'changelists'", [&] { _client->info(_root, spec, {.changelists = {"list"}}); }},
        {"contents]: 'expandKeywords'", [&] { _client->contents(item("a.txt"), spec, {.expandKeywords = false}); }},
    };
    for (const auto& [refused, call] : calls) {
        const auto expected = "[HSVNContext " + refused + " is not offered by the bundle of Subversion " + GetParam();
        EXPECT_EQ(reasonOf<HSVNUnsupportedFeatureException>(call), isOlder() ? expected : "(nothing was thrown)");
    }
}

INSTANTIATE_TEST_SUITE_P(Line, ReadingVerbs, testing::Values("1.4", "1.5", "1.6", "1.14"),
                         [](const auto& instance) { return "Minor" + instance.param.substr(2); });

} // namespace
