#include "Internal/Characters.h"

#include <algorithm>
#include <fmt/format.h>
#include <utf8.h>

namespace {

bool equalLowered(char a, char b) { return HSVNText::lowered(a) == HSVNText::lowered(b); }

} // namespace

namespace HSVNText {

bool isWellFormed(std::string_view text) { return utf8::is_valid(text) && text.find('\0') == std::string_view::npos; }

std::vector<std::string_view> split(std::string_view text, std::string_view separators)
{
    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    for (std::size_t end = text.find_first_of(separators); end != std::string_view::npos;
         end = text.find_first_of(separators, start))
    {
        pieces.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), equalLowered);
}

bool containsIgnoringCase(std::string_view text, std::string_view part)
{
    return std::search(text.begin(), text.end(), part.begin(), part.end(), equalLowered) != text.end() || part.empty();
}

std::string decoded(const char* text)
{
    const std::string_view bytes = text ? text : "";
    return utf8::replace_invalid(bytes);
}

std::string quoted(std::string_view text)
{
    std::string result;
    for (const char byte : text) {
        if (byte >= ' ' && byte <= '~') {
            result += byte;
        } else {
            result += fmt::format("\\x{:02x}", static_cast<unsigned char>(byte));
        }
    }
    return result;
}

} // namespace HSVNText
