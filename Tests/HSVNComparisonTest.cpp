// Compares texts by the bundles of every line and by the installed programs. HSVN_COMPARISON_PAIRS says how many pairs
// (120), HSVN_COMPARISON_SEED which ones.

#include "EnvironmentNumber.h"
#include "HSVNBundleLoader.h"
#include "HSVNDiff.h"
#include "HSVNStatusCodes.h"
#include "HSVNThreeWayDiff.h"
#include "Internal/FileState.h"
#include "RandomTexts.h"
#include "ReasonOf.h"
#include "TestBundles.h"
#include "WorkingCopyTest.h"

#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <limits>
#include <map>
#include <set>
#include <sys/stat.h>
#include <tuple>
#include <utility>

namespace {

namespace files = std::filesystem;
using Side = HSVNDiffSide;
using SectionKind = HSVNDiffSectionKind;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

/// Of the real line where it is built, too: its texts need no working copy.
HSVNContextRef contextOf(const std::string& line)
{
    const auto version = HSVNVersion::versionWithString(line);
    const auto real = HSVNBundleLoader::sharedInstance().bundleForVersion(version);
    return std::make_shared<HSVNContext>(real ? HSVNBundleRef{real} : bundleOfLine(version));
}

/// The lines whose older tables there are, and all that are built.
std::set<std::string> linesOfTexts()
{
    std::set<std::string> lines{"1.4", "1.5", "1.6"};
    for (const auto& loaded : HSVNBundleLoader::sharedInstance().loadedVersions()) {
        lines.insert(loaded.versionWithMajorAndMinorComponents().versionString());
    }
    return lines;
}

/// From 1.7 on lines leave out what texts have in common at both ends before they compare them. Those before may choose
/// other lines as common where there are several that are alike.
bool isBefore1_7(const std::string& line)
{
    const auto version = HSVNVersion::versionWithString(line);
    const auto real = HSVNBundleLoader::sharedInstance().bundleForVersion(version);
    return real && HSVNBundleLoader::sharedInstance().versionForBundle(real)->tag().empty() &&
           version.isLessThan(HSVNVersion::versionWithString("1.7"));
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        auto end = std::min(text.find_first_of("\r\n", start), text.size() - 1) + 1;
        end += text.substr(end - 1, 2) == "\r\n" ? 1 : 0;
        lines.push_back(text.substr(start, end - start));
        start = end;
    }
    return lines;
}

using UnifiedChanges = std::vector<HSVNDiffSection>;

/// The changed sections that a unified text shows, by the name of the file.
std::map<std::string, UnifiedChanges> changesIn(const std::string& unified)
{
    std::map<std::string, UnifiedChanges> result;
    UnifiedChanges* changes = nullptr;
    long left[2] = {0, 0};
    HSVNDiffLines at[2];
    bool isNew = true;
    for (const auto& line : linesOf(unified)) {
        if (left[0] + left[1] > 0) {
            const char sign = line[0];
            if (sign == '\\') {
                continue;
            }
            if (sign == ' ') {
                isNew = true;
            } else if (isNew) {
                changes->push_back({SectionKind::Changed, {at[0].first, 0}, {at[1].first, 0}, {}});
                isNew = false;
            }
            for (const int side : {0, 1}) {
                if (sign == ' ' || sign == "-+"[side]) {
                    --left[side];
                    ++at[side].first;
                    if (sign != ' ') {
                        ++(side == 0 ? changes->back().original : changes->back().modified).count;
                    }
                }
            }
        } else if (line.starts_with("Index: ")) {
            changes = &result[line.substr(7, line.size() - 8)];
        } else if (line.starts_with("@@ ")) {
            left[0] = left[1] = 1;
            if (std::sscanf(line.c_str(), "@@ -%ld,%ld", &at[0].first, &left[0]) == 0 ||
                std::sscanf(line.c_str() + line.find('+'), "+%ld,%ld", &at[1].first, &left[1]) == 0)
            {
                ADD_FAILURE() << line;
            }
            for (const int side : {0, 1}) {
                at[side].first -= left[side] > 0 ? 1 : 0;
            }
            isNew = true;
        }
    }
    return result;
}

