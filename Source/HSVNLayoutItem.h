#pragma once

#include "HSVNTypes.h"

#include <optional>
#include <string>

/// An item of a working copy that is not what its directory alone would make it (`HSVNContext::layout`).
struct HSVNLayoutItem
{
    std::string path{};                                ///< below the directory that was asked for; "" is that itself
    std::optional<std::string> url{};                  ///< of a switched item; nil for the others
    HSVNRevisionNumber revision = HSVNInvalidRevision; ///< none of an item that is not present
    HSVNDepth depth = HSVNDepthUnknown;                ///< unknown for an item that is not present
    bool isPresent = true;                             ///< otherwise the repository has it, the working copy does not
    bool hasOwnRevision = false;                       ///< not that of the directory above
    bool hasOwnDepth = false;                          ///< not what that of the directory above brings with it
};
