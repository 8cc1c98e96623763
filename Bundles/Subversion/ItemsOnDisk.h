#pragma once

#include "SubversionLine.h"

#include <string>
#include <string_view>

namespace HSVNAdapter {

/// What is on disk, symbolic links not followed; none when that cannot be told.
svn_node_kind_t kindOnDisk(const char* path, apr_pool_t* pool);

bool isSymbolicLink(const char* path, apr_pool_t* pool);

/// Whether a directory above the last name of a path is a symbolic link; the path is relative to the folder.
bool leadsThroughLink(std::string_view path, const std::string& folder, apr_pool_t* pool);

/// That nothing is at a path, in words of its own: the line's name another reason or the folder around it.
svn_error_t* nothingAt(const char* path);

} // namespace HSVNAdapter