/// The changed sections, after a look at whether all of them follow one another and lead from the one text to the
/// other.
UnifiedChanges checkedChanges(const HSVNDiff& diff, const std::string& original, const std::string& modified)
{
    UnifiedChanges changes;
    std::string made;
    std::int64_t lines[2] = {0, 0};
    bool isAfterCommon = false;
    for (const auto& section : diff.sections()) {
        EXPECT_FALSE(std::exchange(isAfterCommon, section.isCommon()) && section.isCommon());
        EXPECT_EQ(section.original.first, lines[0]);
        EXPECT_EQ(section.modified.first, lines[1]);
        lines[0] = section.original.end();
        lines[1] = section.modified.end();
        made += diff.text(section, section.isCommon() ? Side::Original : Side::Modified);
        if (!section.isCommon()) {
            changes.push_back(section);
        }
    }
    EXPECT_EQ(lines[0], std::ssize(linesOf(original)));
    EXPECT_EQ(made, modified);
    return changes;
}

std::int64_t changedLines(const UnifiedChanges& changes)
{
    std::int64_t count = 0;
    for (const auto& change : changes) {
        count += change.original.count + change.modified.count;
    }
    return count;
}

/// A text that a comparison is made of, and what a program makes of it.
class ComparedFile : public testing::Test
{
  protected:
    /// What `change` adds when it shows what a comparison found.
    static std::string changesOf(const HSVNDiff& diff)
    {
        std::string text;
        for (const auto& section : diff.sections()) {
            for (const Side side : {Side::Original, Side::Modified}) {
                for (const auto& line : section.isCommon() ? std::vector<std::string>{} : diff.lines(section, side)) {
                    text += (side == Side::Original ? "-" : "+") + line;
                }
            }
        }
        return text;
    }

    TemporaryFolder folder;
    HSVNContextRef context = contextOf("1.14");
};

struct LineChange
{
    const char* name;
    std::function<void(const std::string& file)> make;
};

void PrintTo(const LineChange& change, std::ostream* out) { *out << change.name; }

class ChangedFile : public ComparedFile, public testing::WithParamInterface<LineChange>
{
};

void overwrite(const std::string& file, const std::string& bytes)
{
    const int descriptor = open(file.c_str(), O_WRONLY);
    EXPECT_EQ(pwrite(descriptor, bytes.data(), bytes.size(), 0), std::ssize(bytes));
    close(descriptor);
}

} // namespace

TEST(RandomTextsCompared, HaveTheSectionsOfSubversionOnEveryLine)
{
    const TestRepository repository;
    const std::string root = repository.checkOut();
    std::map<std::string, std::pair<std::string, std::string>> pairs;
    const auto seed = numberFromEnvironment("HSVN_COMPARISON_SEED", 1);
    for (std::uint32_t number = 0; number < numberFromEnvironment("HSVN_COMPARISON_PAIRS", 120); ++number) {
        RandomTexts random{seed * 1000000 + number};
        const auto lines = random.lines();
        const std::string original = random.text(lines);
        pairs[root + "/" + std::to_string(number)] = {original, random.text(random.changed(lines))};
    }
    for (const auto& [file, texts] : pairs) {
        writeFile(file, texts.first);
        writeFile(repository.beside("before/" + files::path{file}.filename().string()), texts.first);
    }
    mustRun({"svn", "add", "--force", "--quiet", root});
    mustRun({"svn", "commit", "--quiet", "-m", "before", root});
    for (const auto& [file, texts] : pairs) {
        writeFile(file, texts.second);
    }
    auto expected = changesIn(mustRun({"svn", "diff", "--force", "--internal-diff", root}));
    for (const auto& line : linesOfTexts()) {
        const auto context = contextOf(line);
        for (const auto& [file, texts] : pairs) {
            SCOPED_TRACE(line + " " + file);
            const std::string before = repository.beside("before/" + files::path{file}.filename().string());
            const auto found = checkedChanges(HSVNDiff::ofFiles(before, file, context), texts.first, texts.second);
            if (isBefore1_7(line)) {
                EXPECT_LE(changedLines(found), changedLines(expected[file]));
            } else {
                EXPECT_EQ(found, expected[file]);
            }
            EXPECT_EQ(checkedChanges(HSVNDiff::ofTexts(texts.first, texts.second, context), texts.first, texts.second),
                      found);
            if (line == "1.14" && (texts.first + texts.second).find('\r') == std::string::npos) {
                const auto least = runCommand({"diff", "-d", "-a", "--unchanged-line-format=", "--old-line-format=.",
                                               "--new-line-format=.", before, file});
                EXPECT_LE(changedLines(found), std::ssize(least.output));
            }
        }
    }
}

