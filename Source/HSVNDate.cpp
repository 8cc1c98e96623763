#include "HSVNDate.h"

#include <fmt/format.h>

#include <chrono>
#include <ctime>
#include <ostream>

namespace {

constexpr std::int64_t microsecondsPerSecond = 1'000'000;

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

std::int64_t HSVNDate::APRTime() const { return _microseconds / microsecondsPerSecond * microsecondsPerSecond; }

std::string HSVNDate::description() const
{
    const std::time_t seconds =
        std::chrono::floor<std::chrono::seconds>(std::chrono::microseconds{_microseconds}).count();
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02} +0000", std::int64_t{utc.tm_year} + 1900, utc.tm_mon + 1,
                       utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec);
}

std::int32_t HSVNDate::compare(const HSVNDate& other) const
{
    return (_microseconds > other._microseconds) - (_microseconds < other._microseconds);
}

std::ostream& operator<<(std::ostream& stream, const HSVNDate& date) { return stream << date.description(); }
