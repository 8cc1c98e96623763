#include "Output/Display.h"

#include "Output/Output.h"
#include "Output/Pager.h"

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr std::string_view red = "\x1b[31m";
constexpr std::string_view green = "\x1b[32m";
constexpr std::string_view yellow = "\x1b[33m";
constexpr std::string_view magenta = "\x1b[35m";
constexpr std::string_view cyan = "\x1b[36m";
constexpr std::string_view noColour = "\x1b[0m";

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

/// The colour of a line of items; empty for any other text.
std::string_view colourOfLine(std::string_view line)
{
    constexpr std::size_t columns = 7; // of letters before an item's name
    const auto index = line.find_first_not_of(' ');
    if (!line.ends_with('\n') || index >= std::min(columns, line.size() - 1)) {
        return {};
    }
    const char next = line[index + 1];
    // A word that begins with the letter goes on with small ones.
    return next == ' ' || !colourOf(next).empty() ? colourOf(line[index]) : "";
}

bool hasControlSequences()
{
    static const bool has = [] {
        const char* const kind = std::getenv("TERM");
        return Display::isOnTerminal() && kind && std::string_view{kind} != "dumb";
    }();
    return has;
}

} // namespace

bool Display::isOnTerminal() { return Pager::isBeforeTerminal(STDOUT_FILENO); }

bool Display::isShown() { return hasControlSequences() && !Pager::isRunning(); }

bool Display::isColoured()
{
    static const bool isWanted = hasControlSequences() && !std::getenv("NO_COLOR");
    return isWanted && (!Pager::isUsed() || Pager::showsColours());
}

std::string Display::inLine(std::string name)
{
    for (auto end = name.find('\n'); end != std::string::npos && isOnTerminal(); end = name.find('\n', end)) {
        name.replace(end, 1, "?\\010");
    }
    return name;
}

void Display::writeColoured(std::string_view bytes, Colour colour)
{
    Output::writeControl(colour == Colour::Removed ? red : green);
    Output::writeBytes(bytes);
    Output::writeControl(noColour);
}

void Display::writeLine(std::string_view line)
{
    const std::string_view colour = isColoured() ? colourOfLine(line) : "";
    if (colour.empty()) {
        Output::write(line);
        return;
    }
    Output::writeControl(colour);
    Output::write(line.substr(0, line.size() - 1));
    Output::writeControl(noColour);
    Output::write("\n");
}
