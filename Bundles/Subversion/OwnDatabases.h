#pragma once

#include "FormerAreas.h"
#include "HalfMoves.h"
#include "SubversionLine.h"
#include "WorkingCopyContexts.h"

#include <svn_client.h>
#include <utility>

namespace HSVNAdapter {

/// Cleans a folder up with `call`, with databases that are opened for the call alone: a clean-up takes a folder that is
/// known already as a part of its working copy for no root, and lets go of the one that it is given, which a call
/// around this one may be reading. What half-made moves have renamed is put back, and what an interrupted upgrade has
/// begun to remove is removed.
///
/// @param breaksLocks  whether the call ends what other calls had locked
template <typename Call>
svn_error_t* cleanUpAnyFolder([[maybe_unused]] const char* folder, [[maybe_unused]] bool breaksLocks,
                              [[maybe_unused]] svn_client_ctx_t* ctx, [[maybe_unused]] apr_pool_t* pool, Call call)
{
#if HSVN_LINE_MINOR >= 7
    svn_wc_context_t* own = nullptr;
    SVN_ERR(createWorkingCopyContext(&own, ctx, pool, pool));
    svn_wc_context_t* const kept = std::exchange(ctx->wc_ctx, own);
    const std::string upgraded = rootOfUnfinishedUpgrade(folder, pool);
    svn_error_t* error = call();
#if HSVN_LINE_MINOR >= 9
    // One that cannot read a folder to the end, for the times of its files, leaves the working copy locked.
    if (breaksLocks && error != nullptr && error->apr_err < APR_OS_START_USERERR) {
        svn_error_clear(svn_client_cleanup2(folder, TRUE, FALSE, FALSE, FALSE, FALSE, ctx, pool));
    }
#endif
    if (breaksLocks && error == nullptr) {
        error = takeBackHalfMoves(folder, ctx, pool);
        error = svn_error_compose_create(error, removeFormerAreas(upgraded, pool));
    }
    ctx->wc_ctx = kept;
    return svn_error_compose_create(error, svn_wc_context_destroy(own));
#else
    return call();
#endif
}

} // namespace HSVNAdapter
