#pragma once

#include "HSVNDate.h"

#include <cstdint>
#include <limits>
#include <optional>

/// Dates that may be nil in eight bytes, as objects keep them: microseconds since 1970, of which the least that the
/// number can hold stands for nil.
struct HSVNCompactDate
{
    static constexpr std::int64_t nil = std::numeric_limits<std::int64_t>::min();

    static constexpr std::int64_t of(const std::optional<HSVNDate>& date)
    {
        return date ? date->microsecondsSince1970() : nil;
    }
    static constexpr std::optional<HSVNDate> value(std::int64_t date)
    {
        return date == nil ? std::nullopt : std::optional{HSVNDate{date}};
    }
    /// Cut to the whole seconds.
    static constexpr std::optional<HSVNDate> seconds(std::int64_t date)
    {
        return date == nil ? std::nullopt : std::optional{HSVNDate{date - date % microsecondsPerSecond}};
    }

  private:
    static constexpr std::int64_t microsecondsPerSecond = 1'000'000;
};
