#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// Bytes as hexadecimal digits, whatever the locale. For the library and its bundles alike: nothing has to be linked.
namespace HSVNHexadecimal {

inline constexpr std::string_view digits = "0123456789abcdef";

/// Of each character the value of the digit that it is; 0xFF for one that is none. One for the whole program: within
/// the function below it would be copied for each digit.
inline constexpr auto values = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(0xFF);
    for (std::size_t index = 0; index < digits.size(); ++index) {
        table[static_cast<unsigned char>(digits[index])] = static_cast<std::uint8_t>(index);
    }
    return table;
}();

/// The value of a digit whose letters are lower-case; more than 15 for every other character.
constexpr unsigned value(char digit) { return values[static_cast<unsigned char>(digit)]; }

/// Reads two digits for each byte of an array.
///
/// @return whether the text is that long and has nothing but digits
template <class Bytes>
bool read(std::string_view text, Bytes& bytes)
{
    if (text.size() != 2 * bytes.size()) {
        return false;
    }
    unsigned seen = 0;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        const unsigned high = value(text[2 * index]);
        const unsigned low = value(text[2 * index + 1]);
        seen |= high | low;
        bytes[index] = static_cast<std::uint8_t>(high << 4U | low);
    }
    return seen < 16;
}

/// Two lower-case digits for each byte.
template <class Bytes>
std::string textOf(const Bytes& bytes)
{
    std::string text;
    text.reserve(2 * bytes.size());
    for (const unsigned byte : bytes) {
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

} // namespace HSVNHexadecimal
