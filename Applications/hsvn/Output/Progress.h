#pragma once

#include <cstdint>

/// The line that shows how far long work is: items, bytes and rate, or how long it has taken. It stands behind what is
/// printed, on a terminal only, and first appears when the work has taken a second.
namespace Progress {

/// Whether any is shown; none is before.
void setWanted(bool isWanted);
/// Says that the work goes on.
void goOn();
/// Counts items of the work, none for a step that is no item.
void advance(int items);
/// Takes in how many bytes the current connection has transferred.
void setTransferred(std::int64_t bytes);

} // namespace Progress
