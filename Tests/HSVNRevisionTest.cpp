#include "HSVNRevision.h"

#include "HSVNBundleLoader.h"
#include "HSVNException.h"
#include "Internal/Subversion.h"

#include <ctime>
#include <gtest/gtest.h>
#include <map>

namespace {

HSVNDate localDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    std::tm local{};
    local.tm_year = year - 1900;
    local.tm_mon = month - 1;
    local.tm_mday = day;
    local.tm_hour = hour;
    local.tm_min = minute;
    local.tm_sec = second;
    local.tm_isdst = -1;
    return HSVNDate::dateWithTimeIntervalSince1970(std::mktime(&local));
}

HSVNRevisionRef revisionNumbered(HSVNRevisionNumber value) { return HSVNRevision::revisionWithNumber(value); }
HSVNRevisionRef revisionAtSecond(std::int64_t second)
{
    return HSVNRevision::revisionAtDate(HSVNDate::dateWithTimeIntervalSince1970(second));
}

} // namespace

struct RevisionText
{
    std::string text;
    std::uint32_t behavior;
    std::string expected; ///< the description; "nil" for nil
};

class RevisionParsing : public testing::TestWithParam<RevisionText>
{
};

TEST_P(RevisionParsing, AcceptsOnlyTheFormsItsFlagsAllow)
{
    const auto revision = HSVNRevision::revisionFromString(GetParam().text, GetParam().behavior);
    EXPECT_EQ(revision ? revision->description() : "nil", GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RevisionParsing,
    testing::Values(RevisionText{"head", 127, "HEAD"}, RevisionText{"Base", 2, "BASE"}, RevisionText{"PREV", 4, "PREV"},
                    RevisionText{"work", 8, "WORK"}, RevisionText{"committed", 16, "COMMITTED"},
                    RevisionText{"HEAD", 32, "nil"}, RevisionText{"HEAD", 126, "nil"}, RevisionText{"BASE", 125, "nil"},
                    RevisionText{"PREV", 123, "nil"}, RevisionText{"WORK", 119, "nil"},
                    RevisionText{"COMMITTED", 111, "nil"}, RevisionText{"12", 1, "nil"},
                    RevisionText{"", 0, "UNSPECIFIED"}, RevisionText{"  12", 127, "12"},
                    RevisionText{"\xC2\xA0 12", 32, "12"}, RevisionText{"+7", 32, "7"}, RevisionText{"+-7", 32, "nil"},
                    RevisionText{"12 ", 127, "nil"}, RevisionText{"12a", 127, "nil"}, RevisionText{" ", 127, "nil"},
                    RevisionText{"2147483647", 127, "2147483647"}, RevisionText{"2147483648", 127, "nil"},
                    RevisionText{"99999999999999999999", 127, "nil"}, RevisionText{"-99999999999", 127, "nil"},
                    RevisionText{".mine", 127, "nil"}, RevisionText{"UNSPECIFIED", 127, "nil"},
                    RevisionText{"{2026-11-21}", 127, "nil"}, RevisionText{"\xFF\xFE", 127, "nil"},
                    RevisionText{"11/21/26", 64, "2026-11-21"}, RevisionText{"11/21/26", 63, "nil"}));

TEST(Revision, NamesGiveTheSharedInstances)
{
    EXPECT_EQ(HSVNRevision::revisionFromString("Head"), HSVNRevision::HEAD());
    EXPECT_EQ(HSVNRevision::revisionFromString(std::nullopt), HSVNRevision::UNSPECIFIED());
    EXPECT_THROW(HSVNRevision::revisionFromString("-3"), HSVNAssertionException);
}

TEST(Revision, ParsesWholeDatesOfTheFourStylesOfTheLocale)
{
    for (const char* text : {"11/21/26", "Nov 21, 2026", "November 21, 2026", "Saturday, November 21, 2026"}) {
        EXPECT_EQ(HSVNRevision::parseDateString(text), localDate(2026, 11, 21)) << text;
    }
    for (const char* text : {"", "11/21/26 at noon", "13/41/26", "Nov 21", "2026-11-21"}) {
        EXPECT_EQ(HSVNRevision::parseDateString(text), std::nullopt) << text;
    }
}

TEST(RevisionDeathTest, ParsesDatesAsTheLocaleOfTimesWritesThem)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe"; // a process that has asked for no date yet
    const auto parse = [] {
        unsetenv("LC_ALL");
        setenv("LC_MESSAGES", "de_DE.UTF-8", 1);
        std::exit(HSVNRevision::parseDateString("02/01/26") == localDate(2026, 2, 1) ? 0 : 1);
    };
    EXPECT_EXIT(parse(), testing::ExitedWithCode(0), "");
}

