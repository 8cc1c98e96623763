// Trees compared as Subversion compares them. HSVN_TREE_SEEDS says how many generated ones (3).

#include "HSVNTreeDiff.h"
#include "AlteredBundle.h"
#include "EnvironmentNumber.h"
#include "HSVNDifference.h"
#include "HSVNReadingChoices.h"
#include "HSVNStagedText.h"
#include "ReasonOf.h"
#include "WorkingCopyTest.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <map>
#include <random>
#include <sstream>

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

namespace files = std::filesystem;

/// What a file's change is to be told as.
struct Expected
{
    HSVNPatchChange change = HSVNPatchChange::Modified;
    std::string source{};                ///< of a copy
    std::string color{};                 ///< what the property becomes
    std::optional<std::string> before{}; ///< the text; nil of a binary file, or of one that is the same
    std::string after{};
};

/// Makes up a tree of files, and changes of every kind.
class RandomTree
{
  public:
    RandomTree(unsigned seed, std::string root) : _random{seed}, _root{std::move(root)} {}

    void fill()
    {
        for (int number = 0; number < count; ++number) {
            const auto name = nameOf(number);
            writeFile(_root + '/' + name, number % 8 == 7 ? std::string{"\0\1", 2} : text());
        }
        mustRun({"svn", "add", "--quiet", "--force", _root});
        mustRun({"svn", "commit", "--quiet", "-m", "fill", _root});
        mustRun({"svn", "update", "--quiet", _root});
    }

    /// Changes every file in the way of its number.
    void change()
    {
        for (int number = 0; number < count; ++number) {
            change(number, nameOf(number));
        }
    }

    std::map<std::string, Expected> expected; ///< by name below the root, in the working copy

  private:
    static constexpr int count = 24;

    static std::string nameOf(int number) { return fmt::format("d{}/a file {}", number % 3, number); }
    std::size_t upTo(std::size_t limit) { return std::uniform_int_distribution<std::size_t>{0, limit}(_random); }

    std::string text()
    {
        constexpr std::array<const char*, 4> ends{"\n", "\n", "\r\n", "\r"};
        std::string made;
        for (auto lines = upTo(30); lines > 0; --lines) {
            made += fmt::format("{} {}{}", upTo(1) == 0 ? "line" : "--", upTo(9), ends.at(upTo(3)));
        }
        return made + (upTo(3) == 0 ? "no end" : "\n");
    }

    std::string editedText(const std::string& before)
    {
        auto after = before;
        for (auto edits = 1 + upTo(3); edits > 0; --edits) {
            after.insert(upTo(after.size()), fmt::format("new {}{}", upTo(99), upTo(1) == 0 ? "\n" : ""));
        }
        return after;
    }

    void edit(const std::string& name, Expected& told)
    {
        told.before = readFile(_root + '/' + name);
        told.after = editedText(*told.before);
        writeFile(_root + '/' + name, told.after);
    }

    void change(int number, const std::string& name)
    {
        const std::string path = _root + '/' + name;
        Expected told;
        switch (number % 8) {
        case 0:
            edit(name, told);
            break;
        case 1:
            told = {.change = HSVNPatchChange::PropertiesOnly, .color = "red\ngreen"};
            mustRun({"svn", "propset", "--quiet", "color", told.color, path});
            break;
        case 2:
            told = {.change = HSVNPatchChange::Deleted, .before = readFile(path)};
            mustRun({"svn", "delete", "--quiet", path});
            break;
        case 3:
            makeCopy("copy", name, told);
            expected[name + " copied"] = told;
            return;
        case 4:
            makeCopy("move", name, told);
            expected[name + " moved"] = told;
            told = {.change = HSVNPatchChange::Deleted, .before = _moved};
            break;
        case 5:
            told = {.change = HSVNPatchChange::Added, .before = "", .after = upTo(2) == 0 ? "" : text()};
            writeFile(path + " added", told.after);
            mustRun({"svn", "add", "--quiet", path + " added"});
            expected[name + " added"] = told;
            return;
        case 6:
            told.color = "blue";
            mustRun({"svn", "propset", "--quiet", "color", told.color, path});
            edit(name, told);
            break;
        default:
            writeFile(path, std::string{"\0\2\n", 3});
            break;
        }
        expected[name] = told;
    }

