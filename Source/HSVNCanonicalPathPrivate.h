#pragma once

#include "HSVNForward.h"

/// The path as Subversion reports it: absolute, without "." and ".." and doubled or trailing "/".
///
/// @param path  a local path
HSVNLocalPathRef HSVNCanonicalLocalPath(const HSVNPathRef& path);
