#include "CommandLine/Dates.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"

#include <array>
#include <ctime>
#include <fmt/format.h>

namespace {

constexpr std::int64_t microsecondsPerSecond = 1'000'000;

std::time_t secondsOf(const HSVNDate& date)
{
    const std::int64_t moment = date.microsecondsSince1970();
    const std::int64_t remainder = moment % microsecondsPerSecond;
    return (moment - remainder) / microsecondsPerSecond - (remainder < 0 ? 1 : 0);
}

/// The date by strftime's pattern, as UTF-8.
std::string formatted(const char* pattern, const std::tm& time)
{
    std::array<char, 200> buffer{};
    const std::size_t length = std::strftime(buffer.data(), buffer.size(), pattern, &time);
    return NativeText::toUTF8({buffer.data(), length});
}

} // namespace

std::string humanDate(const HSVNDate& date)
{
    const std::time_t seconds = secondsOf(date);
    std::tm time{};
    localtime_r(&seconds, &time);
    return formatted("%Y-%m-%d %H:%M:%S %z (%a, %d %b %Y)", time);
}

std::string humanDate(const std::string& property)
{
    try {
        return humanDate(HSVNDate::dateWithISO8601String(property).value_or(HSVNDate{0}));
    } catch (const HSVNException& exception) {
        if (exception.status() != BadDate) {
            throw;
        }
        return "(invalid date)";
    }
}

std::string listDate(const HSVNDate& date)
{
    constexpr std::time_t halfYear = 365 * 86400 / 2;
    const std::time_t seconds = secondsOf(date);
    const std::time_t age = std::time(nullptr) - seconds;
    std::tm time{};
    localtime_r(&seconds, &time);
    return formatted(age < halfYear && age > -halfYear ? "%b %d %H:%M" : "%b %d  %Y", time);
}

std::string exactDate(const HSVNDate& date)
{
    const std::time_t seconds = secondsOf(date);
    std::tm time{};
    gmtime_r(&seconds, &time);
    return fmt::format("{}.{:06}Z", formatted("%Y-%m-%dT%H:%M:%S", time),
                       date.microsecondsSince1970() - seconds * microsecondsPerSecond);
}
