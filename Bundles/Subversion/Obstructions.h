#pragma once

#include "SubversionLine.h"

#if HSVN_LINE_MINOR >= 9

namespace HSVNAdapter {

/// Asks of each item at and below a path in whose place something of another kind is, and of some others; what it
/// answers ends the search. Other errors are those of the function that goes there next, and are not told.
svn_error_t* findObstructions(const char* path, svn_depth_t depth, svn_boolean_t ignoreExternals,
                              svn_client_status_func_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool);

/// Refuses to restore what lies below a directory whose place something else has. Subversion removes a file there, but
/// writes through a link to a directory, and fails at anything else amid work that no clean-up can end.
svn_error_t* refuseObstructedDirectories(const apr_array_header_t* targets, svn_depth_t depth, svn_client_ctx_t* ctx,
                                         apr_pool_t* pool);

/// Refuses to remove files whose place a directory has, where Subversion fails in the same way; targets that are URLs
/// are passed over.
svn_error_t* refuseObstructedFiles(const apr_array_header_t* targets, svn_client_ctx_t* ctx, apr_pool_t* pool);

} // namespace HSVNAdapter

#endif
