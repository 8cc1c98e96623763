#include "HSVNPatch.h"
#include "HSVNException.h"
#include "ReasonOf.h"
#include "TemporaryFolder.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string shown(const std::vector<HSVNDiffSection>& sections)
{
    std::ostringstream text;
    for (const auto& section : sections) {
        text << (section.isCommon() ? " =" : " !") << section.original.first << '+' << section.original.count << '/'
             << section.modified.first << '+' << section.modified.count;
    }
    return text.str();
}

std::string shown(const HSVNPropertyChange& property)
{
    std::string text = std::string{" ["} + HSVNTextOfPatchChange(property.change()) + ' ' + property.name();
    for (const auto side : {HSVNDiffSide::Original, HSVNDiffSide::Modified}) {
        const auto value = property.shownValue(side);
        text += value ? " '" + *value + "'" : " -";
    }
    return text + (property.mergeInformation() ? property.mergeInformation()->string() : "") + ']';
}

/// One line an item.
std::string shown(const HSVNPatchItem& item)
{
    std::string text = std::string{HSVNTextOfPatchChange(item.change())} + ' ' + item.path();
    if (item.copySource()) {
        text += " from " + *item.copySource() + '@' + std::to_string(item.copyRevision());
    }
    text += std::string{item.isBinary() ? " binary" : ""} + (item.hasGitHeader() ? " git" : "");
    for (const auto& property : item.properties()) {
        text += shown(property);
    }
    return text + shown(item.sections());
}

std::vector<std::string> shownItems(const std::string& text)
{
    std::vector<std::string> items;
    HSVNPatch::patchWithText(text)->readItems([&](const HSVNPatchItem& item) { items.push_back(shown(item)); });
    return items;
}

constexpr const char* rule = "===================================================================\n";

struct ReadingCase
{
    const char* name;
    std::string text;
    std::vector<std::string> items;
};

const ReadingCase readingCases[] = {
    {"Nothing", "Nothing of a patch\n@@ -1 +1 @@\n-a\n+b\n", {}},
    {"UnifiedWithoutMore",
     "--- x/a\t2020\n+++ y/a\n@@ -1,2 +1,3 @@ f()\n one\n-two\n+2\n+3\n",
     {"modified y/a =0+1/0+1 !1+1/1+2"}},
    {"NotAHeader", "--- a\nnoise\n--- b\n+++ b\n@@ -2 +2 @@\n-x\n+y\n", {"modified b !1+1/1+1"}},
    {"AddedAndDeleted",
     "--- /dev/null\n+++ n\n@@ -0,0 +1 @@\n+x\n--- o\n+++ /dev/null\n@@ -1 +0,0 @@\n-x\n--- e\n+++ e\t(nonexistent)\n",
     {"added n !0+0/0+1", "deleted o !0+1/0+0", "deleted e"}},
    {"HeadersInHunks",
     "--- a\n+++ a\n@@ -1,2 +1,2 @@\n--- b\n-++ c\n+++ b\n+Index: x\n--- d\n+++ d\n@@ -1 +1 @@\n-x\n+y\n",
     {"modified a !0+2/0+2", "modified d !0+1/0+1"}},
    {"Git",
     std::string{"Index: t/c\n"} + rule + "diff --git a/p/a b/p/c\ncopy from p/a@12\ncopy to p/c\nIndex: t/m\n" + rule +
         "diff --git a/p/x b/p/m\nrename from p/x\nrename to p/m\n--- a/p/x\t(revision 1)\n+++ b/p/m\t(working copy)\n"
         "@@ -1 +1 @@\n-x\n\\ No newline at end of file\n+y\nIndex: t/e\n" +
         rule + "diff --git a/p/e b/p/e\nnew file mode 100644\nIndex: t/d\n" + rule +
         "diff --git a/p/d b/p/d\ndeleted file mode 100644\n",
     {"copied t/c from p/a@12 git", "moved t/m from p/x@-1 git !0+1/0+1", "added t/e git", "deleted t/d git"}},
    {"GitBinary",
     std::string{"Index: b\n"} + rule +
         "diff --git a/b b/b\nGIT binary patch\nliteral 4\nLc${NkWMT#Y01f~L\n\nliteral 0\nHc$@<O00001\n\n\n"
         "Property changes on: b\n__\nAdded: svn:mime-type\n## -0,0 +1 ##\n+image/png\n\\ No newline at end of "
         "property\n",
     {"modified b binary git [added svn:mime-type - 'image/png']"}},
    {"WithoutHeaders",
     std::string{"Index: b\n"} + rule +
         "Cannot display: file marked as a binary type.\nsvn:mime-type = a/b\n\nProperty changes on: b\n__\n"
         "Modified: color\n## -1 +1 ##\n--- q\n+++ r\nIndex: e\n" +
         rule + "Index: d\n" + rule +
         "--- d\t(revision 1)\n+++ d\t(working copy)\n\nProperty changes on: d\n__\n"
         "Deleted: x\n## -1,2 +0,0 ##\n-a\n-b\nAdded: svn:mergeinfo\n## -0,0 +0,1 ##\n   Merged /x:r1-2\n",
     {"unknown b binary [modified color '-- q\n' '++ r\n']", "unknown e",
      "properties only d [deleted x 'a\nb\n' -] [added svn:mergeinfo - -   Merged /x:r1-2\n]"}},
    {"PropertiesOfOlderLines",
     std::string{"Index: a\n"} + rule +
         "--- a\t(revision 1)\n+++ a\t(working copy)\n@@ -1 +1 @@\n-x\n+y\n\nProperty changes on: a\n__\n"
         "Name: color\n   - red\nblue\n   + green\n\nModified: gone\n   - old\n\nAdded: new\n   + \n\nIndex: b\n" +
         rule,
     {"modified a [modified color 'red\nblue' 'green'] [deleted gone 'old' -] [added new - ''] !0+1/0+1", "unknown b"}},
    {"PropertiesAloneOfOlderLines",
     std::string{"\nProperty changes on: d\n____\nName: shape\n   + round\nProperty changes on: x\n\nIndex: c\n"} +
         rule +
         "--- c\t(revision 1)\n+++ c\t(revision 2)\n@@ -1 +0,0 @@\n-1\n\nProperty changes on: b\n____\nAdded: color\n"
         "   + red\n\n\nProperty changes on: e\n____\nDeleted: color\n   - red\n\nIndex: bin\n" +
         rule +
         "Cannot display: file marked as a binary type.\nsvn:mime-type = a/b\n\nProperty changes on: bin\n____\n"
         "Added: k\n   + v\n\n\nProperty changes on: f\n____\nAdded: k\n   + w\n",
     {"properties only d [added shape - 'round\nProperty changes on: x']", "deleted c !0+1/0+0",
      "properties only b [added color - 'red']", "properties only e [deleted color 'red' -]",
      "unknown bin binary [added k - 'v']", "properties only f [added k - 'w']"}},
    {"BinaryBegunTwice",
     std::string{"Index: b\n"} + rule +
         "Cannot display: file marked as a binary type.\nsvn:mime-type = a/b\nIndex: b\n" + rule +
         "--- b\t(revision 0)\n+++ b\t(revision 1)\n\nProperty changes on: b\n____\nAdded: k\n## -0,0 +1 ##\n+v\n",
     {"added b binary [added k - 'v\n']"}},
    {"LineEnds", "--- a\r\n+++ a\r\n@@ -1 +1,2 @@\r\n-x\r\n+y\r\n+\r\n", {"modified a !0+1/0+2"}},
    {"Truncated", "--- a\n+++ a\n@@ -1,9 +1,9 @@\n one\n-tw", {"modified a =0+1/0+1 !1+1/1+0"}},
    {"HugeNumbers",
     "--- a\n+++ a\n@@ -99999999999999999999 +1 @@\n-a\n+b\n@@ -9223372036854775807 +1 @@\n-a\n+b\n",
     {"modified a !4611686018427387903+1/0+1"}},
};

