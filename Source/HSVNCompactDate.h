#pragma once

#include "HSVNDate.h"

#include <cstdint>
#include <limits>
#include <optional>

/// A date that may be nil in eight bytes. The earliest moment that the number could hold stands for nil.
class HSVNCompactDate
{
  public:
    /// Nil.
    constexpr HSVNCompactDate() = default;
    /// A date that may be nil.
    constexpr HSVNCompactDate(const std::optional<HSVNDate>& date) // NOLINT(google-explicit-constructor)
        : _microseconds{date ? date->microsecondsSince1970() : nil}
    {
    }

    /// The date, or nil.
    constexpr std::optional<HSVNDate> value() const
    {
        return _microseconds == nil ? std::nullopt : std::optional{HSVNDate{_microseconds}};
    }

    /// The date cut to the whole seconds, or nil.
    constexpr std::optional<HSVNDate> seconds() const
    {
        return _microseconds == nil ? std::nullopt
                                    : std::optional{HSVNDate{_microseconds - _microseconds % microsecondsPerSecond}};
    }

    /// Order in time; nil comes first.
    friend constexpr auto operator<=>(const HSVNCompactDate&, const HSVNCompactDate&) = default; // NOLINT: no null

  private:
    static constexpr std::int64_t microsecondsPerSecond = 1'000'000;
    static constexpr std::int64_t nil = std::numeric_limits<std::int64_t>::min();
    std::int64_t _microseconds = nil;
};