TEST(RandomTextsMerged, AreWhatSubversionMakesOfThem)
{
    const TestRepository repository;
    const std::string root = repository.checkOut();
    struct Texts
    {
        std::string base;
        std::string mine;
        std::string theirs;
    };
    std::map<std::string, Texts> all;
    const auto seed = numberFromEnvironment("HSVN_COMPARISON_SEED", 1);
    for (std::uint32_t number = 0; number < numberFromEnvironment("HSVN_COMPARISON_PAIRS", 120); ++number) {
        RandomTexts random{seed * 1000000 + number};
        const auto lines = random.lines();
        const auto mine = random.changed(lines);
        const auto theirs = random.changed(number % 4 == 0 ? mine : lines);
        all[root + "/" + std::to_string(number)] = {random.text(lines), random.text(mine), random.text(theirs)};
    }
    const auto write = [&](std::string Texts::*text) {
        for (const auto& [file, texts] : all) {
            writeFile(file, texts.*text);
        }
    };
    write(&Texts::base);
    mustRun({"svn", "add", "--force", "--quiet", "--no-auto-props", root});
    mustRun({"svn", "propdel", "--quiet", "-R", "svn:mime-type", root});
    mustRun({"svn", "commit", "--quiet", "-m", "base", root});
    write(&Texts::theirs);
    mustRun({"svn", "commit", "--quiet", "-m", "theirs", root});
    mustRun({"svn", "update", "--quiet", "-r", "1", root});
    write(&Texts::mine);
    mustRun({"svn", "update", "--quiet", "--accept", "postpone", root});
    for (const auto& line : linesOfTexts()) {
        const auto context = contextOf(line);
        for (const auto& [file, texts] : all) {
            SCOPED_TRACE(line + " " + file);
            const auto diff = HSVNThreeWayDiff::ofTexts(texts.base, texts.mine, texts.theirs, context);
            for (const auto& [part, text] : {std::pair{HSVNMergePart::Base, &Texts::base},
                                             {HSVNMergePart::Mine, &Texts::mine},
                                             {HSVNMergePart::Theirs, &Texts::theirs}})
            {
                EXPECT_EQ(diff.merged(std::vector<HSVNSectionChoice>(diff.sections().size(), {part})), texts.*text);
            }
            if (!isBefore1_7(line)) {
                EXPECT_EQ(diff.merged({}, {.mine = "<<<<<<< .mine", .base = "||||||| .r1", .theirs = ">>>>>>> .r2"}),
                          readFile(file));
                EXPECT_EQ(diff.hasConflicts(), files::exists(file + ".mine"));
            }
        }
    }
}

