#include "Output/Display.h"

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr std::string_view red = "\x1b[31m";
constexpr std::string_view green = "\x1b[32m";
constexpr std::string_view yellow = "\x1b[33m";
constexpr std::string_view magenta = "\x1b[35m";
constexpr std::string_view cyan = "\x1b[36m";
constexpr std::string_view plain = "\x1b[0m";

/// The colour of an item's letter; empty for what is no such letter.
std::string_view colourOf(char letter)
{
    switch (letter) {
    case 'A':
        return green;
    case 'D':
    case '!':
        return red;
    case 'C':
    case '~':
        return magenta;
    case 'M':
    case 'U':
    case 'G':
    case 'R':
    case 'E':
        return yellow;
    case '?':
    case 'X':
        return cyan;
    default:
        return {};
    }
}

} // namespace

bool Display::isShown()
{
    static const bool is = [] {
        const char* const kind = std::getenv("TERM");
        return isatty(STDOUT_FILENO) == 1 && kind && std::string_view{kind} != "dumb";
    }();
    return is;
}

bool Display::isColoured()
{
    static const bool is = isShown() && !std::getenv("NO_COLOR");
    return is;
}

std::string Display::coloured(std::string_view text, Colour colour)
{
    std::string shown{colour == Colour::Removed ? red : green};
    return shown.append(text).append(plain);
}

std::string Display::colouredLine(std::string line)
{
    constexpr std::size_t columns = 7; // of letters before an item's name
    const auto index = line.find_first_not_of(' ');
    if (!isColoured() || index >= std::min(columns, line.size() - 1) || !line.ends_with('\n')) {
        return line;
    }
    const std::string_view colour = colourOf(line[index]);
    const char next = line[index + 1];
    // A word that begins with the letter goes on with small ones.
    if (colour.empty() || (next != ' ' && colourOf(next).empty())) {
        return line;
    }
    line.insert(line.size() - 1, plain);
    return line.insert(0, colour);
}
