#include "Internal/Characters.h"

#include "Internal/Unicode.h"

#include <algorithm>
#include <fmt/format.h>
#include <utf8.h>

namespace {

bool isASCII(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

char lowered(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool equalLowered(char a, char b) { return lowered(a) == lowered(b); }

struct Extent
{
    std::size_t characters;
    std::size_t bytes;
};

/// What the first `count` characters of a text come to, or all of them when it has no more.
Extent firstCharacters(std::string_view text, std::size_t count)
{
    const HSVNUnicode& unicode = HSVNUnicode::shared();
    Extent extent{};
    for (; extent.characters < count && extent.bytes < text.size(); ++extent.characters) {
        extent.bytes = unicode.offsetAfterCharacter(text, extent.bytes);
    }
    return extent;
}

} // namespace

namespace HSVNText {

bool isWellFormed(std::string_view text) { return utf8::is_valid(text) && text.find('\0') == std::string_view::npos; }

std::size_t length(std::string_view text)
{
    return isASCII(text) ? text.size() : firstCharacters(text, text.size()).characters;
}

std::string_view prefix(std::string_view text, std::size_t count)
{
    const std::string_view bytes = text.substr(0, count);
    return isASCII(bytes) ? bytes : text.substr(0, firstCharacters(text, count).bytes);
}

std::string_view trimmed(std::string_view text)
{
    if (!isASCII(text)) {
        return HSVNUnicode::shared().trimmed(text);
    }
    constexpr std::string_view space = " \t\n\v\f\r";
    const std::size_t start = std::min(text.find_first_not_of(space), text.size());
    return text.substr(start, text.find_last_not_of(space) + 1 - start);
}

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

std::string searchForm(std::string_view text)
{
    if (!isASCII(text)) {
        return HSVNUnicode::shared().searchForm(text);
    }
    std::string result{text};
    std::transform(result.begin(), result.end(), result.begin(), lowered);
    return result;
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
