#pragma once

#include "HSVNPlatformException.h"
#include "HSVNTypes.h"

/// The recursion flag of Subversion 1.4 for a depth. Infinity and unknown recurse; which depth does not is each
/// operation's own.
///
/// @throws HSVNInvalidArgumentException "Invalid depth" for any other depth
inline bool HSVNRecurseForDepth(HSVNDepth depth, HSVNDepth nonRecursive)
{
    if (depth == nonRecursive) {
        return false;
    }
    if (depth == HSVNDepthInfinity || depth == HSVNDepthUnknown) {
        return true;
    }
    throw HSVNInvalidArgumentException("Invalid depth");
}
