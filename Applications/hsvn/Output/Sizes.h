#pragma once

#include <cstdint>
#include <string>

/// A size in at most three digits and a base-2 unit: "512 B", "1.5 KiB"; for lists "512B", "1.5K".
std::string humanSize(std::int64_t size, bool isShort);
