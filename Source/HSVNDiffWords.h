#pragma once

#include "HSVNExport.h"

#include <cstddef>
#include <string_view>
#include <vector>

/// Characters of a text, counted in code points from its beginning; an ill-formed byte sequence is one. A plain value.
struct HSVNWordRange
{
    std::size_t first = 0; ///< counted from 0
    std::size_t count = 0; ///< how many

    friend bool operator==(const HSVNWordRange&, const HSVNWordRange&) = default;
};

/// What one text has and another has not, in order; ranges neither touch nor overlap.
struct HSVNChangedWords
{
    std::vector<HSVNWordRange> original{}; ///< what the original text alone has
    std::vector<HSVNWordRange> modified{}; ///< what the modified text alone has

    friend bool operator==(const HSVNChangedWords&, const HSVNChangedWords&) = default;
};

/// Compares two texts, such as the lines of a changed section, word by word. A word is a run of letters, digits and
/// underscores, in which everything beyond ASCII counts as a letter, a run of blanks, a line end, or a single other
/// character. Texts that differ in more than a thousand words are changed from the first different word to the last.
///
/// Any thread; needs no bundle.
///
/// @param original  UTF-8; other bytes are taken as they are
/// @param modified  as well
HSVN_EXPORT HSVNChangedWords HSVNCompareWords(std::string_view original, std::string_view modified);
