#pragma once

#include "Internal/Unicode.h"

/// The operations of HSVNUnicode on dates of the user's locale.
namespace UnicodeDates {

std::optional<HSVNUnicode::LocalTime> localTime(std::int64_t secondsSince1970);
std::optional<std::int64_t> dateInLocaleStyle(std::string_view text);

} // namespace UnicodeDates
