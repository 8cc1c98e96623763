#pragma once

#include "SubversionLine.h"

// Subversion aborts the process on paths and URLs that are not in its canonical form, so nothing reaches it that has
// not passed through here. Paths become absolute (1.4 and 1.5 report notifications relative to the current folder
// otherwise) with ".", ".." and repeated or trailing slashes resolved; URLs get a lower-case scheme and host and
// exactly the escapes that Subversion writes itself. The empty path is the current folder. Empty URLs, invalid UTF-8
// and the wrong kind of target are errors.

namespace HSVNAdapter {

/// What an argument may be.
enum class TargetKind
{
    PathOrURL,
    Path,
    URL
};

/// Whether the text is a URL as Subversion tells URLs from paths.
bool isURL(const char* target);

/// Refuses a URL with an escaped zero byte. Subversion takes such a URL for canonical, ends the item's name at the byte
/// and names another item with what is left, or aborts.
svn_error_t* refuseZeroByte(const char* url);

/// Replaces the target by its canonical form, made in the pool.
svn_error_t* canonicalize(const char** target, TargetKind kind, apr_pool_t* pool);

/// Replaces the targets by a new array of their canonical forms; they are all URLs or all paths.
svn_error_t* canonicalizeAll(const apr_array_header_t** targets, TargetKind kind, apr_pool_t* pool);

/// HEAD for a URL without a revision, else the revision: some functions assert that a URL has one.
svn_opt_revision_t revisionForTarget(const char* target, const svn_opt_revision_t* revision);

} // namespace HSVNAdapter

/// Leaves the calling function with the error of making the path, URL or either canonical.
#define HSVN_CANONICAL_PATH(path, pool)                                                                                \
    SVN_ERR(HSVNAdapter::canonicalize(&(path), HSVNAdapter::TargetKind::Path, (pool)))
#define HSVN_CANONICAL_URL(url, pool) SVN_ERR(HSVNAdapter::canonicalize(&(url), HSVNAdapter::TargetKind::URL, (pool)))
#define HSVN_CANONICAL_TARGET(target, pool)                                                                            \
    SVN_ERR(HSVNAdapter::canonicalize(&(target), HSVNAdapter::TargetKind::PathOrURL, (pool)))
