#pragma once

#include "HSVNTypes.h"

#include <optional>
#include <string>

/// How an item stands in its working copy.
struct HSVNWorkingCopyPlace
{
    std::optional<std::string> changelist; ///< that the item belongs to; nil for none
    HSVNDepth depth = HSVNDepthUnknown;    ///< of a folder
    std::optional<std::string> movedFrom;  ///< absolute path
    std::optional<std::string> movedTo;    ///< absolute path
};
