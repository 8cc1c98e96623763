#pragma once

#include "HSVNForward.h"

/// Refuses a URL as bundles do.
///
/// @throws HSVNException "'%@' is not a local path"
void HSVNRequireLocalPath(const HSVNPathRef& path);

/// The path as Subversion reports it: absolute, without "." and ".." and doubled or trailing "/".
///
/// @throws HSVNException for a URL, and for a relative path where the current folder is gone
HSVNLocalPathRef HSVNCanonicalLocalPath(const HSVNPathRef& path);
