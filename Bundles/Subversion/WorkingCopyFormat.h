#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// The format number that the folder's administrative area states, whatever formats the line knows; 0 without one.
int statedFormat(const char* folder, apr_pool_t* pool);

/// Whether the line works with working copies of a format as they are. The lines before 1.7 work with older ones, too.
bool isFormatOfLine(int format);

/// The error, below another when the line denies that the folder is a working copy although it states a format: one of
/// an unsupported format where the line does not know it, one of a corrupt working copy where it does.
svn_error_t* formatChecked(const char* folder, svn_error_t* error, apr_pool_t* pool);

} // namespace HSVNAdapter
