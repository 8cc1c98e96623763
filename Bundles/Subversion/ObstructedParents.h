#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// Whether a symbolic link above an absolute path, in its working copy, has the place of a versioned directory, or the
/// path is recorded all the same: what is written at the path would be written wherever the link leads. A database that
/// cannot be read does not say no. On lines before 1.9: never.
bool isBelowDirectoryLink(const char* path, apr_pool_t* pool);

/// Refuses to write at an absolute path below what else than a directory has a versioned directory's place there.
svn_error_t* refuseBelowObstruction(const char* path, apr_pool_t* pool);

/// The same below links alone.
svn_error_t* refuseBelowDirectoryLink(const char* path, apr_pool_t* pool);

/// The same below any link in the path's working copy, whatever it has the place of: for paths that a database or a
/// patch states, which no user has chosen.
svn_error_t* refuseBelowAnyLink(const char* path, apr_pool_t* pool);
/// Whether that is refused.
bool isBelowAnyLink(const char* path, apr_pool_t* pool);

/// Refuses each target, relative ones as well, that is below such a link; those that are URLs are passed over.
svn_error_t* refuseBelowDirectoryLinks(const apr_array_header_t* targets, apr_pool_t* pool);

/// The same of one target.
svn_error_t* refuseTargetBelowDirectoryLink(const char* target, apr_pool_t* pool);

} // namespace HSVNAdapter
