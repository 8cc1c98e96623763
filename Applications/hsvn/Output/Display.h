#pragma once

#include <string>
#include <string_view>

/// What output to a terminal has beside its text. Everywhere else the text stays as it is.
namespace Display {

/// Whether standard output is a terminal that understands control sequences.
bool isShown();
/// A line of items, coloured by the letter in its first columns; any other text as it is. Not coloured either when the
/// environment sets NO_COLOR.
std::string colouredLine(std::string line);

} // namespace Display
