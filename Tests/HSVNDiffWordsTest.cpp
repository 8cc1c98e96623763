#include "HSVNDiffWords.h"

#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>

namespace {

struct WordsCase
{
    std::string original;
    std::string modified;
    HSVNChangedWords changed;
};

std::ostream& operator<<(std::ostream& out, const WordsCase& row)
{
    return out << row.original.substr(0, 20) << " | " << row.modified.substr(0, 20);
}

class DiffWords : public testing::TestWithParam<WordsCase>
{
};

std::string numbered(int count, const std::string& prefix)
{
    std::string text = "same ";
    for (int index = 0; index < count; ++index) {
        text += prefix + std::to_string(index) + ".";
    }
    return text + "end";
}

/// The text without the ranges' characters, which are bytes here.
std::string without(std::string text, const std::vector<HSVNWordRange>& ranges)
{
    for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) {
        text.erase(range->first, range->count);
    }
    return text;
}

} // namespace

TEST_P(DiffWords, AreFound)
{
    EXPECT_EQ(HSVNCompareWords(GetParam().original, GetParam().modified), GetParam().changed);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DiffWords,
    testing::Values(WordsCase{"", "", {}}, WordsCase{"one two\n", "one two\n", {}},
                    WordsCase{"", "ab c", {{}, {{0, 4}}}}, WordsCase{"ab c", "", {{{0, 4}}, {}}},
                    WordsCase{"return left;\n", "return right;\n", {{{7, 4}}, {{7, 5}}}},
                    WordsCase{"a_1 = b(c)", "a_2 = b(c, d)", {{{0, 3}}, {{0, 3}, {9, 3}}}},
                    WordsCase{"x  y", "x y", {{{1, 2}}, {{1, 1}}}}, // blanks are a word of their own
                    WordsCase{"line\n", "line\r\n", {{{4, 1}}, {{4, 2}}}},
                    WordsCase{"Grüße an α\n", "Grüße an β!\n", {{{9, 1}}, {{9, 2}}}}, // code points, not bytes
                    WordsCase{"\xff\xfe z", "\xff\xfe y", {{{3, 1}}, {{3, 1}}}},
                    // Too many changes to look for the shortest ones
                    WordsCase{numbered(600, "a"), numbered(600, "b"), {{{5, 2889}}, {{5, 2889}}}}));

TEST(DiffWordsOfRandomTexts, LeaveEqualTextsBehind)
{
    std::mt19937 random{7};
    for (int round = 0; round < 500; ++round) {
        const auto text = [&] {
            std::string words;
            for (auto count = random() % 40; count > 0; --count) {
                words += "ab ,\n"[random() % 5];
            }
            return words;
        };
        const std::string original = text();
        const std::string modified = text();
        const auto changed = HSVNCompareWords(original, modified);
        EXPECT_EQ(without(original, changed.original), without(modified, changed.modified)) << original << modified;
    }
}
