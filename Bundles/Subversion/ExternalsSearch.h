#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

namespace HSVNAdapter {

/// Whether it is certain that no folder at or below a local path has the property svn:externals.
///
/// One query of the working copy's database, where reading the properties of every item takes a fifth of a scan's time.
/// False, that is unknown, for items that are not plainly versioned and for databases of an unknown format.
///
/// @param path  canonical and absolute
/// @param pool  keeps the connection to the database for what comes next
bool haveNoExternals(const char* path, apr_pool_t* pool);

} // namespace HSVNAdapter

#endif
