#include "HSVNBundleLoader.h"
#include "HSVNDate.h"
#include "HSVNException.h"
#include "Internal/Pool.h"
#include "Internal/Unicode.h"

#include <chrono>
#include <fmt/format.h>
#include <string_view>

namespace {

/// A moment in the user's calendar and time zone.
HSVNUnicode::LocalTime localTime(const HSVNDate& date)
{
    using namespace std::chrono;
    const auto seconds = floor<std::chrono::seconds>(microseconds{date.microsecondsSince1970()});
    const auto time = HSVNUnicode::shared().localTime(seconds.count());
    if (!time) {
        throw HSVNGenericException("No calendar for the current locale");
    }
    return *time;
}

/// The number of the digits at a place.
int numberAt(std::string_view text, std::size_t place, std::size_t length)
{
    int number = 0;
    for (const char digit : text.substr(place, length)) {
        number = 10 * number + (digit - '0');
    }
    return number;
}

/// The moment of a text as repositories have them, "2020-01-31T23:59:59.123456Z": a log has one for each revision,
/// which is not worth a pool. Nothing for all others, which are Subversion's to read.
std::optional<HSVNDate> dateOfRepository(std::string_view text)
{
    using namespace std::chrono;
    constexpr std::string_view form = "0000-00-00T00:00:00.000000Z";
    for (std::size_t place = 0; place < form.size(); ++place) {
        const bool isDigit = place < text.size() && text[place] >= '0' && text[place] <= '9';
        if (text.size() != form.size() || (form[place] == '0' ? !isDigit : text[place] != form[place])) {
            return std::nullopt;
        }
    }
    const auto ofDate = [text](std::size_t place) { return static_cast<unsigned>(numberAt(text, place, 2)); };
    const year_month_day day{year{numberAt(text, 0, 4)}, month{ofDate(5)}, std::chrono::day{ofDate(8)}};
    const hours hour{numberAt(text, 11, 2)};
    const minutes minute{numberAt(text, 14, 2)};
    const seconds second{numberAt(text, 17, 2)};
    if (!day.ok() || day.year() <= year{1970} || hour >= 24h || minute >= 60min || second >= 60s) {
        return std::nullopt;
    }
    const auto moment = sys_days{day} + hour + minute + second + microseconds{numberAt(text, 20, 6)};
    return HSVNDate::dateWithAPRTime(moment.time_since_epoch().count());
}

} // namespace

std::optional<HSVNDate> HSVNDate::dateWithISO8601CString(const char* text, apr_pool_t* pool)
{
    if (!text) {
        return std::nullopt;
    }
    if (const auto date = dateOfRepository(text)) {
        return date;
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
    if (const auto date = dateOfRepository(*text)) {
        return date;
    }
    const HSVNBundleScope scope{HSVNBundleLoader::sharedInstance().newestBundle()};
    const HSVNPool pool;
    return dateWithISO8601String(text, pool);
}

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
