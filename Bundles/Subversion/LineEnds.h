#pragma once

#include "SubversionLine.h"

// Repositories refuse log messages and values of Subversion's own properties whose lines end in anything but "\n".

namespace HSVNAdapter {

/// Replaces the value, which may be null, of a property that Subversion keeps as text by one made in the pool whose
/// lines end in "\n". Lines that end in several ways are an error, as for `svn`.
svn_error_t* endLines(const svn_string_t** value, const char* propertyName, apr_pool_t* pool);

} // namespace HSVNAdapter
