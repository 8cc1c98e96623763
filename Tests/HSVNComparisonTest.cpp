#include "HSVNComparison.h"
#include "HSVNClient.h"
#include "HSVNClientSettings.h"
#include "HSVNPlatformException.h"
#include "TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

const std::pair bothRevisions{HSVNRevision::revisionWithNumber(1), HSVNRevision::revisionWithNumber(2)};

/// A file that the second revision changed.
class Comparison : public testing::Test
{
  protected:
    Comparison()
    {
        _repository.put("file", "first\n");
        _repository.put("file", "second\n");
    }

    /// What an external program, as the configuration names it, makes of the change.
    std::string textBy(const HSVNConfigurationOption& program) const
    {
        const auto client = HSVNClient::clientWithDelegate(nullptr);
        HSVNClientSettings settings;
        settings.options = {{"config", "helpers", "diff-cmd", "echo"}, program};
        client->applySettings(settings);
        std::string text;
        HSVNCompareRevisions(_repository.url(), HSVNRevision::HEAD(), bothRevisions, {},
                             {[&](std::string_view bytes) { text += bytes; }, {}}, client);
        return text;
    }

    TestRepository _repository;
    HSVNContextRef _context = std::make_shared<HSVNContext>();
};

TEST_F(Comparison, AReceiverGetsTheTextInItsOrder)
{
    EXPECT_EQ(textBy({"config", "helpers", "diff-cmd", std::nullopt}),
              "Index: file\n"
              "===================================================================\n"
              "--- file\t(revision 1)\n+++ file\t(revision 2)\n@@ -1 +1 @@\n-first\n+second\n");
}

TEST_F(Comparison, AReceiverGetsWhatAnExternalProgramWrites)
{
    EXPECT_THAT(textBy({"config", "helpers", "diff-extensions", "--some arguments"}),
                HasSubstr("\n--some arguments -L"));
}

TEST_F(Comparison, ASummaryNamesItemsRelativeToTheTarget)
{
    std::vector<std::string> paths;
    HSVNSummarizeItems(
        {_repository.url(), bothRevisions.first}, {_repository.url(), bothRevisions.second}, {},
        [&](const HSVNDifference& difference) {
            paths.push_back(difference.path);
            EXPECT_EQ(difference.status, HSVNStatusKindModified);
        },
        _context);
    EXPECT_EQ(paths, std::vector<std::string>{"file"});
}

TEST_F(Comparison, AnExceptionOfAReceiverReachesTheCaller)
{
    const auto stop = [](const auto&) { throw std::range_error("enough"); };
    const auto peg = HSVNRevision::HEAD();
    EXPECT_THROW(HSVNCompareRevisions(_repository.url(), peg, bothRevisions, {}, {stop, stop}, _context),
                 std::range_error);
    EXPECT_THROW(HSVNSummarizeRevisions(_repository.url(), peg, bothRevisions, {}, stop, _context), std::range_error);
}

TEST_F(Comparison, NilArgumentsAreRefused)
{
    const std::pair<std::string, HSVNRevisionRef> item{_repository.url(), nullptr};
    EXPECT_THROW(HSVNCompareItems(item, item, {}, {}, _context), HSVNAssertionException);
    EXPECT_THROW(HSVNSummarizeRevisions("", nullptr, bothRevisions, {}, {}, _context), HSVNAssertionException);
    EXPECT_THROW(HSVNCompareRevisions("", bothRevisions.first, bothRevisions, {}, {}, nullptr), HSVNAssertionException);
}

} // namespace
