#pragma once

#include "SubversionLine.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

#include <string>

namespace HSVNAdapter {

/// Whether what is written in the name of a working copy's database would be written elsewhere, or what is read would
/// be no file: the database, what SQLite keeps beside it and the directories of the administrative area are looked at,
/// not opened.
bool leadsElsewhere(const std::string& database);

} // namespace HSVNAdapter

#endif
