#pragma once

#include <string>

/// The manual page hsvn(1), in roff.
std::string manualPage();
