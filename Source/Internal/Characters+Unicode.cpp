#include "Internal/Characters.h"
#include "Internal/Unicode.h"

#include <algorithm>

namespace {

bool isASCII(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

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

std::string searchForm(std::string_view text)
{
    if (!isASCII(text)) {
        return HSVNUnicode::shared().searchForm(text);
    }
    std::string result{text};
    std::transform(result.begin(), result.end(), result.begin(), lowered);
    return result;
}

} // namespace HSVNText
