#include "Output/Sizes.h"

#include <array>
#include <fmt/format.h>

std::string humanSize(std::int64_t size, bool isShort)
{
    constexpr std::array units{"B", "KiB", "MiB", "GiB", "TiB", "EiB", "PiB"}; // the last two as Subversion has them
    constexpr std::int64_t threeDigits = 999;
    constexpr double step = 1024;
    std::size_t unit = 0;
    while ((size >> (10 * unit)) > threeDigits && unit + 1 < units.size()) {
        ++unit;
    }
    const double value = unit == 0 ? static_cast<double>(size) : static_cast<double>(size >> (10 * (unit - 1))) / step;
    const bool hasTenths = unit > 0 && value < 9.95; // more would be rounded up to two digits
    const std::string number = fmt::format("{:.{}f}", value, hasTenths ? 1 : 0);
    return isShort ? number + *units.at(unit) : number + " " + units.at(unit);
}
