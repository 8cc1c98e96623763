#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// What is on disk, symbolic links not followed; none when that cannot be told.
svn_node_kind_t kindOnDisk(const char* path, apr_pool_t* pool);

bool isSymbolicLink(const char* path, apr_pool_t* pool);

/// That nothing is at a path, in words of its own: the line's name another reason or the folder around it.
svn_error_t* nothingAt(const char* path);

} // namespace HSVNAdapter
