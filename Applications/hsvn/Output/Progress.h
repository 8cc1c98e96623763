#pragma once

#include <cstdint>

/// The line that shows how far long work is: items, bytes and rate. It stands behind what is printed, on a terminal
/// only, and first appears when the work has taken a second.
namespace Progress {

/// Counts items of the work, none for a step that is no item; the first call begins it.
void advance(int items);
/// Takes in how many bytes the current connection has transferred.
void setTransferred(std::int64_t bytes);

} // namespace Progress
