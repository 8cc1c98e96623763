#include "HSVNRevisionSpec.h"
#include "HSVNException.h"
#include "HSVNRevisionRange.h"

#include <cstddef>
#include <gtest/gtest.h>

namespace {

HSVNRevisionRef number(HSVNRevisionNumber value) { return HSVNRevision::revisionWithNumber(value); }
HSVNDate second(std::int64_t seconds) { return HSVNDate::dateWithTimeIntervalSince1970(seconds); }
HSVNRevisionRef atSecond(std::int64_t seconds) { return HSVNRevision::revisionAtDate(second(seconds)); }

} // namespace

TEST(RevisionSpec, KeyRevisionIsTheOperativeOneUnlessUnspecified)
{
    const auto peg = HSVNRevisionSpec::pegRevisionWithNumber(7);
    EXPECT_EQ(peg->keyRevision()->description(), "7");
    EXPECT_EQ(peg->number(), 7);
    EXPECT_FALSE(peg->isRelative());

    const auto both = HSVNRevisionSpec::revisionWithRevision(HSVNRevision::HEAD(), number(7));
    EXPECT_EQ(both->keyRevision(), HSVNRevision::HEAD());
    EXPECT_EQ(both->number(), HSVNInvalidRevision);
    EXPECT_TRUE(both->isRelative());

    EXPECT_EQ(HSVNRevisionSpec::pegRevisionAtDate(second(5))->date(), second(5));
    EXPECT_EQ(HSVNRevisionSpec::revisionAtDate(second(5))->operativeRevision()->date(), second(5));
}

TEST(RevisionSpec, DescribesBothRevisions)
{
    EXPECT_EQ(HSVNRevisionSpec(number(123), HSVNRevision::HEAD()).description(), "123@HEAD");
    EXPECT_EQ(HSVNRevisionSpec::HEAD()->description(), "HEAD@UNSPECIFIED");
    EXPECT_EQ(HSVNRevisionSpec::PREVIOUS()->description(), "PREV@UNSPECIFIED");
    EXPECT_EQ(HSVNRevisionSpec::WORKING()->description(), "WORK@UNSPECIFIED");
    EXPECT_EQ(HSVNRevisionSpec::COMMITTED()->description(), "COMMITTED@UNSPECIFIED");
    EXPECT_EQ(HSVNRevisionSpec::BASE()->description(), "BASE@UNSPECIFIED");
    EXPECT_EQ(HSVNRevisionSpec::MINE()->description(), ".mine@UNSPECIFIED");
    EXPECT_EQ(HSVNRevisionSpec::UNSPECIFIED()->description(), "UNSPECIFIED@UNSPECIFIED");
    EXPECT_EQ(HSVNRevisionSpec::HEAD(), HSVNRevisionSpec::HEAD());
}

TEST(RevisionSpec, ACopyIsImmutableAndEqual)
{
    const auto original = HSVNMutableRevisionSpec::revisionWithRevision(number(3), number(4));
    const auto copy = original->copy();
    EXPECT_EQ(copy->className(), "HSVNRevisionSpec");
    EXPECT_EQ(copy->operativeRevision(), original->operativeRevision());
    EXPECT_TRUE(copy->isEqual(original));
    EXPECT_EQ(copy->hash(), original->hash());

    const auto changed = copy->mutableCopy();
    changed->setPegRevision(number(5));
    EXPECT_FALSE(copy->isEqual(changed));
    EXPECT_FALSE(copy->isEqual(nullptr));
    EXPECT_EQ(copy->pegRevision()->number(), 4);
}

TEST(RevisionSpec, SettersAcceptTheirOwnValueAndNil)
{
    const auto spec = HSVNMutableRevisionSpec::revisionWithNumber(3);
    spec->setOperativeRevision(spec->operativeRevision());
    EXPECT_EQ(spec->description(), "3@UNSPECIFIED");
    spec->setOperativeRevision(nullptr);
    EXPECT_EQ(spec->operativeRevision(), HSVNRevision::UNSPECIFIED());
}

