#include "HSVNBundleLoader.h"
#include "HSVNDate.h"
#include "HSVNException.h"
#include "Internal/Pool.h"
#include "Internal/Unicode.h"

#include <fmt/format.h>

#include <chrono>

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

} // namespace

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
