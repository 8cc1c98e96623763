#pragma once

#include <cstdint>

/// How the lines of a section differ from text to text.
enum class HSVNDiffSectionKind : std::uint8_t
{
    Common,          ///< alike in all texts, but for what the comparison was told to ignore
    Changed,         ///< of two texts: different lines, or lines that one of them does not have
    ChangedInMine,   ///< of three texts: theirs is as the base is
    ChangedInTheirs, ///< of three texts: mine is as the base is
    ChangedAlike,    ///< of three texts: mine and theirs are alike, the base is different
    Conflict         ///< of three texts: all are different
};

/// One of the texts of a comparison. Two texts have an original and a modified one, three a base, mine and theirs.
enum class HSVNDiffSide : std::uint8_t
{
    Original = 0,
    Modified = 1,
    Base = Original,
    Mine = Modified,
    Theirs = 2
};

/// Lines of one text that stand one after the other. A plain value.
struct HSVNDiffLines
{
    std::int64_t first = 0; ///< counted from 0; of no lines, the line that they would stand before
    std::int64_t count = 0; ///< how many

    /// The line behind the last one.
    std::int64_t end() const { return first + count; }
    /// Whether there are none.
    bool empty() const { return count == 0; }

    friend bool operator==(const HSVNDiffLines&, const HSVNDiffLines&) = default;
};

/// A stretch of lines that differ in one way, or in none. The sections of a comparison follow one another without a
/// gap, from the first line of every text to its last. A plain value.
struct HSVNDiffSection
{
    HSVNDiffSectionKind kind = HSVNDiffSectionKind::Common; ///< how they differ
    HSVNDiffLines original{};                               ///< of the original text, or the base
    HSVNDiffLines modified{};                               ///< of the modified text, or mine
    HSVNDiffLines theirs{};                                 ///< none of two texts

    /// Those of one side.
    const HSVNDiffLines& lines(HSVNDiffSide side) const
    {
        return side == HSVNDiffSide::Original ? original : side == HSVNDiffSide::Modified ? modified : theirs;
    }
    /// Whether they are alike in all texts.
    bool isCommon() const { return kind == HSVNDiffSectionKind::Common; }

    friend bool operator==(const HSVNDiffSection&, const HSVNDiffSection&) = default;
};
