#pragma once

#include "HSVNDate.h"

#include <optional>
#include <string>

/// A lock as Subversion stores it, its moments to the microsecond.
struct HSVNLockRecord
{
    std::string token;                  ///< by which the repository knows the lock
    std::optional<std::string> owner;   ///< who locked the item
    std::optional<std::string> comment; ///< why; nil without a comment
    std::optional<HSVNDate> created;    ///< since when
    std::optional<HSVNDate> expires;    ///< nil for a lock that never expires
};
