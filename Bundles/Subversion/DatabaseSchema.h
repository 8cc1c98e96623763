#pragma once

#include "SubversionLine.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

struct sqlite3;

namespace HSVNAdapter {

/// Whether a working copy's database has a view, a trigger, a virtual table or a computed column that Subversion never
/// made: one can stand for a table whose rows never end, or change what nobody asked for.
bool hasForeignSchema(sqlite3* database);

} // namespace HSVNAdapter

#endif
