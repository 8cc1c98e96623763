#pragma once

#include "HSVNDate.h"

#include <optional>
#include <string>

/// A lock as Subversion stores it, its moments to the microsecond.
struct HSVNLockRecord
{
    std::string token;
    std::optional<std::string> owner;
    std::optional<std::string> comment;
    std::optional<HSVNDate> created;
    std::optional<HSVNDate> expires;
};
