#pragma once

#include "HSVNPlatformException.h"
#include "HSVNTypes.h"
#include "Internal/Subversion.h"

#include <fmt/format.h>

/// A depth as Subversion from 1.5 on takes it.
///
/// @throws HSVNInvalidArgumentException "Invalid depth %d" for a number that is none, on which Subversion aborts
inline svn_depth_t HSVNDepthForSubversion(HSVNDepth depth)
{
    if (depth < HSVNDepthUnknown || depth > HSVNDepthInfinity) {
        throw HSVNInvalidArgumentException(fmt::format("Invalid depth {}", static_cast<std::int32_t>(depth)));
    }
    return static_cast<svn_depth_t>(depth);
}

/// Whether the flag of Subversion 1.4 that tells the whole tree from a directory with its files stands for the depth.
inline bool HSVNIsDepthOf1_4(HSVNDepth depth)
{
    return depth == HSVNDepthInfinity || depth == HSVNDepthUnknown || depth == HSVNDepthFiles;
}

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
