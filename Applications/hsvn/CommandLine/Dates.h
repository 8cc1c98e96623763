#pragma once

#include <HSVN/HSVN.h>

#include <string>

/// "2026-11-21 09:54:59 +0000 (Sat, 21 Nov 2026)", in the local time zone.
std::string humanDate(const HSVNDate& date);
/// The same of a date as a revision's property holds it, or "(invalid date)".
std::string humanDate(const std::string& property);
/// "Nov 21 09:54", or "Nov 21  2025" for what is half a year away.
std::string listDate(const HSVNDate& date);
/// "2026-11-21T09:54:59.547705Z"
std::string exactDate(const HSVNDate& date);
