#pragma once

#include "HSVNBundle.h"
#include "HSVNVersion.h"

/// The line of the installed Subversion.
HSVNVersion installedLine();

/// A bundle of a line: the newest loaded, or else the test bundle that presents that line over the installed
/// Subversion.
///
/// @throws HSVNException when there is none
HSVNBundleRef bundleOfLine(const HSVNVersion& line);
