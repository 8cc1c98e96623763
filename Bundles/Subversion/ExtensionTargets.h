#pragma once

#include "CanonicalPaths.h"

// Targets of the second table's functions, which keep the form that a user gave them as far as Subversion allows.

namespace HSVNAdapter {

/// A target that is canonical already stays as it is, a relative one too; any other becomes absolute. Lines before 1.7
/// make every path absolute.
svn_error_t* checkTarget(const char** target, apr_pool_t* pool);

/// The same for what names items as they are named to it, as texts of differences do: a relative target stays relative
/// on lines before 1.7, too.
svn_error_t* checkShownTarget(const char** target, apr_pool_t* pool);

/// The same for functions that take absolute targets only.
svn_error_t* checkAbsoluteTarget(const char** target, apr_pool_t* pool);

/// The same for what follows a URL that it is relative to; a URL and an absolute path are refused.
svn_error_t* checkRelativeTarget(const char** target, apr_pool_t* pool);

/// The same for functions that take local paths only: a URL is refused.
svn_error_t* checkLocalTarget(const char** target, apr_pool_t* pool);

/// The same for the user's configuration area, or null: a relative path serves without a current directory, too.
svn_error_t* checkConfigurationFolder(const char** folder, apr_pool_t* pool);

/// Replaces the targets by a new array of checked local ones.
svn_error_t* checkLocalTargets(const apr_array_header_t** targets, apr_pool_t* pool);

/// Refuses URLs at which no folder can be made: one without a path, and any on another server than the first, for which
/// Subversion looks for what all have in common. The targets are canonical.
svn_error_t* checkNewFolders(const apr_array_header_t* targets);

/// Refuses what a listing tells of an item outside of the folder that is listed, of which Subversion makes no path.
svn_error_t* checkListedPath(const char* path, const char* folder);

/// Refuses no revision at all where Subversion asserts that there is one.
svn_error_t* checkRevision(const svn_opt_revision_t* revision);

#if HSVN_LINE_MINOR < 5
/// The flag of 1.4 for a depth, which says "files" where it is not the whole tree.
inline svn_boolean_t recurses(svn_depth_t depth) { return depth == svn_depth_unknown || depth == svn_depth_infinity; }
#else
/// Refuses the depth "exclude", which is none of a walk through items.
svn_error_t* checkWalkDepth(svn_depth_t depth);

/// The same, and unknown means everything below, as on 1.4, whose flag has no third value: for functions that do not
/// ask the working copy. Lines differ in what they make of it, and newer ones assert.
svn_error_t* settleWalkDepth(svn_depth_t* depth);

/// An array of `HSVNReadingFunctions::RevisionRange` values as the array of pointers that Subversion takes.
apr_array_header_t* rangePointers(const apr_array_header_t* ranges, apr_pool_t* pool);
#endif

/// The same for targets of either kind.
svn_error_t* checkTargets(const apr_array_header_t** targets, apr_pool_t* pool);

} // namespace HSVNAdapter
