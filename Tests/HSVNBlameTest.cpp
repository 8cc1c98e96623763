#include "HSVNBlame.h"
#include "HSVNException.h"
#include "HSVNPlatformException.h"
#include "TestRepository.h"

#include <gtest/gtest.h>

namespace {

const std::pair wholeRange{HSVNRevision::revisionWithNumber(1), HSVNRevision::HEAD()};

TEST(Blame, EachLineComesWithTheRevisionThatChangedIt)
{
    const TestRepository repository;
    repository.put("file", "old\nolder\n");
    repository.put("file", std::string{"old\nn\0w\n", 8});
    std::vector<std::string> lines;
    const auto receive = [&](const HSVNBlamedLine& line) {
        EXPECT_EQ(line.number, static_cast<std::int64_t>(lines.size()));
        EXPECT_EQ(line.youngestRevision, 2);
        EXPECT_EQ(line.change->properties.count("svn:date"), 1U);
        lines.push_back(std::to_string(line.change->revision) + " " + std::string{line.text});
    };
    HSVNReadBlame(repository.url("file"), HSVNRevision::HEAD(), wholeRange, {}, receive,
                  std::make_shared<HSVNContext>());
    EXPECT_EQ(lines, (std::vector<std::string>{"1 old", std::string{"2 n\0w", 5}}));
}

TEST(Blame, AnExceptionOfTheReceiverReachesTheCaller)
{
    const TestRepository repository;
    repository.put("file", "line\n");
    const auto stop = [](const HSVNBlamedLine&) { throw std::range_error("enough"); };
    const auto context = std::make_shared<HSVNContext>();
    EXPECT_THROW(HSVNReadBlame(repository.url("file"), HSVNRevision::HEAD(), wholeRange, {}, stop, context),
                 std::range_error);
}

TEST(Blame, WrongArgumentsAreRefused)
{
    const auto context = std::make_shared<HSVNContext>();
    EXPECT_THROW(HSVNCheckBlameArguments({"-w", "--nonsense"}, context), HSVNException);
    EXPECT_NO_THROW(HSVNCheckBlameArguments({"-w"}, context));
    EXPECT_THROW(HSVNReadBlame("", nullptr, wholeRange, {}, {}, context), HSVNAssertionException);
    EXPECT_THROW(HSVNReadBlame("", HSVNRevision::HEAD(), wholeRange, {}, {}, nullptr), HSVNAssertionException);
}

} // namespace
