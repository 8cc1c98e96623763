#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Small operations on UTF-8 text. Characters are code points; no text is cut inside one.
namespace HSVNText {

/// Whether the text is well-formed UTF-8 without a NUL, which is what Subversion and an archive can take.
bool isWellFormed(std::string_view text);

/// Number of characters; each ill-formed byte sequence counts as one.
std::size_t length(std::string_view text);

/// The first `count` characters, or the whole text when it has no more.
std::string_view prefix(std::string_view text, std::size_t count);

/// The text without white space and line ends at either end.
std::string_view trimmed(std::string_view text);

/// The pieces between the characters of `separators`, each of which is one byte; empty pieces are kept.
std::vector<std::string_view> split(std::string_view text, std::string_view separators);

/// An ASCII letter in lower case, any other byte as it is.
constexpr char lowered(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// Whether two texts are equal but for the case of ASCII letters.
bool equalIgnoringCase(std::string_view a, std::string_view b);

/// Whether the text contains the part, the case of ASCII letters aside.
bool containsIgnoringCase(std::string_view text, std::string_view part);

/// A well-formed text without accents and in lower case, as searches compare it.
std::string searchForm(std::string_view text);

/// The text with ill-formed byte sequences replaced by U+FFFD; empty for null.
std::string decoded(const char* text);

/// The text in ASCII, for messages: what is none, or would not be seen, as \xNN.
std::string quoted(std::string_view text);

} // namespace HSVNText
