#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

// What is written below a link would be written wherever that leads. On lines before 1.7, and on static ones
// before 1.9, nothing here refuses anything.

/// Refuses to write at an absolute path in whose working copy something else than a directory has the place of a
/// versioned one above it, or is above it though the path is recorded. A database that cannot be read does not say no.
svn_error_t* refuseBelowObstruction(const char* path, apr_pool_t* pool);

/// The same below links alone.
svn_error_t* refuseBelowDirectoryLink(const char* path, apr_pool_t* pool);

/// The same below any link in the path's working copy, whatever it has the place of: for paths that a database states,
/// which no user has chosen.
svn_error_t* refuseBelowAnyLink(const char* path, apr_pool_t* pool);
/// Whether that is refused.
bool isBelowAnyLink(const char* path, apr_pool_t* pool);

/// Refuses each target, relative ones as well, that is below such a link; those that are URLs are passed over.
svn_error_t* refuseBelowDirectoryLinks(const apr_array_header_t* targets, apr_pool_t* pool);

/// The same of one target.
svn_error_t* refuseTargetBelowDirectoryLink(const char* target, apr_pool_t* pool);

} // namespace HSVNAdapter