TEST(Revision, ConvertsToSubversionAndBack)
{
    const std::map<HSVNRevisionRef, svn_opt_revision_kind> kinds{
        {HSVNRevision::UNSPECIFIED(), svn_opt_revision_unspecified},
        {revisionNumbered(42), svn_opt_revision_number},
        {revisionAtSecond(90), svn_opt_revision_date},
        {HSVNRevision::COMMITTED(), svn_opt_revision_committed},
        {HSVNRevision::PREVIOUS(), svn_opt_revision_previous},
        {HSVNRevision::BASE(), svn_opt_revision_base},
        {HSVNRevision::WORKING(), svn_opt_revision_working},
        {HSVNRevision::HEAD(), svn_opt_revision_head}};
    for (const auto& [revision, kind] : kinds) {
        const auto record = revision->SVNRevision();
        EXPECT_EQ(record.kind, kind);
        EXPECT_TRUE(HSVNRevision::revisionFromSVNRevision(&record)->isEqual(revision)) << *revision;
    }
    EXPECT_EQ(revisionNumbered(42)->SVNRevision().value.number, 42);
    EXPECT_EQ(revisionAtSecond(90)->SVNRevision().value.date, 90'000'000);
}

TEST(Revision, RefusesWhatCannotBeConverted)
{
    try {
        HSVNRevision::MINE()->SVNRevision();
        FAIL() << "MINE has a Subversion record";
    } catch (const HSVNException& exception) {
        EXPECT_EQ(exception.reason(), "Cannot convert from HSVNMineRevision to svn_opt_revision_t");
    }
    EXPECT_THROW(HSVNNumberedRevision{-7}.SVNRevision(), HSVNAssertionException);
    svn_opt_revision_t record{};
    record.kind = svn_opt_revision_number;
    record.value.number = 3'000'000'000;
    EXPECT_THROW(HSVNRevision::revisionFromSVNRevision(&record), HSVNInvalidArgumentException);
    record.value.number = -5;
    EXPECT_THROW(HSVNRevision::revisionFromSVNRevision(&record), HSVNAssertionException);
    record.kind = svn_opt_revision_date;
    record.value.date = 0;
    EXPECT_THROW(HSVNRevision::revisionFromSVNRevision(&record), HSVNAssertionException);
    EXPECT_THROW(HSVNRevision::revisionFromSVNRevision(nullptr), HSVNAssertionException);
    EXPECT_THROW(HSVNRevision::revisionWithNumber(-1), HSVNAssertionException);
    EXPECT_THROW(HSVNRevision::revisionAtDate(std::nullopt), HSVNAssertionException);
    EXPECT_THROW(HSVNRelativeRevision(svn_opt_revision_number, "5"), HSVNInvalidArgumentException);
}

TEST(Revision, OnlyMovingRevisionsAreRelative)
{
    for (const auto& revision : {HSVNRevision::HEAD(), HSVNRevision::BASE(), HSVNRevision::PREVIOUS(),
                                 HSVNRevision::WORKING(), HSVNRevision::COMMITTED(), HSVNRevision::MINE()})
    {
        EXPECT_TRUE(revision->isRelative()) << *revision;
    }
    for (const auto& revision : {HSVNRevision::UNSPECIFIED(), revisionNumbered(1), revisionAtSecond(1)}) {
        EXPECT_FALSE(revision->isRelative()) << *revision;
    }
}

TEST(Revision, CopiesAreEqualFreshObjectsOfTheSameClass)
{
    for (const auto& revision :
         {HSVNRevision::HEAD(), HSVNRevision::BASE(), HSVNRevision::MINE(), revisionNumbered(7), revisionAtSecond(7)})
    {
        const auto copy = revision->copy();
        EXPECT_NE(copy, revision);
        EXPECT_TRUE(copy->isEqual(revision));
        EXPECT_EQ(copy->hash(), revision->hash());
        EXPECT_EQ(copy->className(), revision->className());
    }
    EXPECT_EQ(HSVNRevision::revision()->className(), "HSVNHeadRevision");
    EXPECT_NE(HSVNRevision::revision(), HSVNRevision::HEAD());
}

