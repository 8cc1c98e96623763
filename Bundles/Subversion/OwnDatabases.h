#pragma once

#include "SubversionLine.h"

#include <svn_client.h>
#include <utility>

namespace HSVNAdapter {

/// Cleans a folder up with `call`, with databases that are opened for the call alone: a clean-up takes a folder that is
/// known already as a part of its working copy for no root, and lets go of the one that it is given, which a call
/// around this one may be reading.
template <typename Call>
svn_error_t* cleanUpAnyFolder([[maybe_unused]] svn_client_ctx_t* ctx, [[maybe_unused]] apr_pool_t* pool, Call call)
{
#if HSVN_LINE_MINOR >= 7
    svn_wc_context_t* own = nullptr;
    SVN_ERR(svn_wc_context_create(&own, nullptr, pool, pool));
    svn_wc_context_t* const kept = std::exchange(ctx->wc_ctx, own);
    svn_error_t* const error = call();
    ctx->wc_ctx = kept;
    return svn_error_compose_create(error, svn_wc_context_destroy(own));
#else
    return call();
#endif
}

} // namespace HSVNAdapter
