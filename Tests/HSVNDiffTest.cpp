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

    std::string textOf(const HSVNContextRef& context, const HSVNDiffChoices& choices) const
    {
        std::string text;
        context->diff(_repository.url(), bothRevisions, choices, [&](std::string_view bytes) { text += bytes; });
        return text;
    }

    TestRepository _repository;
    HSVNContextRef _context = std::make_shared<HSVNContext>();
};

struct ProgramRow
{
    const char* name;
    HSVNDiffChoices choices;
    std::string part; ///< of the text
};

void PrintTo(const ProgramRow& row, std::ostream* out) { *out << row.name; }

class DiffPrograms : public Diff, public testing::WithParamInterface<ProgramRow>
{
};

TEST_P(DiffPrograms, CompareAsTheyAreChosen)
{
    const auto client = HSVNClient::clientWithDelegate(nullptr);
    HSVNClientSettings settings;
    settings.options = {{"config", "helpers", "diff-cmd", "echo"},
                        {"config", "helpers", "diff-extensions", "--user s"}};
    client->applySettings(settings);
    EXPECT_THAT(textOf(client, GetParam().choices), HasSubstr(GetParam().part));
    EXPECT_EQ(client->optionForName("diff-cmd", "config", "helpers", std::nullopt), "echo");
    const HSVNTarget file{_repository.url("file")};
    std::string ofService;
    HSVNDiff::ofItems({file, bothRevisions.first}, {file, bothRevisions.second}, client)
        .writeUnified("a", "b", [&](std::string_view bytes) { ofService += bytes; });
    EXPECT_EQ(ofService, "--- a\n+++ b\n@@ -1 +1 @@\n-first\n+second\n") << "a program was run";
}

using Words = std::vector<std::string>;
INSTANTIATE_TEST_SUITE_P(
    Choices, DiffPrograms,
    testing::Values(
        ProgramRow{"Internal", {}, "\n--- file\t(revision 1)\n+++ file\t(revision 2)\n@@ -1 +1 @@\n-first\n+second\n"},
        ProgramRow{"InternalWithArguments", {.arguments = Words{"-w"}}, "\n-first\n+second\n"},
        ProgramRow{"Configured", {.program = HSVNDiffProgram::Configured}, "\n--user s -L"},
        ProgramRow{"ConfiguredWithArguments",
                   {.program = HSVNDiffProgram::Configured, .arguments = Words{"--own"}},
                   "\n--own -L"},
        ProgramRow{"External", {.program = HSVNDiffProgram::External, .command = "/bin/echo"}, "\n-u -L"},
        ProgramRow{"ExternalWithArguments",
                   {.program = HSVNDiffProgram::External, .command = "/bin/echo", .arguments = Words{"--own"}},
                   "\n--own -L"}),
    [](const auto& instance) { return std::string{instance.param.name}; });

TEST_F(Diff, AnExternalProgramHasAName)
{
    EXPECT_THROW(textOf(_context, {.program = HSVNDiffProgram::External}), HSVNAssertionException);
    EXPECT_THROW(textOf(_context, {.program = HSVNDiffProgram::External, .command = "/nowhere/at/all"}), HSVNException);
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
    const auto all = _context->diffSummary(_repository.url(), bothRevisions);
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all.front().path, "file");
    EXPECT_EQ(_context->diffSummary({_repository.url(), bothRevisions.first}, _repository.url()).size(), 1U);
}

TEST_F(Diff, IsOneTextWithoutAReceiver)
{
    const auto text = _context->diff(_repository.url(), bothRevisions);
    EXPECT_EQ(text, textOf(_context, {}));
    EXPECT_EQ(_context->diff({_repository.url(), bothRevisions.first}, {_repository.url(), bothRevisions.second}),
              text);
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