TEST(Revision, EqualityIsByKindAndValue)
{
    EXPECT_EQ(HSVNRelativeRevision(5, "BASE"), HSVNRelativeRevision(5, "another name"));
    EXPECT_EQ(HSVNRelativeRevision(7, "HEAD"), *HSVNRevision::HEAD());
    EXPECT_FALSE(*revisionNumbered(5) == *HSVNRevision::BASE());
    EXPECT_FALSE(*revisionNumbered(5) == *revisionNumbered(6));
    EXPECT_FALSE(*revisionAtSecond(5) == *revisionNumbered(5));
    EXPECT_FALSE(*HSVNRevision::MINE() == *HSVNRevision::UNSPECIFIED());
    EXPECT_FALSE(HSVNRevision::HEAD()->isEqual(nullptr));
}

TEST(Revision, OrdersNumbersThenDatesThenSymbolicOnesByKind)
{
    const std::vector<HSVNRevisionRef> ascending{
        revisionNumbered(5),  revisionNumbered(6),       revisionAtSecond(-5),
        revisionAtSecond(5),  HSVNRevision::COMMITTED(), HSVNRevision::PREVIOUS(),
        HSVNRevision::BASE(), HSVNRevision::WORKING(),   HSVNRevision::HEAD()};
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t j = 0; j < ascending.size(); ++j) {
            const int order = i == j ? 0 : (i < j ? -1 : 1);
            EXPECT_EQ(ascending[i]->compare(ascending[j]), order) << *ascending[i] << " " << *ascending[j];
        }
    }
    EXPECT_EQ(revisionNumbered(0)->compare(nullptr), HSVNOrderedDescending);
    EXPECT_EQ(HSVNRevision::MINE()->compare(HSVNRevision::UNSPECIFIED()), HSVNOrderedSame);
    EXPECT_EQ(revisionAtSecond(1)->compare(HSVNRevision::MINE()), HSVNOrderedAscending);
    EXPECT_EQ(HSVNRevision::MINE()->compare(HSVNRevision::BASE()), HSVNOrderedAscending);
}

TEST(Date, DropsTheMicrosecondsOfSubversionTimes)
{
    EXPECT_EQ(HSVNDate::dateWithAPRTime(1'500'000), HSVNDate{1'000'000});
    EXPECT_EQ(HSVNDate::dateWithAPRTime(-1'500'000), HSVNDate{-1'000'000});
    EXPECT_EQ(HSVNDate::dateWithAPRTime(0), std::nullopt);
    EXPECT_EQ(HSVNDate::dateWithTimeIntervalSince1970(std::numeric_limits<std::int64_t>::max()).APRTime(),
              9'223'372'036'854'000'000);
    EXPECT_EQ(HSVNDate{1'999'999}.APRTime(), 1'000'000);
    EXPECT_EQ(HSVNDate{-1'999'999}.APRTime(), -1'000'000);
}

TEST(Date, PrintsTheTimeOnlyWhenNoPartOfItIsZero)
{
    EXPECT_EQ(localDate(2026, 11, 21, 10, 11, 12).ISO8601StringValue(), "2026-11-21T10:11:12");
    EXPECT_EQ(localDate(2026, 1, 2).ISO8601StringValue(), "2026-01-02");
    EXPECT_EQ(localDate(2026, 1, 2, 14, 30).ISO8601StringValue(), "2026-01-02");
    EXPECT_EQ(localDate(2026, 1, 2, 0, 30, 1).ISO8601StringValue(), "2026-01-02");
}

TEST(Date, DescribesItselfInUniversalTime)
{
    EXPECT_EQ(HSVNDate{1'795'250'220'500'000}.description(), "2026-11-21 08:37:00 +0000");
    EXPECT_EQ(HSVNDate{-1}.description(), "1969-12-31 23:59:59 +0000");
    EXPECT_EQ(HSVNDate{std::numeric_limits<std::int64_t>::min()}.description(), "-290308-12-21 19:59:05 +0000");
}

TEST(Date, ParsesSubversionTextWithTheNewestBundle)
{
    HSVNBundleLoader::sharedInstance().loadBundlesInDirectoryAtPath(HSVNBundleLoader::defaultBundleDirectory());
    EXPECT_EQ(HSVNDate::dateWithISO8601String("2026-11-21T08:37:00.987654Z"), HSVNDate{1'795'250'220'000'000});
    EXPECT_EQ(HSVNDate::dateWithISO8601String("2020-02-29T23:59:59.000001Z"), HSVNDate{1'583'020'799'000'000});
    EXPECT_EQ(HSVNDate::dateWithISO8601String(std::nullopt), std::nullopt);
    EXPECT_THROW(HSVNDate::dateWithISO8601String("yesterday-ish"), HSVNException);
    EXPECT_THROW(HSVNBundleCurrent(), HSVNGenericException) << "the call left its bundle behind";
}