    void makeCopy(const std::string& verb, const std::string& name, Expected& told)
    {
        const std::string copy = name + (verb == "move" ? " moved" : " copied");
        _moved = readFile(_root + '/' + name);
        mustRun({"svn", verb, "--quiet", _root + '/' + name, _root + '/' + copy});
        edit(copy, told);
        told.change = verb == "move" ? HSVNPatchChange::Moved : HSVNPatchChange::Copied;
        told.source = name;
    }

    std::mt19937 _random;
    std::string _root;
    std::string _moved;
};

std::vector<std::string> splitLines(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t first = 0; first < text.size();) {
        auto end = text.find_first_of("\r\n", first);
        end = end == std::string::npos ? text.size() : end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
        lines.push_back(text.substr(first, end - first));
        first = end;
    }
    return lines;
}

/// Applies an item's hunks to the text that it was before.
std::string applied(const HSVNPatchItem& item, const std::string& before)
{
    const auto lines = splitLines(before);
    std::string after;
    std::size_t next = 0;
    item.readHunks([&](const HSVNDiffHunk& hunk) {
        const auto sections = hunk.sections();
        for (; next < static_cast<std::size_t>(sections.front().original.first); ++next) {
            after += lines.at(next);
        }
        std::int64_t removed = 0;
        hunk.readLines([&](const HSVNPatchLine& line) {
            const auto text = line.text.string();
            if (line.kind != HSVNPatchLineKind::Added) {
                EXPECT_EQ(text, lines.at(next++)) << item.path();
                ++removed;
            }
            after += line.kind == HSVNPatchLineKind::Removed ? "" : text;
        });
        EXPECT_EQ(static_cast<std::uint64_t>(removed), hunk.originalLength());
        EXPECT_EQ(sections.back().original.end() - sections.front().original.first, removed);
    });
    for (; next < lines.size(); ++next) {
        after += lines[next];
    }
    return after;
}

class TreeDiffs : public WorkingCopyTest
{
  protected:
    static std::string textOf(const HSVNTreeDiff& diff)
    {
        std::string text;
        diff.write([&](std::string_view bytes) { text += bytes; });
        return text;
    }
    static std::string unifiedTextOf(const HSVNTreeDiff& diff)
    {
        std::string text;
        diff.writeUnified([&](std::string_view bytes) { text += bytes; });
        return text;
    }
    /// Compares every item with what the tree expects.
    ///
    /// @param below  what the paths of the items begin with
    static void expectItems(const HSVNTreeDiff& diff, std::map<std::string, Expected> expected,
                            const std::string& below)
    {
        diff.readItems([&](const HSVNPatchItem& item) {
            ASSERT_TRUE(item.path().starts_with(below)) << item.path();
            const auto told = expected.extract(item.path().substr(below.size()));
            ASSERT_TRUE(told) << item.path();
            const auto& is = told.mapped();
            EXPECT_EQ(item.change(), is.change) << item.path();
            EXPECT_EQ(item.copySource().value_or(""), is.source);
            EXPECT_EQ(item.isBinary(), !is.before && is.color.empty()) << item.path();
            if (is.before) {
                EXPECT_EQ(applied(item, *is.before), is.after) << item.path();
            }
            const auto properties = item.properties();
            ASSERT_EQ(properties.size(), is.color.empty() ? 0U : 1U) << item.path();
            if (!properties.empty()) {
                EXPECT_EQ(properties[0].name(), "color");
                EXPECT_EQ(properties[0].shownValue(HSVNDiffSide::Modified), is.color);
            }
        });
        for (const auto& [name, left] : expected) {
            ADD_FAILURE() << name << " is not told";
        }
    }
    HSVNTargetInRevision base() const { return {HSVNTarget{root}, HSVNRevision::BASE()}; }
    HSVNTargetInRevision working() const { return {HSVNTarget{root}, HSVNRevision::WORKING()}; }
    static std::pair<HSVNRevisionRef, HSVNRevisionRef> revisions(HSVNRevisionNumber first, HSVNRevisionNumber second)
    {
        return {HSVNRevision::revisionWithNumber(first), HSVNRevision::revisionWithNumber(second)};
    }
};

/// A tree of a repository knows no copies between two of its revisions.
std::map<std::string, Expected> asInRepository(std::map<std::string, Expected> expected)
{
    for (auto& [name, told] : expected) {
        if (told.change == HSVNPatchChange::Copied || told.change == HSVNPatchChange::Moved) {
            told = {.change = HSVNPatchChange::Added, .before = "", .after = told.after};
        }
    }
    return expected;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, TreeDiffs, testing::Values("1.14"), lineName);

