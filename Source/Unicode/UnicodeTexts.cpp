#include "UnicodeTexts.h"

#include <algorithm>
#include <fmt/format.h>
#include <memory>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace {

const std::uint8_t* bytesOf(std::string_view text) { return reinterpret_cast<const std::uint8_t*>(text.data()); }

icu::UnicodeString unicodeString(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string_view withoutLeadingSpace(std::string_view text)
{
    const std::uint8_t* const bytes = bytesOf(text);
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
        const std::uint8_t* const bytes = bytesOf(text) + windowStart;
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

/// The plain character that stands for one of its kind; 0 for none.
char plainCharacter(UChar32 point)
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
    if (point < 0x7F) {
        return {static_cast<char>(point)};
    }
    if (u_getCombiningClass(point) != 0) {
        return "";
    }
    const char plain = plainCharacter(point);
    return plain != 0        ? std::string{plain}
           : point <= 0xFFFF ? fmt::format("{{U+{:04X}}}", static_cast<std::uint32_t>(point))
                             : fmt::format("{{U+{:06X}}}", static_cast<std::uint32_t>(point));
}

struct CloseConverter
{
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

/// Null for an encoding that ICU doesn't know.
Converter converterTo(const std::string& encoding)
{
    UErrorCode error = U_ZERO_ERROR;
    Converter converter{ucnv_open(encoding.c_str(), &error)};
    if (U_FAILURE(error) || encoding.empty()) {
        return nullptr;
    }
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

} // namespace

std::size_t UnicodeTexts::offsetAfterCharacter(std::string_view text, std::size_t offset)
{
    const std::uint8_t* const bytes = bytesOf(text);
    const std::size_t size = text.size();
    [[maybe_unused]] UChar32 character = 0;
    U8_NEXT(bytes, offset, size, character);
    return offset;
}

std::string_view UnicodeTexts::trimmed(std::string_view text)
{
    return withoutTrailingSpace(withoutLeadingSpace(text));
}

std::string UnicodeTexts::plainForm(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const normalizer = icu::Normalizer2::getNFKDInstance(status);
    const icu::UnicodeString source = unicodeString(text);
    const icu::UnicodeString decomposed = U_SUCCESS(status) ? normalizer->normalize(source, status) : source;
    std::string result;
    for (std::int32_t index = 0; index < decomposed.length(); index = decomposed.moveIndex32(index, 1)) {
        result += asciiForm(decomposed.char32At(index));
    }
    return result;
}

std::string UnicodeTexts::searchForm(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const decomposer = icu::Normalizer2::getNFDInstance(status);
    const icu::Normalizer2* const composer = icu::Normalizer2::getNFCInstance(status);
    icu::UnicodeString found = unicodeString(text);
    if (U_FAILURE(status)) {
        return std::string{text};
    }
    const icu::UnicodeString decomposed = decomposer->normalize(found.foldCase(), status);
    found.remove();
    for (std::int32_t index = 0; index < decomposed.length(); index = decomposed.moveIndex32(index, 1)) {
        const UChar32 point = decomposed.char32At(index);
        if (u_getCombiningClass(point) == 0) {
            found.append(point);
        }
    }
    std::string result;
    composer->normalize(found, status).toUTF8String(result);
    return result;
}

HSVNUnicode::EncodedText UnicodeTexts::encoded(std::string_view text, const std::string& encoding)
{
    const Converter converter = converterTo(encoding);
    if (!converter) {
        return {false, std::nullopt};
    }
    const icu::UnicodeString unicode = unicodeString(text);
    std::string bytes(
        static_cast<std::size_t>(UCNV_GET_MAX_BYTES_FOR_STRING(unicode.length(), ucnv_getMaxCharSize(converter.get()))),
        '\0');
    UErrorCode error = U_ZERO_ERROR;
    const auto size = ucnv_fromUChars(converter.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()),
                                      unicode.getBuffer(), unicode.length(), &error);
    if (U_FAILURE(error)) {
        return {true, std::nullopt};
    }
    bytes.resize(static_cast<std::size_t>(size));
    return {true, std::move(bytes)};
}
