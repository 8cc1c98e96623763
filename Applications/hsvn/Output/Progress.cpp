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
    bool isWanted = false;
    std::optional<Clock::time_point> start; // of what was first heard of it
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
    std::string text;
    if (current.items > 0) {
        text = fmt::format(" {} {}", current.items, current.items == 1 ? "item" : "items");
    }
    if (bytes > 0) {
        text += fmt::format("{} {}, {}/s", text.empty() ? "" : ",", amount(bytes), amount(bytes / seconds));
    }
    Output::showTransient(text.empty() ? fmt::format(" {:.0f} s", seconds) : text);
    current.shown = now;
}

/// Shows how far the work is if it has gone on for long enough, and for long enough since it was last shown.
void showAfter(std::chrono::milliseconds interval)
{
    const auto now = Clock::now();
    Work& current = work();
    current.start = current.start.value_or(now);
    if (now - *current.start >= std::chrono::seconds{1} && now - current.shown >= interval && Display::isShown()) {
        show(now);
    }
}

constexpr std::chrono::milliseconds usualInterval{200};

} // namespace

void Progress::setWanted(bool isWanted) { work().isWanted = isWanted; }

void Progress::goOn()
{
    if (work().isWanted) {
        showAfter(usualInterval);
    }
}

void Progress::advance(int items)
{
    work().items += items;
    if (work().isWanted) {
        showAfter({}); // what is told of the item has just taken the place
    }
}

void Progress::setTransferred(std::int64_t bytes)
{
    Work& current = work();
    if (bytes < current.bytes) {
        current.finishedBytes += current.bytes;
    }
    current.bytes = bytes;
    goOn();
}
