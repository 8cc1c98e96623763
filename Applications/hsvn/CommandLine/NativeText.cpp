#include "CommandLine/NativeText.h"

#include "CommandLine/Errors.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fmt/format.h>
#include <iconv.h>
#include <langinfo.h>
#include <strings.h>
#include <utf8.h>

namespace {

constexpr std::int32_t incompleteInput = 70008; // APR_INCOMPLETE, which the library has no name for

/// One direction of the system's conversion.
class Converter
{
  public:
    Converter(const char* to, const char* from) : _descriptor{iconv_open(to, from)} {}
    ~Converter()
    {
        if (isUsable()) {
            iconv_close(_descriptor);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    /// Converts as much as possible to the end of `result`; the count of bytes converted.
    std::size_t convert(std::string_view text, std::string& result)
    {
        std::array<char, 512> buffer{};
        auto* in = const_cast<char*>(text.data()); // NOLINT: iconv does not write to its input
        std::size_t left = text.size();
        while (isUsable() && left > 0) {
            char* out = buffer.data();
            std::size_t room = buffer.size();
            const bool stopped = iconv(_descriptor, &in, &left, &out, &room) == static_cast<std::size_t>(-1);
            result.append(buffer.data(), buffer.size() - room);
            if (stopped && errno != E2BIG) {
                _isCutShort = errno == EINVAL;
                break;
            }
        }
        return text.size() - left;
    }

    /// The status of a text that was not converted to its end: the last character may lack bytes.
    std::int32_t failure() const { return _isCutShort ? incompleteInput : EINVAL; }

    /// Whether the system knows both encodings.
    bool isUsable() const
    {
        // iconv_open answers (iconv_t)-1 for a failure.
        return reinterpret_cast<std::intptr_t>(_descriptor) != -1;
    }

  private:
    iconv_t _descriptor;
    bool _isCutShort = false;
};

bool isUTF8(const char* encoding) { return strcasecmp(encoding, "UTF-8") == 0; }

/// A byte that is no text, or none in the middle of a text.
std::string escaped(char byte)
{
    return byte == '\0' ? "\\0" : fmt::format("?\\{:02X}", static_cast<unsigned char>(byte));
}

/// The text in ASCII: letters without their accents, or by number, and what is no text byte by byte.
std::string approximated(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        const auto size = std::min({utf8::find_invalid(text), text.find('\0'), text.size()});
        result += HSVNString::plainASCIIString(text.substr(0, size)).value_or("");
        result += size < text.size() ? escaped(text[size]) : "";
        text.remove_prefix(std::min(size + 1, text.size()));
    }
    return result;
}

[[noreturn]] void failToConvert(std::string_view text, const Converter& converter, const std::string& message)
{
    const std::int32_t code = converter.failure();
    fail(code, message, failure(code, approximated(text)));
}

/// " 6d e9" for these bytes.
std::string digitsOf(std::string_view bytes)
{
    std::string digits;
    for (const char byte : bytes) {
        digits += fmt::format(" {:02x}", static_cast<unsigned char>(byte));
    }
    return digits;
}

/// Fails for text that is UTF-8 only so far; both sides of that place are shown.
[[noreturn]] void failAsInvalid(std::string_view text, std::size_t validLength)
{
    constexpr std::size_t mostBefore = 24;
    constexpr std::size_t mostBehind = 4;
    const std::size_t start = validLength - std::min(validLength, mostBefore);
    fail(EINVAL, fmt::format("Valid UTF-8 data\n(hex:{})\nfollowed by invalid UTF-8 sequence\n(hex:{})",
                             digitsOf(text.substr(start, validLength - start)),
                             digitsOf(text.substr(validLength, mostBehind))));
}

/// The text as it is, which must be ASCII where the system does not know the encoding.
std::string onlyASCII(std::string_view text)
{
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (!NativeText::isASCII(text.substr(index, 1))) {
            const auto byte = static_cast<unsigned char>(text[index]);
            fail(EINVAL,
                 index == 0
                     ? fmt::format("Non-ASCII character (code {}) detected, and unable to convert to/from UTF-8", byte)
                     : fmt::format("Safe data '{}' was followed by non-ASCII byte {}: unable to convert to/from UTF-8",
                                   text.substr(0, index), byte));
        }
    }
    return std::string{text};
}

/// The text in another encoding; it must be ASCII where the system does not know one of them.
std::string converted(std::string_view text, const char* from, const char* to)
{
    Converter converter{to, from};
    if (!converter.isUsable()) {
        return onlyASCII(text);
    }
    std::string result;
    if (converter.convert(text, result) < text.size()) {
        failToConvert(text, converter, fmt::format("Can't convert string from '{}' to '{}':", from, to));
    }
    return result;
}

} // namespace

bool NativeText::isASCII(std::string_view text)
{
    // All that is printed goes through here: eight bytes at a time.
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    for (; text.size() >= sizeof highBits; text.remove_prefix(sizeof highBits)) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data(), sizeof bytes);
        if ((bytes & highBits) != 0) {
            return false;
        }
    }
    return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

std::string NativeText::toUTF8(std::string_view native)
{
    std::string result;
    if (isASCII(native)) {
        return std::string{native};
    }
    Converter converter{"UTF-8", NativeText::localeEncoding()};
    const std::size_t length = converter.convert(native, result);
    if (length < native.size() && isUTF8(NativeText::localeEncoding())) {
        failAsInvalid(native, length);
    }
    if (length < native.size()) {
        failToConvert(native, converter, "Can't convert string from native encoding to 'UTF-8':");
    }
    return result;
}

std::string NativeText::toUTF8(std::string_view text, const std::optional<std::string>& encoding)
{
    if (!encoding) {
        return toUTF8(text);
    }
    return isUTF8(encoding->c_str()) ? std::string{text} : converted(text, encoding->c_str(), "UTF-8");
}

std::string NativeText::fromUTF8(std::string_view text, const std::optional<std::string>& encoding)
{
    return encoding ? converted(text, "UTF-8", encoding->c_str()) : exactlyFromUTF8(text);
}

const char* NativeText::localeEncoding() { return nl_langinfo(CODESET); }

std::string NativeText::exactlyFromUTF8(std::string_view text)
{
    std::string result;
    if (isASCII(text)) {
        return std::string{text};
    }
    Converter converter{NativeText::localeEncoding(), "UTF-8"};
    const std::size_t length = converter.convert(text, result);
    if (length < text.size() && isUTF8(NativeText::localeEncoding())) {
        failAsInvalid(text, length);
    }
    if (length < text.size()) {
        failToConvert(text, converter, "Can't convert string from 'UTF-8' to native encoding:");
    }
    return result;
}

std::string NativeText::fromUTF8(std::string_view text)
{
    if (isASCII(text) || isUTF8(NativeText::localeEncoding())) {
        return wellFormed(text);
    }
    std::string result;
    const bool isConverted = Converter{NativeText::localeEncoding(), "UTF-8"}.convert(text, result) == text.size();
    return isConverted ? result : approximated(text);
}

std::string NativeText::wellFormed(std::string_view text)
{
    return utf8::is_valid(text) ? std::string{text} : approximated(text);
}

std::size_t NativeText::width(std::string_view text)
{
    std::size_t count = 0;
    for (const char byte : text) {
        count += (static_cast<unsigned char>(byte) & 0xC0U) != 0x80 ? 1 : 0;
    }
    return count;
}
