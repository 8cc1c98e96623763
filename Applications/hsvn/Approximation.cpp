#include "Approximation.h"

#include <fmt/format.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

namespace {

bool isWellFormed(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<std::int32_t>(text.size()), &status);
    return status != U_INVALID_CHAR_FOUND;
}

/// The plain character that stands for one of its kind; 0 for none.
char plainForm(UChar32 point)
{
    switch (u_charType(point)) {
    case U_SPACE_SEPARATOR:
        return ' ';
    case U_DASH_PUNCTUATION:
        return '-';
    case U_CONNECTOR_PUNCTUATION:
        return '_';
    default:
        break;
    }
    switch (point) {
    case 0x2018:
    case 0x2019:
    case 0x02BC:
    case 0x02C8:
        return '\'';
    case 0x2212:
        return '-';
    case 0x2044:
    case 0x2215:
        return '/';
    case 0x2236:
        return ':';
    case 0x2039:
    case 0x2329:
    case 0x3008:
        return '<';
    case 0x203A:
    case 0x232A:
    case 0x3009:
        return '>';
    case 0x2216:
        return '\\';
    case 0x2223:
        return '|';
    case 0x223C:
        return '~';
    default:
        return 0;
    }
}

std::string asciiForm(UChar32 point)
{
    if (point < 0x80) {
        return {static_cast<char>(point)};
    }
    if (u_getCombiningClass(point) != 0) {
        return "";
    }
    const char plain = plainForm(point);
    return plain != 0 ? std::string{plain} : fmt::format("{{U+{:04X}}}", static_cast<std::uint32_t>(point));
}

} // namespace

std::optional<std::string> approximation(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const normalizer = icu::Normalizer2::getNFKDInstance(status);
    if (U_FAILURE(status) != 0 || !isWellFormed(text)) {
        return std::nullopt;
    }
    const auto source = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    const icu::UnicodeString decomposed = normalizer->normalize(source, status);
    std::string result;
    for (std::int32_t index = 0; index < decomposed.length(); index = decomposed.moveIndex32(index, 1)) {
        result += asciiForm(decomposed.char32At(index));
    }
    return result;
}
