#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

#include <optional>
#include <string>
#include <vector>

namespace HSVNAdapter {

/// The items at and below a local path that may have the property svn:externals; it is certain that no other has.
///
/// One query of the working copy's database, where reading the properties of every item takes a fifth of a scan's time.
/// None, that is unknown, for items that are not plainly versioned and for databases of an unknown format.
///
/// @param path  canonical and absolute
/// @param pool  keeps the connection to the database for what comes next
std::optional<std::vector<std::string>> itemsThatMayHaveExternals(const char* path, apr_pool_t* pool);

} // namespace HSVNAdapter

#endif
