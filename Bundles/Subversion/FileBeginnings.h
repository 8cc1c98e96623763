#pragma once

#include <cstddef>
#include <string>

namespace HSVNAdapter {

/// The first bytes of a file, or all of a shorter one's; empty for what is no file, of which none might ever come, and
/// for what cannot be read.
std::string beginningOf(const std::string& file, std::size_t bytes);

} // namespace HSVNAdapter
