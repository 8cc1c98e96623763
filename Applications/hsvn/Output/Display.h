#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What output to a terminal has beside its text. Everywhere else the text stays as it is.
namespace Display {

/// Whether standard output is a terminal that understands control sequences.
bool isShown();
/// Whether text in colours is wanted there: the environment does not set NO_COLOR.
bool isColoured();

/// What a stretch of text is.
enum class Colour : std::uint8_t
{
    Removed,
    Added
};

/// A text in a colour, whether or not one is wanted.
std::string coloured(std::string_view text, Colour colour);
/// A line of items, coloured by the letter in its first columns; any other text as it is. Not coloured either where
/// `isColoured` says no.
std::string colouredLine(std::string line);

} // namespace Display
