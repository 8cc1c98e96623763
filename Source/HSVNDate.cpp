#include "HSVNDate.h"

#include "HSVNBundleLoader.h"
#include "HSVNException.h"
#include "HSVNPoolPrivate.h"

#include <fmt/format.h>
#include <unicode/calendar.h>

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
class LocalCalendar
{
  public:
    explicit LocalCalendar(const HSVNDate& date)
    {
        UErrorCode status = U_ZERO_ERROR;
        _calendar.reset(icu::Calendar::createInstance(status));
        if (U_SUCCESS(status)) {
            const auto seconds = static_cast<UDate>(wholeSecondsBefore(date.microsecondsSince1970()));
            _calendar->setTime(seconds * U_MILLIS_PER_SECOND, status);
        }
        if (U_FAILURE(status)) {
            throw HSVNGenericException(fmt::format("No local calendar: {}", u_errorName(status)));
        }
    }
    std::int32_t operator[](UCalendarDateFields field) const
    {
        UErrorCode status = U_ZERO_ERROR;
        return _calendar->get(field, status);
    }

  private:
    std::unique_ptr<icu::Calendar> _calendar;
};

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
    const LocalCalendar calendar{*this};
    auto text = fmt::format("{:04}-{:02}-{:02}", calendar[UCAL_YEAR], calendar[UCAL_MONTH] + 1, calendar[UCAL_DATE]);
    const auto hour = calendar[UCAL_HOUR_OF_DAY];
    const auto minute = calendar[UCAL_MINUTE];
    const auto second = calendar[UCAL_SECOND];
    // All three, so that a full hour or minute prints as the day alone: readers of the text rely on it.
    if (hour > 0 && minute > 0 && second > 0) {
        text += fmt::format("T{:02}:{:02}:{:02}", hour, minute, second);
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
