#include "HSVNDiffWords.h"

#include "Internal/Characters.h"

#include <algorithm>
#include <cctype>
#include <span>

namespace {

using Words = std::vector<std::string_view>;
using Marks = std::vector<bool>; // of the words, whether they are changed

constexpr std::ptrdiff_t mostChanges = 1000; // bounds time and memory, which grow with the square

enum class Form
{
    Letters,
    Blanks,
    Other
};

Form formOf(char byte)
{
    if (byte == ' ' || byte == '\t') {
        return Form::Blanks;
    }
    const auto code = static_cast<unsigned char>(byte);
    return code >= 0x80U || std::isalnum(code) != 0 || byte == '_' ? Form::Letters : Form::Other;
}

Words wordsOf(std::string_view text)
{
    Words words;
    for (std::size_t start = 0; start < text.size();) {
        std::size_t end = start + 1;
        if (const Form form = formOf(text[start]); form != Form::Other) {
            end = static_cast<std::size_t>(std::find_if(text.begin() + static_cast<std::ptrdiff_t>(end), text.end(),
                                                        [form](char byte) { return formOf(byte) != form; }) -
                                           text.begin());
        } else if (text.substr(start, 2) == "\r\n") {
            ++end;
        }
        words.push_back(text.substr(start, end - start));
        start = end;
    }
    return words;
}

/// The shortest list of changes between two sequences of words, found by Myers' greedy method: for every number of
/// changes the furthest place on every diagonal that so many lead to.
class ShortestChanges
{
  public:
    ShortestChanges(std::span<const std::string_view> original, std::span<const std::string_view> modified)
        : _original{original}, _modified{modified}
    {
    }

    /// Marks the changed words. False when there are too many changes.
    bool mark(Marks& original, Marks& modified, std::size_t skipped)
    {
        if (!search()) {
            return false;
        }
        auto x = std::ssize(_original);
        auto y = std::ssize(_modified);
        for (auto changes = std::ssize(_furthest) - 1; changes > 0; --changes) {
            const bool isInserted = comesFromAbove(changes, x - y);
            const auto diagonal = x - y + (isInserted ? 1 : -1);
            x = reached(changes - 1, diagonal);
            y = x - diagonal;
            (isInserted ? modified : original)[skipped + static_cast<std::size_t>(isInserted ? y : x)] = true;
        }
        return true;
    }

  private:
    bool search()
    {
        const auto end = std::ssize(_original) - std::ssize(_modified);
        for (std::ptrdiff_t changes = 0; changes <= mostChanges; ++changes) {
            _furthest.emplace_back(static_cast<std::size_t>(changes) + 1);
            for (std::ptrdiff_t diagonal = -changes; diagonal <= changes; diagonal += 2) {
                const auto x = follow(start(changes, diagonal), diagonal);
                _furthest.back()[static_cast<std::size_t>((diagonal + changes) / 2)] = x;
                if (diagonal == end && x >= std::ssize(_original)) {
                    return true;
                }
            }
        }
        return false;
    }
    /// Whether the furthest place on a diagonal is reached by a word of the modified text.
    bool comesFromAbove(std::ptrdiff_t changes, std::ptrdiff_t diagonal) const
    {
        return diagonal == -changes ||
               (diagonal != changes && reached(changes - 1, diagonal - 1) < reached(changes - 1, diagonal + 1));
    }
    std::ptrdiff_t start(std::ptrdiff_t changes, std::ptrdiff_t diagonal) const
    {
        if (changes == 0) {
            return 0;
        }
        return comesFromAbove(changes, diagonal) ? reached(changes - 1, diagonal + 1)
                                                 : reached(changes - 1, diagonal - 1) + 1;
    }
    std::ptrdiff_t reached(std::ptrdiff_t changes, std::ptrdiff_t diagonal) const
    {
        return _furthest[static_cast<std::size_t>(changes)][static_cast<std::size_t>((diagonal + changes) / 2)];
    }
    std::ptrdiff_t follow(std::ptrdiff_t x, std::ptrdiff_t diagonal) const
    {
        while (x < std::ssize(_original) && x - diagonal < std::ssize(_modified) &&
               _original[static_cast<std::size_t>(x)] == _modified[static_cast<std::size_t>(x - diagonal)])
        {
            ++x;
        }
        return x;
    }

    std::span<const std::string_view> _original;
    std::span<const std::string_view> _modified;
    std::vector<std::vector<std::ptrdiff_t>> _furthest; // by the number of changes, every second diagonal
};

std::vector<HSVNWordRange> rangesOf(const Words& words, const Marks& marks)
{
    std::vector<HSVNWordRange> ranges;
    std::size_t position = 0;
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::size_t length = HSVNText::length(words[index]);
        if (marks[index]) {
            if (!ranges.empty() && ranges.back().first + ranges.back().count == position) {
                ranges.back().count += length;
            } else {
                ranges.push_back({position, length});
            }
        }
        position += length;
    }
    return ranges;
}

} // namespace

HSVNChangedWords HSVNCompareWords(std::string_view original, std::string_view modified)
{
    const Words before = wordsOf(original);
    const Words after = wordsOf(modified);
    const auto shorter = std::min(before.size(), after.size());
    const auto same =
        std::mismatch(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(shorter), after.begin());
    const auto prefix = static_cast<std::size_t>(same.first - before.begin());
    const auto sameAtEnd =
        std::mismatch(before.rbegin(), before.rbegin() + static_cast<std::ptrdiff_t>(shorter - prefix), after.rbegin());
    const auto suffix = static_cast<std::size_t>(sameAtEnd.first - before.rbegin());
    const auto middle = [&](const Words& words) {
        return std::span{words}.subspan(prefix, words.size() - prefix - suffix);
    };
    Marks originalMarks(before.size());
    Marks modifiedMarks(after.size());
    if (!ShortestChanges{middle(before), middle(after)}.mark(originalMarks, modifiedMarks, prefix)) {
        const auto markAll = [&](Marks& marks) {
            std::fill(marks.begin() + static_cast<std::ptrdiff_t>(prefix),
                      marks.end() - static_cast<std::ptrdiff_t>(suffix), true);
        };
        markAll(originalMarks);
        markAll(modifiedMarks);
    }
    return {rangesOf(before, originalMarks), rangesOf(after, modifiedMarks)};
}
