#pragma once

#include "HSVNDate.h"

#include <cstdint>
#include <optional>
#include <string>

/// A C string of Subversion, where NULL is nil.
inline std::optional<std::string> HSVNTextOrNil(const char* text)
{
    return text ? std::optional<std::string>{text} : std::nullopt;
}

/// A moment of Subversion to the microsecond; 0 is none.
inline std::optional<HSVNDate> HSVNDateOrNil(std::int64_t time)
{
    return time == 0 ? std::nullopt : std::optional{HSVNDate{time}};
}

/// A value that may be nil as descriptions show it: nil is "(null)".
inline std::string HSVNDescription(const std::optional<std::string>& text) { return text.value_or("(null)"); }
inline std::string HSVNDescription(const std::optional<HSVNDate>& date)
{
    return date ? date->description() : "(null)";
}
