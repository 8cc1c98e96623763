// Comparisons of versioned files on every line, and what they write.

#include "AlteredBundle.h"
#include "HSVNConflictedItem.h"
#include "HSVNDiff.h"
#include "HSVNThreeWayDiff.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <cstdlib>
#include <gmock/gmock.h>

namespace {

namespace files = std::filesystem;
using Side = HSVNDiffSide;
using testing::AllOf;
using testing::HasSubstr;

HSVNRevisionSpecRef numbered(HSVNRevisionNumber revision) { return HSVNRevisionSpec::revisionWithNumber(revision); }

/// What the changed sections remove and add.
std::string changesOf(const HSVNDiff& diff)
{
    std::string text;
    for (const auto& section : diff.sections()) {
        if (!section.isCommon()) {
            text += "-" + diff.text(section, Side::Original) + "+" + diff.text(section, Side::Modified);
        }
    }
    return text;
}

class DiffItems : public WorkingCopyTest
{
  protected:
    DiffItems()
    {
        files::create_directory(repository.beside("temporary"));
        setenv("TMPDIR", repository.beside("temporary").c_str(), 1);
        mustRun({"svn", "propset", "--quiet", "svn:keywords", "Rev Author", item("a.txt")});
        mustRun({"svn", "propset", "--quiet", "svn:eol-style", "CRLF", item("a.txt")});
        writeFile(item("a.txt"), "two\r\n$Rev$\r\n");
        commitAll(); // revision 2
        mustRun({"svn", "move", "--quiet", repository.url("trunk/b.txt"), repository.url("trunk/moved.txt"), "-m", ""});
        writeFile(item("a.txt"), "work\r\n$Rev: 2 $\r\n");
    }
    ~DiffItems() override { _before.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", _before.c_str(), 1); }

    std::string changes(const HSVNTargetInRevision& original, const HSVNTargetInRevision& modified) const
    {
        return changesOf(HSVNDiff::ofItems(original, modified, client));
    }

  private:
    std::string _before = std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "";
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, DiffItems, everyLine(), lineName);

TEST_P(DiffItems, AreComparedInAnyState)
{
    const std::string file = item("a.txt");
    const auto base = HSVNRevisionSpec::BASE();
    const auto url = repository.url("trunk/a.txt");
    EXPECT_EQ(changes({file, base}, {file, HSVNRevisionSpec::WORKING()}), "-two\r\n+work\r\n"); // keywords are alike
    EXPECT_EQ(changes({file, base}, file), "-two\r\n+work\r\n");
    EXPECT_EQ(changes({file, numbered(1)}, {file, base}), "-a.txt\n+two\r\n$Rev$\r\n");
    EXPECT_EQ(changes({url, numbered(2)}, {file, base}), "");
    EXPECT_EQ(changes(url, file), "-two\r\n+work\r\n");
    EXPECT_EQ(changes({item("dir/c.txt"), base}, item("b.txt")), "-dir/c.txt\n+b.txt\n");
    const auto pegged = HSVNRevisionSpec::revisionWithRevision(HSVNRevision::revisionWithNumber(1),
                                                               HSVNRevision::revisionWithNumber(3));
    EXPECT_EQ(changes({repository.url("trunk/moved.txt"), pegged}, item("b.txt")), "");
    files::create_symlink("target", item("link"));
    mustRun({"svn", "add", "--quiet", item("link")});
    commitAll();
    files::remove(item("link"));
    files::create_symlink("other", item("link"));
    EXPECT_EQ(changes({item("link"), base}, item("link")), "-link target+link other");
    EXPECT_TRUE(files::is_empty(repository.beside("temporary"))) << "a file is left";
}

TEST_P(DiffItems, AreMergedAsStates)
{
    const auto diff = HSVNThreeWayDiff::ofItems({item("a.txt"), numbered(1)}, {item("a.txt"), HSVNRevisionSpec::BASE()},
                                                item("a.txt"), client);
    ASSERT_TRUE(diff.hasConflicts());
    EXPECT_THAT(diff.merged(), HasSubstr("mine\r\ntwo\r\n$Rev$\r\n||||||| base\r\na.txt\n=======\r\nwork\r\n"));
}

TEST_P(DiffItems, ThatAreNoneAreRefused)
{
    for (const std::string& bad : {item("nothing"), item("dir"), repository.url("nothing")}) {
        EXPECT_THAT(reasonOf<HSVNException>([&] { changes(bad, item("a.txt")); }),
                    HasSubstr(files::path{bad}.filename().string()));
    }
}

TEST_P(DiffItems, AreWrittenAsSubversionWritesThem)
{
    const std::string file = item("dir/c.txt");
    std::string text;
    for (int line = 0; line < 30; ++line) {
        text += line == 9 ? "int function()\n" : "  line " + std::to_string(line) + "\n";
    }
    writeFile(file, text);
    commitAll();
    writeFile(file, text.replace(text.find("line 20"), 5, "LINE ").replace(text.find("line 5"), 6, "line  5") + "open");
    struct Row
    {
        std::string arguments;
        std::function<void(HSVNDiffOptions&)> set;
    };
    for (const Row& row :
         {Row{"", [](auto&) {}}, Row{"-b", [](auto& options) { options.setWhitespaceCompareBehavior(1); }},
          Row{"-w", [](auto& options) { options.setWhitespaceCompareBehavior(2); }},
          Row{"-p", [](auto& options) { options.setShowFunctions(true); }},
          Row{"-U 1", [](auto& options) { options.setContextLines(1); }}, Row{"-p -U 0", [](auto& options) {
                                                                                  options.setShowFunctions(true);
                                                                                  options.setContextLines(0);
                                                                              }}})
    {
        const auto options = HSVNDiffOptions::defaults();
        row.set(*options);
        const std::string expected = mustRun({"svn", "diff", "--internal-diff", "-x", row.arguments, file});
        std::string written;
        HSVNDiff::ofItems({file, HSVNRevisionSpec::BASE()}, file, client, options)
            .writeUnified(file + "\t(revision 4)", file + "\t(working copy)",
                          [&](std::string_view bytes) { written += bytes; });
        EXPECT_EQ(written, expected.substr(expected.find("---"))) << row.arguments;
        std::string byVerb;
        client->diff({file, HSVNRevisionSpec::BASE()}, {file, HSVNRevisionSpec::WORKING()}, options->choices(),
                     [&](std::string_view bytes) { byVerb += bytes; });
        EXPECT_EQ(byVerb, expected) << row.arguments;
    }
}

TEST_P(DiffItems, AreComparedByABundleWithoutTheSecondTable)
{
    const auto old = clientWithoutExtensions(GetParam());
    const auto options = HSVNDiffOptions::defaults();
    options->setContextLines(1);
    const auto diff = HSVNDiff::ofTexts("a\nb\n", "a\nc\n", old, options);
    EXPECT_EQ(changesOf(diff), "-b\n+c\n");
    EXPECT_EQ(changesOf(HSVNDiff::ofItems({item("a.txt"), HSVNRevisionSpec::BASE()}, item("b.txt"), old)).substr(0, 6),
              "-two\r\n");
    EXPECT_THAT(
        reasonOf<HSVNUnsupportedFeatureException>([&] { diff.writeUnified("a", "b", [](std::string_view) {}); }),
        AllOf(HasSubstr("[HSVNDiff writeUnified:]: 'contextLines'"), HasSubstr(GetParam())));
    EXPECT_THAT(reasonOf<HSVNUnsupportedFeatureException>([&] { HSVNThreeWayDiff::ofTexts("", "", "", old); }),
                HasSubstr("[HSVNThreeWayDiff diffOfTexts:] is not offered"));
}
