#pragma once

#include <HSVN/HSVN.h>

#include <string>

/// The line that tells where a change of a patch was applied, or that it was not; empty for one in the place that the
/// patch gives.
std::string hunkLine(const HSVNNotification& notification);
