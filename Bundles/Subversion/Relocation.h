#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// Tells a working copy, and those of its externals from the same repository, that the repository has moved.
///
/// Stands for svn_client_relocate2, which crashes for an external whose folder is gone; before 1.7 for
/// svn_client_relocate, which leaves externals alone.
svn_error_t* relocateTree(const char* path, const char* from, const char* to, svn_boolean_t ignoreExternals,
                          svn_client_ctx_t* ctx, apr_pool_t* pool);

} // namespace HSVNAdapter