TEST_P(TreeDiffs, AreWhatSubversionShowsOfGeneratedTrees)
{
    mustRun({"svn", "delete", "--quiet", item("a.txt"), item("b.txt"), item("dir")});
    commitAll();
    root = repository.checkOut("whole"); // whose names are those of Git's headers
    for (unsigned seed = 1; seed <= numberFromEnvironment("HSVN_TREE_SEEDS", 3); ++seed) {
        SCOPED_TRACE(seed);
        const auto folder = fmt::format("trunk/{}", seed);
        files::create_directory(item(folder));
        RandomTree tree{seed, item(folder)};
        tree.fill();
        tree.change();
        std::map<std::string, Expected> expected;
        for (const auto& [name, told] : tree.expected) {
            auto& below = expected[folder + '/' + name] = told;
            below.source = told.source.empty() ? "" : folder + '/' + told.source;
        }
        const auto local = client->treeDiff(base(), working());
        EXPECT_TRUE(local->knowsCopySources());
        EXPECT_EQ(textOf(*local), mustRun({"svn", "diff", "--git", root}));
        expectItems(*local, expected, root + '/');
        commitAll();
        const auto now = repository.youngest();
        const auto range = fmt::format("-r{}:{}", now - 1, now);
        const auto between = client->treeDiff(HSVNTarget{repository.url()}, revisions(now - 1, now));
        EXPECT_EQ(textOf(*between), mustRun({"svn", "diff", "--git", range, repository.url()}));
        auto unified = mustRun({"svn", "diff", range, repository.url()});
        // Git's form does not tell the type of a binary file.
        for (const std::string line = "svn:mime-type = application/octet-stream\n";
             unified.find(line) != std::string::npos;) {
            unified.erase(unified.find(line), line.size());
        }
        EXPECT_EQ(unifiedTextOf(*between), unified);
        expectItems(*between, asInRepository(expected), "");
        mustRun({"svn", "update", "--quiet", root});
    }
}

TEST_P(TreeDiffs, ShowCopiesAsAdditionsWhereSubversionLosesTheirSource)
{
    mustRun({"svn", "copy", "--quiet", item("a.txt"), item("copy.txt")});
    writeFile(item("copy.txt"), "copied\n");
    EXPECT_NE(runCommand({"svn", "diff", "--git", root}).exitCode, 0) << "Subversion can do it";
    const auto diff = client->treeDiff(base(), working());
    EXPECT_FALSE(diff->knowsCopySources());
    EXPECT_EQ(textOf(*diff), mustRun({"svn", "diff", "--git", "--show-copies-as-adds", root}));
    expectItems(*diff, {{"copy.txt", {.change = HSVNPatchChange::Added, .before = "", .after = "copied\n"}}},
                root + '/');
}

TEST_P(TreeDiffs, AreSubversionsOwnWhateverTheUserComparesWith)
{
    writeFile(item("a.txt"), "new\n");
    client->setOption("/bin/false", "diff-cmd", HSVNConfigCategoryConfig, HSVNConfigSectionHelpers);
    client->setOption("-x y", "diff-extensions", HSVNConfigCategoryConfig, HSVNConfigSectionHelpers);
    const auto diff = client->treeDiff(base(), working(), {.arguments = std::vector<std::string>{"-U0"}});
    EXPECT_THAT(textOf(*diff), HasSubstr("@@ -1 +1 @@\n-a.txt\n+new\n"));
    const std::pair states{HSVNRevision::BASE(), HSVNRevision::WORKING()};
    EXPECT_EQ(unifiedTextOf(*client->treeDiff(root, states)), unifiedTextOf(*client->treeDiff(base(), working())));
    std::vector<std::string> changed;
    client->diffSummary(root, states, {}, [&](const auto& difference) { changed.push_back(difference.path); });
    EXPECT_EQ(changed, std::vector<std::string>{"a.txt"});
    EXPECT_EQ(client->optionForName("diff-cmd", HSVNConfigCategoryConfig, HSVNConfigSectionHelpers, ""), "/bin/false");
    EXPECT_THROW(client->treeDiff(base(), std::pair{HSVNRevisionRef{}, HSVNRevision::HEAD()}), HSVNAssertionException);
    EXPECT_THROW(client->treeDiff({repository.url("nowhere"), HSVNRevision::HEAD()}, base()), HSVNException);
}

