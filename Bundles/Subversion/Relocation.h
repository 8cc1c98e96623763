#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

#if HSVN_LINE_MINOR >= 7
/// Tells a working copy, and those of its externals from the same repository, that the repository has moved.
///
/// Stands for svn_client_relocate2, which crashes for an external whose folder is gone.
svn_error_t* relocateTree(const char* path, const char* from, const char* to, svn_boolean_t ignoreExternals,
                          svn_client_ctx_t* ctx, apr_pool_t* pool);
#endif

} // namespace HSVNAdapter
