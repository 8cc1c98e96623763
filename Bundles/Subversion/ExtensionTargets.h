#pragma once

#include "CanonicalPaths.h"

// Targets of the second table's functions, which keep the form that a user gave them as far as Subversion allows.

namespace HSVNAdapter {

/// A target that is canonical already stays as it is, a relative one too; any other becomes absolute. Lines before 1.7
/// make every path absolute.
svn_error_t* checkTarget(const char** target, apr_pool_t* pool);

/// The same for functions that take absolute targets only.
svn_error_t* checkAbsoluteTarget(const char** target, apr_pool_t* pool);

/// The same for functions that take local paths only: a URL is refused.
svn_error_t* checkLocalTarget(const char** target, apr_pool_t* pool);

/// Replaces the targets by a new array of checked local ones.
svn_error_t* checkLocalTargets(const apr_array_header_t** targets, apr_pool_t* pool);

#if SVN_VER_MINOR >= 5
/// An array of `HSVNBundleExtensions::RevisionRange` values as the array of pointers that Subversion takes.
apr_array_header_t* rangePointers(const apr_array_header_t* ranges, apr_pool_t* pool);
#endif

/// The same for targets of either kind.
svn_error_t* checkTargets(const apr_array_header_t** targets, apr_pool_t* pool);

} // namespace HSVNAdapter