TEST_F(ComparedFile, TellsItsLineEnds)
{
    struct Row
    {
        std::string text;
        HSVNLineEnds ends;
        std::optional<std::string> style;
    };
    const std::string big(70000, 'x');
    for (const Row& row : std::vector<Row>{{"", {}, std::nullopt},
                                           {"a", {0, 0, 0, true}, std::nullopt},
                                           {"a\nb\n", {2, 0, 0, false}, "LF"},
                                           {"a\r\nb", {0, 1, 0, true}, "CRLF"},
                                           {"\r\r", {0, 0, 2, false}, "CR"},
                                           {"a\n\r\n\rb\r", {1, 1, 2, false}, std::nullopt},
                                           {std::string(65535, 'x') + "\r\n" + big, {0, 1, 0, true}, "CRLF"},
                                           {std::string(65535, 'x') + "\r" + big + "\r", {0, 0, 2, false}, "CR"}})
    {
        writeFile(folder / "file", row.text);
        for (const auto& diff :
             {HSVNDiff::ofFiles(folder / "file", folder / "file", context), HSVNDiff::ofTexts(row.text, "", context)})
        {
            EXPECT_EQ(diff.lineEnds(Side::Original), row.ends);
            EXPECT_EQ(diff.lineEnds(Side::Original).style(), row.style);
        }
    }
}

TEST_F(ComparedFile, ReadsSomeOfManyLinesAndStopsWhenToldTo)
{
    std::string text;
    for (int line = 0; line < 3000; ++line) {
        text += "line " + std::to_string(line) + "\n";
    }
    const std::string longLine(10 << 20, 'y');
    writeFile(folder / "a", text + longLine + "\nend\n");
    writeFile(folder / "b", text + longLine + "z\nend\n");
    const auto diff = HSVNDiff::ofFiles(folder / "a", folder / "b", context);
    ASSERT_EQ(diff.sections().size(), 3U);
    EXPECT_EQ(diff.lines(diff.sections()[1], Side::Original), std::vector{longLine + "\n"});
    EXPECT_EQ(diff.text(diff.sections()[2], Side::Modified), "end\n");
    for (const int first : {0, 255, 256, 257, 2999}) {
        std::vector<std::string> lines;
        diff.readLines(Side::Modified, {first, 9}, [&](std::string_view line) {
            lines.emplace_back(line);
            return lines.size() < 2;
        });
        EXPECT_EQ(lines.front(), "line " + std::to_string(first) + "\n");
        EXPECT_EQ(lines.size(), 2U);
    }
    constexpr std::int64_t many = std::numeric_limits<std::int64_t>::max();
    for (const HSVNDiffLines& none : {HSVNDiffLines{3002, 5}, {-5, 5}, {-many, many}, {many, many}, {0, -1}}) {
        diff.readLines(Side::Original, none, [](std::string_view) { ADD_FAILURE(); });
    }
    HSVNDiffSection section{SectionKind::Changed, {-2, 3}, {3001, many}, {}};
    EXPECT_EQ(diff.text(section, Side::Original), "line 0\n");
    EXPECT_EQ(diff.text(section, Side::Modified), "end\n");
}

TEST_F(ComparedFile, IsStagedByChoice)
{
    writeFile(folder / "before", "1\r\n2\r\n3\r\n4");
    writeFile(folder / "after", "one\r\n2\r\n3\r\nfour\r\nfive");
    auto compared = HSVNDiff::ofFiles(folder / "before", folder / "after", context);
    const auto diff = std::move(compared);
    EXPECT_THROW(compared.hasDifferences(), HSVNAssertionException); // NOLINT(bugprone-use-after-move)
    ASSERT_EQ(diff.sections().size(), 3U);
    for (const auto& [chosen, text] :
         std::map<std::vector<std::size_t>, std::string>{{{}, "1\r\n2\r\n3\r\n4"},
                                                         {{0}, "one\r\n2\r\n3\r\n4"},
                                                         {{2, 1}, "1\r\n2\r\n3\r\nfour\r\nfive"},
                                                         {{2, 0}, "one\r\n2\r\n3\r\nfour\r\nfive"}})
    {
        EXPECT_EQ(diff.staged(chosen), text);
    }
    EXPECT_THROW(diff.staged({0, 3}), HSVNInvalidArgumentException);
    EXPECT_THROW(diff.writeStaged({}, nullptr), HSVNAssertionException);
}

