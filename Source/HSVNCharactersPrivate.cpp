#include "HSVNCharactersPrivate.h"

#include <algorithm>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace {

/// Offset behind the character at `offset`.
std::size_t nextOffset(std::string_view text, std::size_t offset)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const std::size_t size = text.size();
    [[maybe_unused]] UChar32 character = 0;
    U8_NEXT(bytes, offset, size, character);
    return offset;
}

char lowered(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool equalLowered(char a, char b) { return lowered(a) == lowered(b); }

std::string_view withoutLeadingSpace(std::string_view text)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const std::size_t size = text.size();
    std::size_t kept = 0;
    for (std::size_t offset = 0; offset < size; kept = offset) {
        UChar32 character = 0;
        U8_NEXT(bytes, offset, size, character);
        if (!u_isUWhiteSpace(character)) {
            break;
        }
    }
    return text.substr(kept);
}

std::string_view withoutTrailingSpace(std::string_view text)
{
    std::size_t kept = text.size();
    for (std::size_t offset = kept; offset > 0; kept = offset) {
        // ICU counts backwards in 32 bits only; no character is longer than four bytes.
        const std::size_t windowStart = offset - std::min<std::size_t>(offset, U8_MAX_LENGTH);
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data() + windowStart);
        auto position = static_cast<std::int32_t>(offset - windowStart);
        UChar32 character = 0;
        U8_PREV(bytes, 0, position, character);
        if (!u_isUWhiteSpace(character)) {
            break;
        }
        offset = windowStart + static_cast<std::size_t>(position);
    }
    return text.substr(0, kept);
}

} // namespace

namespace HSVNText {

bool isWellFormed(std::string_view text)
{
    if (std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<signed char>(byte) > 0; })) {
        return true;
    }
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const std::size_t size = text.size();
    for (std::size_t offset = 0; offset < size;) {
        UChar32 character = 0;
        U8_NEXT(bytes, offset, size, character);
        if (character <= 0) {
            return false;
        }
    }
    return true;
}

std::size_t length(std::string_view text)
{
    std::size_t count = 0;
    for (std::size_t offset = 0; offset < text.size(); offset = nextOffset(text, offset)) {
        ++count;
    }
    return count;
}

std::string_view prefix(std::string_view text, std::size_t count)
{
    std::size_t offset = 0;
    for (std::size_t taken = 0; taken < count && offset < text.size(); ++taken) {
        offset = nextOffset(text, offset);
    }
    return text.substr(0, offset);
}

std::string_view trimmed(std::string_view text) { return withoutTrailingSpace(withoutLeadingSpace(text)); }

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
    std::string result;
    if (text) {
        icu::UnicodeString::fromUTF8(text).toUTF8String(result);
    }
    return result;
}

} // namespace HSVNText
