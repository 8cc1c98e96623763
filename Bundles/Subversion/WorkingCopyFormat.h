#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// The format number that the folder's administrative area states, whatever formats the line knows; 0 without one.
int statedFormat(const char* folder, apr_pool_t* pool);

/// The error, below an unsupported-format error when the line denies that the folder is a working copy although it is
/// one of a format that the line does not know.
svn_error_t* formatChecked(const char* folder, svn_error_t* error, apr_pool_t* pool);

} // namespace HSVNAdapter
