#include "Output/Progress.h"

#include "Output/Display.h"
#include "Output/Output.h"

#include <array>
#include <chrono>
#include <fmt/format.h>
#include <optional>

namespace {

using Clock = std::chrono::steady_clock;

/// The work that the process does.
struct Work
{
    std::optional<Clock::time_point> start;
    Clock::time_point shown;
    std::int64_t items = 0;
    std::int64_t finishedBytes = 0; // of connections before the current one
    std::int64_t bytes = 0;
};

Work& work()
{
    static Work theWork;
    return theWork;
}

std::string amount(double bytes)
{
    constexpr std::array units{"bytes", "kB", "MB", "GB", "TB"};
    std::size_t unit = 0;
    for (; bytes >= 1000 && unit + 1 < units.size(); ++unit) {
        bytes /= 1000;
    }
    return fmt::format("{:.{}f} {}", bytes, unit == 0 || bytes >= 100 ? 0 : 1, units[unit]);
}

void show(Clock::time_point now)
{
    Work& current = work();
    const double seconds = std::chrono::duration<double>(now - *current.start).count();
    const auto bytes = static_cast<double>(current.finishedBytes + current.bytes);
    std::string text = fmt::format(" {} {}", current.items, current.items == 1 ? "item" : "items");
    if (bytes > 0) {
        text += fmt::format(", {}, {}/s", amount(bytes), amount(bytes / seconds));
    }
    Output::showTransient(text);
    current.shown = now;
}

/// Whether the work has gone on for long enough to tell of it.
bool isLong(Clock::time_point now)
{
    return Display::isShown() && work().start && now - *work().start >= std::chrono::seconds{1};
}

} // namespace

void Progress::advance(int items)
{
    const auto now = Clock::now();
    Work& current = work();
    current.start = current.start.value_or(now);
    current.items += items;
    // What is told of it has just taken the place.
    if (isLong(now)) {
        show(now);
    }
}

void Progress::setTransferred(std::int64_t bytes)
{
    Work& current = work();
    if (bytes < current.bytes) {
        current.finishedBytes += current.bytes;
    }
    current.bytes = bytes;
    const auto now = Clock::now();
    if (isLong(now) && now - current.shown >= std::chrono::milliseconds{200}) {
        show(now);
    }
}
