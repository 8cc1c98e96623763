#include "UnicodeDates.h"

#include <clocale>
#include <cmath>
#include <limits>
#include <memory>
#include <unicode/calendar.h>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace {

/// How the user writes dates. ICU's own default is the language of messages.
icu::Locale dateLocale()
{
    const std::string_view name = std::setlocale(LC_TIME, nullptr);
    const std::string_view language = name.substr(0, name.find('.'));
    // The C locale has no name of its own there.
    return icu::Locale::createCanonical(language == "C" || language == "POSIX" ? "en_US_POSIX" : name.data());
}

std::unique_ptr<icu::Calendar> calendarAt(std::int64_t secondsSince1970)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> calendar{icu::Calendar::createInstance(dateLocale(), status)};
    if (U_SUCCESS(status)) {
        calendar->setTime(static_cast<UDate>(secondsSince1970) * U_MILLIS_PER_SECOND, status);
    }
    return U_SUCCESS(status) ? std::move(calendar) : nullptr;
}

std::optional<std::int64_t> dateInStyle(const icu::UnicodeString& text, icu::DateFormat::EStyle style)
{
    const std::unique_ptr<icu::DateFormat> format{icu::DateFormat::createDateInstance(style, dateLocale())};
    if (!format) {
        return std::nullopt;
    }
    format->setLenient(0);
    icu::ParsePosition position{0};
    const UDate milliseconds = format->parse(text, position);
    constexpr double furthest = static_cast<double>(std::numeric_limits<std::int64_t>::max()) / 1000.0;
    if (position.getErrorIndex() >= 0 || position.getIndex() != text.length() || !(std::abs(milliseconds) < furthest)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(milliseconds);
}

} // namespace

std::optional<HSVNUnicode::LocalTime> UnicodeDates::localTime(std::int64_t secondsSince1970)
{
    const auto calendar = calendarAt(secondsSince1970);
    if (!calendar) {
        return std::nullopt;
    }
    const auto field = [&calendar](UCalendarDateFields which) {
        UErrorCode status = U_ZERO_ERROR;
        return calendar->get(which, status);
    };
    return HSVNUnicode::LocalTime{field(UCAL_YEAR),        field(UCAL_MONTH) + 1, field(UCAL_DATE),
                                  field(UCAL_HOUR_OF_DAY), field(UCAL_MINUTE),    field(UCAL_SECOND)};
}

std::optional<std::int64_t> UnicodeDates::dateInLocaleStyle(std::string_view text)
{
    const auto unicode = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    for (const auto style :
         {icu::DateFormat::kShort, icu::DateFormat::kMedium, icu::DateFormat::kLong, icu::DateFormat::kFull})
    {
        if (const auto date = dateInStyle(unicode, style)) {
            return date;
        }
    }
    return std::nullopt;
}
