#pragma once

#include "SubversionLine.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

struct sqlite3;
struct sqlite3_stmt;

namespace HSVNAdapter {

// The pages of a damaged database may lead to one another, so that a table has more rows than can ever be read.

/// Makes those statements of a connection fail that take more steps than the database's size gives reason for.
void endEndlessStatements(sqlite3* database);
/// Begins to count a statement's steps anew, when it has come to its end.
void forgetStepsOf(sqlite3_stmt* statement);

} // namespace HSVNAdapter

#endif
