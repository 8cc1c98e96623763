#include "HSVNDate.h"

#include "HSVNBundleLoader.h"
#include "HSVNException.h"
#include "Internal/Pool.h"
#include "Internal/Unicode.h"

#include <fmt/format.h>

#include <chrono>
#include <ctime>

namespace {

constexpr std::int64_t microsecondsPerSecond = 1'000'000;

/// Seconds since 1970 on or before a moment.
std::int64_t wholeSecondsBefore(std::int64_t microseconds)
{
    const std::int64_t seconds = microseconds / microsecondsPerSecond;
    return seconds - (microseconds % microsecondsPerSecond < 0 ? 1 : 0);
}

/// A moment in the user's calendar and time zone.
HSVNUnicode::LocalTime localTime(const HSVNDate& date)
{
    const auto time = HSVNUnicode::shared().localTime(wholeSecondsBefore(date.microsecondsSince1970()));
    if (!time) {
        throw HSVNGenericException("No calendar for the current locale");
    }
    return *time;
}

} // namespace

HSVNDate HSVNDate::now()
{
    using namespace std::chrono;
    return HSVNDate{duration_cast<microseconds>(system_clock::now().time_since_epoch()).count()};
}

std::optional<HSVNDate> HSVNDate::dateWithAPRTime(std::int64_t time)
{
    if (time == 0) {
        return std::nullopt;
    }
    return HSVNDate{HSVNDate{time}.APRTime()};
}

std::optional<HSVNDate> HSVNDate::dateWithISO8601CString(const char* text, apr_pool_t* pool)
{
    if (!text) {
        return std::nullopt;
    }
    apr_time_t time = 0;
    if (auto* error = HSVNCurrentEntryPoints().time_from_cstring(&time, text, pool)) {
        HSVNException::exceptionWithError(error)->raise();
    }
    return dateWithAPRTime(time);
}

std::optional<HSVNDate> HSVNDate::dateWithISO8601String(const std::optional<std::string>& text, apr_pool_t* pool)
{
    return dateWithISO8601CString(text ? text->c_str() : nullptr, pool);
}

std::optional<HSVNDate> HSVNDate::dateWithISO8601String(const std::optional<std::string>& text)
{
    if (!text) {
        return std::nullopt;
    }
    const HSVNBundleScope scope{HSVNBundleLoader::sharedInstance().newestBundle()};
    const HSVNPool pool;
    return dateWithISO8601String(text, pool);
}

std::int64_t HSVNDate::APRTime() const { return _microseconds / microsecondsPerSecond * microsecondsPerSecond; }

std::string HSVNDate::ISO8601StringValue() const
{
    const auto local = localTime(*this);
    auto text = fmt::format("{:04}-{:02}-{:02}", local.year, local.month, local.day);
    // All three, so that a full hour or minute prints as the day alone: readers of the text rely on it.
    if (local.hour > 0 && local.minute > 0 && local.second > 0) {
        text += fmt::format("T{:02}:{:02}:{:02}", local.hour, local.minute, local.second);
    }
    return text;
}

std::string HSVNDate::description() const
{
    const std::time_t seconds = wholeSecondsBefore(_microseconds);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} +0000", std::int64_t{utc.tm_year} + 1900, utc.tm_mon + 1,
                       utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);
}

std::int32_t HSVNDate::compare(const HSVNDate& other) const
{
    return (_microseconds > other._microseconds) - (_microseconds < other._microseconds);
}
