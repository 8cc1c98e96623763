#pragma once

#include "SubversionLine.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

#include "SQLiteHandles.h"

#include <string>

namespace HSVNAdapter {

/// A read-only connection to a working copy's database; null unless its format is the one whose tables are known here,
/// and they are those of Subversion's. For one thread.
SQLiteDatabase openDatabase(const std::string& file);

/// Whether a database is so large that a thread is made in less time than it is read in.
bool isWorthThreads(const std::string& file);

/// Leaves a connection to what the pool's owner does next, as a scan does after asking for externals: opening one anew
/// takes longer than scanning a small folder. It is closed with the pool.
void leaveDatabase(SQLiteDatabase database, const std::string& file, apr_pool_t* pool);

/// The connection left in the pool, or a new one when there is none or the file has been replaced since; null as above.
SQLiteDatabase takeDatabase(const std::string& file, apr_pool_t* pool);

} // namespace HSVNAdapter

#endif