TEST_F(ComparedFile, IsWrittenInAFormThatCanBeReadAgain)
{
    const auto options = HSVNDiffOptions::defaults();
    options->setContextLines(std::numeric_limits<std::int32_t>::max()); // which Subversion would count one by one
    EXPECT_THAT(options->choices().arguments, testing::Optional(testing::ElementsAre("--context=1000000")));
    const auto diff = HSVNDiff::ofTexts("1\n2\n3\n4\n5\n", "1\n2\n3\n4\nfive\n", context, options);
    const auto written = [&diff](const std::string& label, const std::string& encoding) {
        std::string text;
        diff.writeUnified(
            label, "b", [&text](std::string_view bytes) { text += bytes; }, encoding);
        return text;
    };
    EXPECT_EQ(written("\xc3\xa4", "ISO-8859-1"), "--- \xe4\n+++ b\n@@ -1,5 +1,5 @@\n 1\n 2\n 3\n 4\n-5\n+five\n");
    for (const auto& [label, encoding] : {std::pair<std::string, std::string>{"a\n+++ c", "UTF-8"},
                                          {"\xff", "UTF-8"},
                                          {"a", "UTF-16LE"},
                                          {"a", "no such encoding"}})
    {
        EXPECT_THROW(written(label, encoding), HSVNInvalidArgumentException) << encoding;
    }
}

TEST_F(ComparedFile, IgnoresWhatItIsToldTo)
{
    writeFile(folder / "a", "one two\nthree\n");
    writeFile(folder / "b", "one  two\nth ree\r\n");
    struct Row
    {
        std::int32_t whitespace;
        bool ignoreEnds;
        std::string changes;
    };
    for (const Row& row : {Row{0, false, "-one two\n-three\n+one  two\n+th ree\r\n"},
                           Row{1, true, "-three\n+th ree\r\n"}, Row{2, false, "-three\n+th ree\r\n"}, Row{2, true, ""}})
    {
        const auto options = HSVNDiffOptions::defaults();
        options->setWhitespaceCompareBehavior(row.whitespace);
        options->setIgnoreEOLStyle(row.ignoreEnds);
        const auto diff = HSVNDiff::ofFiles(folder / "a", folder / "b", context, options);
        EXPECT_EQ(changesOf(diff), row.changes);
        EXPECT_EQ(diff.hasDifferences(), !row.changes.empty());
    }
}

TEST_F(ComparedFile, MustBeThereAndAFile)
{
    writeFile(folder / "a", "a\n");
    EXPECT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const std::string& bad :
         {folder / "nothing", folder.path().string(), folder / "pipe", std::string{"http://host/a"}})
    {
        const auto reason = [&](auto call) { return reasonOf<HSVNException>(call); };
        EXPECT_THAT(reason([&] { HSVNDiff::ofFiles(bad, folder / "a", context); }), HasSubstr(bad));
        EXPECT_THAT(reason([&] { HSVNThreeWayDiff::ofFiles({}, folder / "a", bad, context); }), HasSubstr(bad));
    }
    EXPECT_EQ(reasonOf([&] { HSVNDiff::ofTexts("", "", nullptr); }),
              "Invalid parameter not satisfying: context != nil");
}

TEST_F(ComparedFile, IsStampedBeforeTheClockThatWouldStampAChange)
{
    for (int round = 0; round < 20; ++round) {
        const std::string file = folder / "file";
        writeFile(file, "text\n");
        const auto state = HSVNFileState::of(file);
        timespec now{};
        clock_gettime(CLOCK_REALTIME_COARSE, &now);
        struct stat status
        {
        };
        ASSERT_EQ(stat(file.c_str(), &status), 0);
        EXPECT_GT(std::tie(now.tv_sec, now.tv_nsec), std::tie(status.st_ctim.tv_sec, status.st_ctim.tv_nsec));
        state.requireSame(file);
    }
}