TEST(RevisionSpec, RefusesNil)
{
    const auto reasonOf = [](const auto& make) {
        try {
            make();
        } catch (const HSVNAssertionException& exception) {
            return exception.reason();
        }
        return std::string{"no exception"};
    };
    EXPECT_EQ(reasonOf([] { HSVNRevisionSpec{HSVNRevisionRef{}}; }),
              "Invalid parameter not satisfying: theOperativeRevision != nil");
    EXPECT_EQ(reasonOf([] { HSVNRevisionSpec{nullptr}; }),
              "Invalid parameter not satisfying: theOperativeRevision != nil");
    EXPECT_EQ(reasonOf([] { HSVNRevisionSpec::pegRevisionWithRevision(nullptr); }),
              "Invalid parameter not satisfying: thePegRevision != nil");
}

struct RangeCase
{
    HSVNRevisionRef first;
    HSVNRevisionRef last;
    std::vector<HSVNRevisionRef> inside;
    std::vector<HSVNRevisionRef> outside;
    std::string description;
};

class RevisionRange : public testing::TestWithParam<RangeCase>
{
};

TEST_P(RevisionRange, ContainsItsInclusiveBoundsAndNeverMixesNumbersWithDates)
{
    const auto range = HSVNRevisionRange::from(GetParam().first, GetParam().last);
    EXPECT_EQ(range->description(), GetParam().description);
    for (const auto& revision : GetParam().inside) {
        EXPECT_TRUE(range->containsRevision(revision)) << *revision;
    }
    for (const auto& revision : GetParam().outside) {
        EXPECT_FALSE(range->containsRevision(revision)) << *revision;
    }
    EXPECT_TRUE(range->copy()->isEqual(range));
    EXPECT_EQ(range->copy()->hash(), range->hash());
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, RevisionRange,
    testing::Values(
        RangeCase{HSVNRevision::UNSPECIFIED(), HSVNRevision::UNSPECIFIED(), {number(0), atSecond(-9)}, {}, "{ * - * }"},
        RangeCase{
            number(10), HSVNRevision::UNSPECIFIED(), {number(10), number(11)}, {number(9), atSecond(50)}, "{ 10 - * }"},
        RangeCase{HSVNRevision::UNSPECIFIED(), number(10), {number(0), number(10)}, {number(11)}, "{ * - 10 }"},
        RangeCase{number(3), number(5), {number(3), number(5)}, {number(2), number(6)}, "{ 3 - 5 }"},
        RangeCase{atSecond(86400 * 300),
                  HSVNRevision::UNSPECIFIED(),
                  {atSecond(86400 * 300), atSecond(86400 * 301)},
                  {atSecond(86400 * 300 - 1), number(1), number(1000)},
                  "{ " + atSecond(86400 * 300)->description() + " - * }"}));

TEST(RevisionRange, AnswersWhatItsBoundsAre)
{
    const auto range = HSVNRevisionRange::to(atSecond(9));
    EXPECT_FALSE(range->hasLowerBound());
    EXPECT_TRUE(range->hasUpperBound());
    EXPECT_TRUE(range->isDateRange());
    EXPECT_FALSE(range->isNumberRange());
    EXPECT_EQ(range->lastDate(), second(9));
    EXPECT_EQ(range->lastNumber(), HSVNInvalidRevision);
    EXPECT_TRUE(HSVNRevisionRange::all()->isEqual(std::make_shared<HSVNRevisionRange>()));
    EXPECT_FALSE(HSVNRevisionRange::from(number(1))->isEqual(HSVNRevisionRange::to(number(1))));
}

TEST(RevisionRange, RefusesSymbolicRevisionsAndNil)
{
    const auto range = HSVNRevisionRange::all();
    EXPECT_THROW(range->setFirst(HSVNRevision::HEAD()), HSVNAssertionException);
    EXPECT_THROW(range->setLast(nullptr), HSVNAssertionException);
    EXPECT_THROW(HSVNRevisionRange::from(HSVNRevision::MINE()), HSVNAssertionException);
    EXPECT_THROW(range->containsNumber(-1), HSVNAssertionException);
    EXPECT_THROW(range->containsDate(std::nullopt), HSVNAssertionException);
    EXPECT_THROW(range->containsRevision(nullptr), HSVNAssertionException);
    EXPECT_EQ(range->description(), "{ * - * }");
    try {
        range->containsRevision(HSVNRevision::HEAD());
        FAIL() << "HEAD was compared";
    } catch (const HSVNException& exception) {
        EXPECT_EQ(exception.reason(), "Date or numeric revision required for range match");
    }
}
