#pragma once

#include "HSVNStatusKind.h"
#include "HSVNTypes.h"

#include <string>

/// One item that differs.
struct HSVNDifference
{
    std::string path{};                         ///< below the target; "" is the target itself
    HSVNStatusKind status = HSVNStatusKindNone; ///< Added, Deleted, Modified, or None
    bool propertiesModified = false;            ///< of an item that is on both sides
    HSVNNodeKind kind = HSVNNodeKindUnknown;    ///< of the item, on the side that has it
};
