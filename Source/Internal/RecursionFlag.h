#pragma once

#include "Internal/DepthTranslation.h"
#include "Internal/Operation.h"

/// What a place of the first table takes instead of a depth when it tells the item alone from everything below.
///
/// @throws HSVNInvalidArgumentException "Invalid depth %d" for a number that is none; HSVNUnsupportedFeatureException
///         for a depth between the two
inline bool HSVNRecursionFlag(const HSVNOperation& operation, HSVNDepth depth)
{
    HSVNDepthForSubversion(depth);
    const bool recurses = depth == HSVNDepthInfinity || depth == HSVNDepthUnknown;
    operation.refuse(!recurses && depth != HSVNDepthEmpty, "depth");
    return recurses;
}
