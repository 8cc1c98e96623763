#pragma once

#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

/// Escapes "%XX" for the bytes of URLs. For the library and its bundles alike: nothing has to be linked.
namespace HSVNPercentEscapes {

/// The byte of the escape at a place, or nil when there is none.
inline std::optional<char> byteAt(std::string_view text, std::size_t offset)
{
    if (offset + 3 > text.size() || text[offset] != '%') {
        return std::nullopt;
    }
    unsigned value = 0;
    const char* end = text.data() + offset + 3;
    const auto [parsed, error] = std::from_chars(text.data() + offset + 1, end, value, 16);
    return error == std::errc{} && parsed == end ? std::optional{static_cast<char>(value)} : std::nullopt;
}

/// The text with every escape replaced by its byte; a percent sign that begins none stays.
inline std::string decoded(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t offset = 0; offset < text.size();) {
        const auto byte = byteAt(text, offset);
        result += byte.value_or(text[offset]);
        offset += byte ? 3 : 1;
    }
    return result;
}

} // namespace HSVNPercentEscapes