TEST_P(TreeDiffs, TheirSectionsStagePartsOfAFile)
{
    const std::string before = "1\n2\r\n3\n4\n5\n6\r7\n8\n9\n10\n11\n12";
    const std::string after = "0\n1\n2\r\ntwo\n4\n5\n6\r7\n8\n9\n10\n11\ntwelve\n13";
    writeFile(item("a.txt"), before);
    commitAll();
    writeFile(item("a.txt"), after);
    const auto sections = client->treeDiff(base(), working())->items().at(0).sections();
    std::vector<std::size_t> changed;
    for (std::size_t place = 0; place < sections.size(); ++place) {
        if (!sections[place].isCommon()) {
            changed.push_back(place);
        }
    }
    ASSERT_EQ(changed.size(), 3U);
    EXPECT_EQ(HSVNStagedText(before, after, sections, {}), before);
    EXPECT_EQ(HSVNStagedText(before, after, sections, changed), after);
    EXPECT_EQ(HSVNStagedText(before, after, sections, {changed[1]}), "1\n2\r\ntwo\n4\n5\n6\r7\n8\n9\n10\n11\n12");
    EXPECT_EQ(HSVNStagedText(before, after, sections, {changed[2], changed[0]}),
              "0\n1\n2\r\n3\n4\n5\n6\r7\n8\n9\n10\n11\ntwelve\n13");
    EXPECT_THROW(HSVNStagedText(before, after, sections, {sections.size()}), HSVNInvalidArgumentException);
    EXPECT_THROW(HSVNStagedText(before, "0\n", sections, {}), HSVNInvalidArgumentException);
    EXPECT_THROW(HSVNStagedText(before, after, {sections[2], sections[0]}, {}), HSVNInvalidArgumentException);
}

TEST_P(TreeDiffs, NamesAreUTF8InEveryLocale)
{
    repository.put("trunk/b\xc3\xbc.txt", "x\n");
    repository.put("trunk/b\xc3\xbc.txt", "y\n");
    const auto now = repository.youngest();
    const auto diff = client->treeDiff(HSVNTarget{repository.url("trunk")}, revisions(now - 1, now));
    EXPECT_EQ(diff->items().at(0).path(), "b\xc3\xbc.txt");
}

namespace {

class OlderTreeDiffs : public TreeDiffs
{
  protected:
    void SetUp() override
    {
        client = clientWithoutExtensions(GetParam());
        client->setDelegate(delegate);
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Lines, OlderTreeDiffs, recordedLines(), lineName);

TEST_P(OlderTreeDiffs, KnowNoCopiesAndSaySo)
{
    mustRun({"svn", "copy", "--quiet", item("a.txt"), item("copy.txt")});
    writeFile(item("copy.txt"), "other\n");
    mustRun({"svn", "propset", "--quiet", "color", "red", item("b.txt")});
    commitAll();
    const HSVNTarget url{repository.url("trunk")};
    const auto diff = client->treeDiff(url, revisions(1, 2));
    EXPECT_FALSE(diff->knowsCopySources());
    std::map<std::string, Expected> expected{
        {"copy.txt", {.change = HSVNPatchChange::Added, .before = "", .after = "other\n"}},
        {"b.txt", {.change = HSVNPatchChange::PropertiesOnly, .color = "red"}}};
    expectItems(*diff, expected, "");
    EXPECT_EQ(unifiedTextOf(*diff), textOf(*diff));
    for (const auto& [choice, choices] : {std::pair<const char*, HSVNDiffChoices>{"omitAdded", {.omitAdded = true}},
                                          {"changelists", {.changelists = {"x"}}},
                                          {"depth", {.depth = HSVNDepthFiles}}})
    {
        const auto reason = reasonOf<HSVNUnsupportedFeatureException>(
            [&, &choices = choices] { client->treeDiff(url, revisions(1, 2), choices); });
        EXPECT_THAT(reason, HasSubstr(choice));
        EXPECT_THAT(reason, HasSubstr("treeDiff"));
    }
    EXPECT_THROW(client->treeDiff(base(), working()), HSVNUnsupportedFeatureException);
}
