#include "AlteredBundle.h"
#include "HSVNBlamedLine.h"
#include "HSVNException.h"
#include "HSVNPlatformException.h"
#include "ReasonOf.h"
#include "TestRepository.h"

#include <gmock/gmock.h>
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
    HSVNContext{}.blame(repository.url("file"), wholeRange, {}, receive);
    EXPECT_EQ(lines, (std::vector<std::string>{"1 old", std::string{"2 n\0w", 5}}));
    HSVNContext context;
    const auto all = context.blame(repository.url("file"));
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[1].text, (std::string{"n\0w", 3}));
    EXPECT_EQ(all[1].change->revision, 2);
    const auto former = context.blame({repository.url("file"), HSVNRevision::revisionWithNumber(1)});
    EXPECT_EQ(former.at(1).text, "older") << "as it was in the revision of the target";
}

TEST(Blame, AReceiverStopsItByAnExceptionOrByFalse)
{
    const TestRepository repository;
    repository.put("file", "line\nline\n");
    const auto fail = [](const HSVNBlamedLine&) { throw std::range_error("enough"); };
    HSVNContext context;
    EXPECT_THROW(context.blame(repository.url("file"), wholeRange, {}, fail), std::range_error);
    int lines = 0;
    context.blame(repository.url("file"), wholeRange, {}, [&](const HSVNBlamedLine&) { return ++lines == 0; });
    EXPECT_EQ(lines, 1);
}

TEST(Blame, WrongArgumentsAreRefused)
{
    HSVNContext context;
    const auto ignore = [](const HSVNBlamedLine&) {};
    EXPECT_THROW(context.checkBlameArguments({"-w", "--nonsense"}), HSVNException);
    EXPECT_NO_THROW(context.checkBlameArguments({"-w"}));
    EXPECT_THROW(context.blame("", {nullptr, HSVNRevision::HEAD()}, {}, ignore), HSVNAssertionException);
    EXPECT_THAT(reasonOf<HSVNUnsupportedFeatureException>(
                    [&] { clientWithoutExtensions("1.4")->blame("", wholeRange, {}, ignore); }),
                testing::HasSubstr("[HSVNContext blame] is not offered by the bundle of Subversion 1.4"));
}

} // namespace
