#include "Output/Sizes.h"

#include <array>
#include <fmt/format.h>

std::string humanSize(std::int64_t size, bool isShort)
{
    constexpr std::array units{"B", "K", "M", "G", "T", "P"};
    constexpr std::int64_t step = 1024;
    constexpr double threeDigits = 1000;
    auto value = static_cast<double>(size);
    std::size_t unit = 0;
    while (value >= threeDigits && unit + 1 < units.size()) {
        value /= static_cast<double>(step);
        ++unit;
    }
    const std::string suffix = std::string{isShort ? "" : " "} + units.at(unit);
    if (unit == 0 || value >= 10) {
        return fmt::format("{:.0f}{}", value, suffix);
    }
    return fmt::format("{:.1f}{}", value, suffix);
}
