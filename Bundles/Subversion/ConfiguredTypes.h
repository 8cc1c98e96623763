#pragma once

#include "Internal/ScopedValue.h"
#include "SubversionLine.h"

#include <svn_client.h>

namespace HSVNAdapter {

#if HSVN_LINE_MINOR >= 5
/// Reads the file of MIME types that the context's configuration names ("mime-types-file"), if any.
///
/// @param types  what the file holds; as it was where none is named
/// @return an error that names the file that cannot be read
svn_error_t* readConfiguredTypes(apr_hash_t** types, const svn_client_ctx_t* ctx, apr_pool_t* pool);
#endif

/// What items of the disk are added by: Subversion gives them the types of the file that the configuration names, but
/// leaves it to programs to read it. Types that the context has go before these; lines before 1.5 know no such file.
template <class Operation>
svn_error_t* withConfiguredTypes([[maybe_unused]] svn_client_ctx_t* ctx, [[maybe_unused]] apr_pool_t* pool,
                                 const Operation& operation)
{
#if HSVN_LINE_MINOR >= 5
    apr_hash_t* types = ctx->mimetypes_map;
    if (types == nullptr) {
        SVN_ERR(readConfiguredTypes(&types, ctx, pool));
    }
    const HSVNScopedValue typesOfAll{ctx->mimetypes_map, types};
    return operation();
#else
    return operation();
#endif
}

} // namespace HSVNAdapter
