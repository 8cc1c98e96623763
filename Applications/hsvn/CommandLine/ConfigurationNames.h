#pragma once

#include <HSVN/HSVN.h>

/// Warns of a name in the option that Subversion does not know, and tells which was meant.
///
/// @return whether Subversion knows the option's file
bool checkConfigurationNames(const HSVNConfigurationOption& option);

/// Warns of an option of a file that Subversion does not know.
void warnOfUnknownFile();
