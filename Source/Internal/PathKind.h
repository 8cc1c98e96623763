#pragma once

#include "HSVNLocalPath.h"
#include "HSVNURL.h"

/// Whether a path is one on the disk.
inline bool HSVNIsLocal(const HSVNPathRef& path)
{
    return std::dynamic_pointer_cast<const HSVNLocalPath>(path) != nullptr;
}

/// Whether a path is one in a repository.
inline bool HSVNIsURL(const HSVNPathRef& path) { return std::dynamic_pointer_cast<const HSVNURL>(path) != nullptr; }
