#pragma once

#include "HSVNDate.h"

#include <optional>
#include <string>

/// A C string of Subversion, where NULL is nil.
inline std::optional<std::string> HSVNTextOrNil(const char* text)
{
    return text ? std::optional<std::string>{text} : std::nullopt;
}

/// A value that may be nil as descriptions show it: nil is "(null)".
inline std::string HSVNDescription(const std::optional<std::string>& text) { return text.value_or("(null)"); }
inline std::string HSVNDescription(const std::optional<HSVNDate>& date)
{
    return date ? date->description() : "(null)";
}
