#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// Removes the administrative area of a folder when a check-out that was ended in its first instants left it: nothing
/// takes it for one, and so nothing can be checked out there.
///
/// It is removed only when it is certain to hold nothing: its files are empty but for the number of a format, and a
/// database in it has not a table. One of a working copy that something can still be read from always has more.
void removeStillbornArea(const char* folder, apr_pool_t* pool);

} // namespace HSVNAdapter