TEST_P(ChangedFile, IsNoOtherText)
{
    const std::string file = folder / "file";
    writeFile(file, "one\ntwo\n");
    writeFile(folder / "other", "one\nTWO\n");
    const auto diff = HSVNDiff::ofFiles(folder / "other", file, context);
    GetParam().make(file);
    const auto expectRefusal = [&](const std::function<void()>& read) {
        try {
            read();
            ADD_FAILURE() << "read";
        } catch (const HSVNException& exception) {
            EXPECT_EQ(exception.status(), HSVNStatusCode::DiffSourceModified);
            EXPECT_EQ(exception.reason(), "'" + file + "' changed after it was compared");
        }
    };
    expectRefusal([&] { diff.lines(diff.sections().back(), Side::Modified); });
    expectRefusal([&] { diff.writeUnified("a", "b", [](std::string_view) {}); });
    EXPECT_EQ(diff.lines(diff.sections().back(), Side::Original), std::vector<std::string>{"TWO\n"});
}

INSTANTIATE_TEST_SUITE_P(
    Ways, ChangedFile,
    testing::Values(LineChange{"overwritten at once", [](const std::string& file) { overwrite(file, "ONE"); }},
                    LineChange{"changed and given its old time",
                               [](const std::string& file) {
                                   const auto time = files::last_write_time(file);
                                   overwrite(file, "ONE");
                                   files::last_write_time(file, time);
                               }},
                    LineChange{"longer", [](const std::string& file) { writeFile(file, "one\ntwo\nthree\n"); }},
                    LineChange{"replaced by its like",
                               [](const std::string& file) {
                                   writeFile(file + ".new", readFile(file));
                                   files::rename(file + ".new", file);
                               }},
                    LineChange{"removed", [](const std::string& file) { files::remove(file); }}));

TEST_F(ComparedFile, IsMergedByChoice)
{
    const auto diff = HSVNThreeWayDiff::ofTexts("1\nb\n2\n3\n4\n", "1\nm\n2\nM\n4\n", "1\nt\n2\n3\nT\n", context);
    std::vector<SectionKind> kinds;
    for (const auto& section : diff.sections()) {
        kinds.push_back(section.kind);
    }
    ASSERT_THAT(kinds, ElementsAre(SectionKind::Common, SectionKind::Conflict, SectionKind::Common,
                                   SectionKind::ChangedInMine, SectionKind::ChangedInTheirs));
    EXPECT_THAT(diff.words(diff.sections()[1], Side::Mine, Side::Theirs).original, ElementsAre(HSVNWordRange{0, 1}));
    struct Row
    {
        HSVNSectionChoice choice;
        std::string text;
    };
    for (const Row& row :
         {Row{{HSVNMergePart::Base}, "b\n"}, Row{{HSVNMergePart::Mine}, "m\n"}, Row{{HSVNMergePart::Theirs}, "t\n"},
          Row{{HSVNMergePart::MineThenTheirs}, "m\nt\n"}, Row{{HSVNMergePart::TheirsThenMine}, "t\nm\n"},
          Row{{HSVNMergePart::Other, "own"}, "own"}, Row{{HSVNMergePart::Other, ""}, ""},
          Row{{HSVNMergePart::Automatic}, "<<<<<<< mine\nm\n||||||| base\nb\n=======\nt\n>>>>>>> theirs\n"}})
    {
        EXPECT_EQ(diff.merged({{HSVNMergePart::Base}, row.choice, {}, {}, {HSVNMergePart::Mine}}),
                  "1\n" + row.text + "2\nM\n4\n");
    }
    EXPECT_THAT(diff.merged({}, {.showsBase = false}), AllOf(HasSubstr("\nm\n=======\nt\n>>>")));
    EXPECT_EQ(HSVNThreeWayDiff::ofTexts("", "m", "t", context).merged(),
              "<<<<<<< mine\nm||||||| base\n=======\nt>>>>>>> theirs\n");
}
