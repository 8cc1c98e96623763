#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What output to a terminal has beside its text. Everywhere else the text stays as it is.
namespace Display {

/// Whether standard output is a terminal, of whatever kind; a pager may be in between.
bool isOnTerminal();
/// Whether standard output is a terminal that understands control sequences, and no pager is in between.
bool isShown();
/// Whether text in colours is wanted there: the environment does not set NO_COLOR. A pager may be in between.
bool isColoured();

/// What a stretch of text is.
enum class Colour : std::uint8_t
{
    Removed,
    Added
};

/// A name as a part of a line: on a terminal a line end in it must not begin another one, and is written as any control
/// character.
std::string inLine(std::string name);

/// Writes bytes in a colour, whether or not one is wanted.
void writeColoured(std::string_view bytes, Colour colour);
/// Writes a line of items, coloured by the letter in its first columns; any other text as it is. Not coloured either
/// where `isColoured` says no.
void writeLine(std::string_view line);

} // namespace Display
