#pragma once

#include "HSVNPlatformException.h"

#include <cstddef>
#include <fmt/format.h>
#include <vector>

/// Tells for each section of a comparison whether it is chosen.
///
/// @param chosen  places of sections, in any order
/// @throws HSVNInvalidArgumentException for a place that is none
inline std::vector<bool> HSVNChosenSections(const std::vector<std::size_t>& chosen, std::size_t count)
{
    std::vector<bool> marks(count);
    for (const auto place : chosen) {
        if (place >= count) {
            throw HSVNInvalidArgumentException(fmt::format("Section {} is chosen that the texts have not", place));
        }
        marks[place] = true;
    }
    return marks;
}
