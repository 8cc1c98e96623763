#pragma once

#include "HSVNExport.h"

#include <compare>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

struct apr_pool_t;

/// A moment, in microseconds since 1970-01-01T00:00:00Z. A plain value; "no date" is `std::nullopt`.
class HSVN_EXPORT HSVNDate
{
  public:
    /// 1970-01-01T00:00:00Z.
    constexpr HSVNDate() = default;
    /// @param microseconds  since 1970-01-01T00:00:00Z; negative before
    explicit constexpr HSVNDate(std::int64_t microseconds) : _microseconds{microseconds} {}

    /// The present moment.
    static HSVNDate now();
    /// The moment that many seconds after 1970-01-01T00:00:00Z, or the farthest one that there is; negative is before.
    static constexpr HSVNDate dateWithTimeIntervalSince1970(std::int64_t seconds)
    {
        constexpr std::int64_t farthest = 9'223'372'036'854;
        return HSVNDate{(seconds < -farthest ? -farthest : seconds > farthest ? farthest : seconds) * 1'000'000};
    }

    /// The date of an APR time (microseconds since 1970): whole seconds, the microseconds dropped; 0 gives nil.
    static std::optional<HSVNDate> dateWithAPRTime(std::int64_t time);

    /// Parses Subversion's ISO 8601 text in the current bundle; NULL gives nil.
    ///
    /// @throws HSVNException for a text that `svn_time_from_cstring` refuses, or "Bundle stack is empty"
    static std::optional<HSVNDate> dateWithISO8601CString(const char* text, apr_pool_t* pool);
    /// The same for a text that may be nil.
    static std::optional<HSVNDate> dateWithISO8601String(const std::optional<std::string>& text, apr_pool_t* pool);
    /// The same with the newest loaded bundle made current and a pool of its own for the call.
    static std::optional<HSVNDate> dateWithISO8601String(const std::optional<std::string>& text);

    /// Microseconds since 1970-01-01T00:00:00Z; negative before.
    constexpr std::int64_t microsecondsSince1970() const { return _microseconds; }
    /// Whole seconds since 1970, as microseconds: what Subversion is given.
    std::int64_t APRTime() const;
    /// Local calendar: "yyyy-MM-ddTHH:mm:ss" when hour, minute and second are all greater than zero, else "yyyy-MM-dd".
    std::string ISO8601StringValue() const;
    /// The default description, in UTC: "2026-11-21 08:37:00 +0000".
    std::string description() const;
    /// Order in time.
    std::int32_t compare(const HSVNDate& other) const;

    friend constexpr bool operator==(const HSVNDate&, const HSVNDate&) = default;
    friend constexpr std::strong_ordering operator<=>(const HSVNDate& a, const HSVNDate& b)
    {
        return a._microseconds <=> b._microseconds;
    }

  private:
    std::int64_t _microseconds = 0;
};

/// Writes the `description`.
HSVN_EXPORT std::ostream& operator<<(std::ostream& stream, const HSVNDate& date);

/// For unordered containers: by its microseconds.
template <>
struct std::hash<HSVNDate>
{
    std::size_t operator()(const HSVNDate& date) const noexcept
    {
        return std::hash<std::int64_t>{}(date.microsecondsSince1970());
    }
};
