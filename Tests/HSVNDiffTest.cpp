#include "HSVNDiff.h"
#include "HSVNClient.h"
#include "HSVNClientSettings.h"
#include "HSVNDifference.h"
#include "HSVNPlatformException.h"
#include "TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

const std::pair bothRevisions{HSVNRevision::revisionWithNumber(1), HSVNRevision::revisionWithNumber(2)};

/// A file that the second revision changed.
class Diff : public testing::Test
{
  protected:
    Diff()
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
        client->diff(_repository.url(), bothRevisions, {}, [&](std::string_view bytes) { text += bytes; });
        const HSVNTarget file{_repository.url("file")};
        std::string ofService;
        HSVNDiff::ofItems({file, bothRevisions.first}, {file, bothRevisions.second}, client)
            .writeUnified("a", "b", [&](std::string_view bytes) { ofService += bytes; });
        EXPECT_EQ(ofService, "--- a\n+++ b\n@@ -1 +1 @@\n-first\n+second\n") << "a program was run";
        return text;
    }

    TestRepository _repository;
    HSVNContextRef _context = std::make_shared<HSVNContext>();
};

TEST_F(Diff, AReceiverGetsTheTextInItsOrder)
{
    EXPECT_EQ(textBy({"config", "helpers", "diff-cmd", std::nullopt}),
              "Index: file\n"
              "===================================================================\n"
              "--- file\t(revision 1)\n+++ file\t(revision 2)\n@@ -1 +1 @@\n-first\n+second\n");
}

TEST_F(Diff, AReceiverGetsWhatAnExternalProgramWrites)
{
    EXPECT_THAT(textBy({"config", "helpers", "diff-extensions", "--some arguments"}),
                HasSubstr("\n--some arguments -L"));
}

TEST_F(Diff, ASummaryNamesItemsRelativeToTheTarget)
{
    std::vector<std::string> paths;
    _context->diffSummary({_repository.url(), bothRevisions.first}, _repository.url(), {},
                          [&](const HSVNDifference& difference) {
                              paths.push_back(difference.path);
                              EXPECT_EQ(difference.status, HSVNStatusKindModified);
                          });
    EXPECT_EQ(paths, std::vector<std::string>{"file"});
}

TEST_F(Diff, AReceiverStopsItByAnExceptionOrByFalse)
{
    const auto fail = [](const auto&) { throw std::range_error("enough"); };
    EXPECT_THROW(_context->diff(_repository.url(), bothRevisions, {}, fail, fail), std::range_error);
    EXPECT_THROW(_context->diffSummary(_repository.url(), bothRevisions, {}, fail), std::range_error);
    int pieces = 0;
    _context->diff(_repository.url(), bothRevisions, {}, [&](std::string_view) { return ++pieces == 0; });
    _context->diffSummary(_repository.url(), bothRevisions, {}, [&](const auto&) { return ++pieces == 0; });
    EXPECT_EQ(pieces, 2);
}

TEST_F(Diff, NilRevisionsAreRefused)
{
    const std::pair<HSVNRevisionRef, HSVNRevisionRef> nilRevisions{nullptr, HSVNRevision::HEAD()};
    EXPECT_THROW(_context->diff(_repository.url(), nilRevisions, {}, {}), HSVNAssertionException);
    EXPECT_THROW(_context->diffSummary(_repository.url(), nilRevisions, {}, [](const auto&) {}),
                 HSVNAssertionException);
}

} // namespace
