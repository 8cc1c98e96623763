#pragma once

#include "HSVNExport.h"

#include <string>
#include <vector>

struct apr_pool_t;

namespace HSVNString {

/// Whether a file name matches one of an array of glob patterns, as Subversion's ignore patterns do.
///
/// @param pool  where the patterns are put for the call, a pool of the current bundle; the call leaves nothing in it
/// Stands for svn_cstring_match_glob_list.
HSVN_EXPORT bool matchesPatternInArray(const std::string& text, const std::vector<std::string>& patterns,
                                       apr_pool_t* pool);

/// The same in a pool of its own, with the newest loaded bundle made current for the call.
HSVN_EXPORT bool matchesPatternInArray(const std::string& text, const std::vector<std::string>& patterns);

} // namespace HSVNString