class ReadPatches : public testing::TestWithParam<ReadingCase>
{
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Texts, ReadPatches, testing::ValuesIn(readingCases),
                         [](const auto& instance) { return std::string{instance.param.name}; });

TEST_P(ReadPatches, TellWhatBecomesOfEachItem)
{
    EXPECT_EQ(shownItems(GetParam().text), GetParam().items);
    std::string written;
    HSVNPatch::patchWithText(GetParam().text)->write([&](std::string_view bytes) { written += bytes; });
    EXPECT_EQ(written, GetParam().text);
}

TEST(HSVNPatch, TheEmptyLineBehindAHunkIsNotThatHunks)
{
    const auto lastLineOf = [](const std::string& behind) {
        std::string last;
        HSVNPatch::patchWithText("--- a\n+++ a\n@@ -1 +1 @@\n-x\n+y\r" + behind)
            ->items()
            .front()
            .hunks()
            .front()
            .readLines([&](const HSVNPatchLine& line) { last = line.text.string(); });
        return last;
    };
    EXPECT_EQ(lastLineOf("\nProperty changes on: a\n____\nAdded: k\n"), "y\r");
    EXPECT_EQ(lastLineOf("\n\nProperty changes on: a\n____\nAdded: k\n"), "y\r\n");
    EXPECT_EQ(lastLineOf("\nProperty changes on: a\nAdded: k\n"), "y\r\n");
}

TEST(HSVNPatch, LinesAndPatchesOfAnyLengthTakeLittleMemory)
{
    const TemporaryFolder folder;
    const std::string path = folder / "patch";
    const std::string line(std::size_t{8} << 20, 'x');
    writeFile(path, "--- a\n+++ a\n@@ -1 +1 @@\n-" + line + "\n\\ No newline at end of file\n+y\n");
    const auto patch = HSVNPatch::patchAtPath(path);
    const auto hunk = patch->items().front().hunks().front();
    std::vector<std::uint64_t> sizes;
    std::size_t largestPiece = 0;
    hunk.readLines([&](const HSVNPatchLine& each) {
        sizes.push_back(each.text.size());
        each.text.read([&](std::string_view bytes) { largestPiece = std::max(largestPiece, bytes.size()); });
        EXPECT_EQ(each.isEnded, each.kind == HSVNPatchLineKind::Added);
    });
    EXPECT_THAT(sizes, ElementsAre(line.size(), 2));
    EXPECT_LE(largestPiece, std::size_t{1} << 17);
    writeFile(path, "--- b\n+++ b\n");
    EXPECT_THAT(reasonOf<HSVNGenericException>([&] { hunk.sections(); }), HasSubstr("has changed since it was read"));
    EXPECT_THROW(HSVNPatch::patchAtPath(folder / "nowhere"), HSVNException);
}
