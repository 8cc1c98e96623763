#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// Bytes as hexadecimal digits, whatever the locale. For the library and its bundles alike: nothing has to be linked.
namespace HSVNHexadecimal {

inline constexpr std::string_view digits = "0123456789abcdef";

inline constexpr auto digitsOf = [] {
    std::array<std::array<char, 2>, 256> all{};
    for (std::size_t byte = 0; byte < all.size(); ++byte) {
        all[byte] = {digits[byte >> 4U], digits[byte & 15U]};
    }
    return all;
}();

/// The bytes that eight lower-case digits stand for, in the lower half; in the upper one not 0 where one is none.
constexpr std::uint64_t valueOfEight(std::uint64_t text)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    const std::uint64_t letters = text >> 6U & ones;
    const std::uint64_t values = (text & 15 * ones) + 9 * letters;
    // A digit is what is written for its value; no letter's is below 10 or above 15, no figure's above 9.
    const std::uint64_t written = values + '0' * ones + ('a' - '0' - 10) * letters;
    const std::uint64_t from10 = (values + 6 * ones) >> 4U & ones;
    const std::uint64_t wrong = (written ^ text) | (from10 ^ letters) | (values & 16 * ones);
    const std::uint64_t pairs = (values << 4U | values >> 8U) & 0x00FF00FF00FF00FF;
    const std::uint64_t quads = (pairs | pairs >> 8U) & 0x0000FFFF0000FFFF;
    const std::uint64_t bytes = (quads | quads >> 16U) & 0xFFFFFFFF;
    return wrong == 0 ? bytes : ~bytes;
}

inline constexpr bool isLowestFirst = std::endian::native == std::endian::little;

/// A number's bytes in memory as those of a machine that has the lowest first, and the reverse.
constexpr std::uint64_t lowestFirst(std::uint64_t number) { return isLowestFirst ? number : __builtin_bswap64(number); }

/// Reads two lower-case digits for each byte of an array, whose size is a multiple of four.
///
/// @return whether the text is that long and has nothing but digits
template <class Bytes>
bool read(std::string_view text, Bytes& bytes)
{
    constexpr std::size_t digitsAtOnce = 8;
    static_assert(std::tuple_size_v<Bytes> % (digitsAtOnce / 2) == 0);
    if (text.size() != 2 * bytes.size()) {
        return false;
    }
    std::uint64_t seen = 0;
    for (std::size_t place = 0; place < text.size(); place += digitsAtOnce) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, text.data() + place, sizeof eight);
        const std::uint64_t value = valueOfEight(lowestFirst(eight));
        seen |= value >> 32U;
        const auto four = static_cast<std::uint32_t>(lowestFirst(value) >> (isLowestFirst ? 0U : 32U));
        std::memcpy(bytes.data() + place / 2, &four, sizeof four);
    }
    return seen == 0;
}

/// Writes two lower-case digits for each byte.
template <class Bytes>
void write(const Bytes& bytes, char* text)
{
    for (const std::uint8_t byte : bytes) {
        std::memcpy(text, digitsOf[byte].data(), 2);
        text += 2;
    }
}

/// Two lower-case digits for each byte.
template <class Bytes>
std::string textOf(const Bytes& bytes)
{
    std::string text(2 * bytes.size(), '0');
    write(bytes, text.data());
    return text;
}

} // namespace HSVNHexadecimal
