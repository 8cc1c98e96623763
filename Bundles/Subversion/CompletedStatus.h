#pragma once

#include "Internal/BundleExtensions.h"
#include "SubversionLine.h"

#if HSVN_LINE_MINOR >= 9

#include "FormerNodes.h"

namespace HSVNAdapter {

/// Hands the items of a status walk on with what the walk itself does not tell of them.
class CompletedStatus
{
  public:
    /// @param pool  lives as long as the object
    CompletedStatus(HSVNStatusFunctions::StatusReceiver receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool);

    /// A `svn_client_status_func_t`; the baton is the object.
    static svn_error_t* receive(void* baton, const char* path, const svn_client_status_t* status, apr_pool_t* pool);

  private:
    svn_error_t* complete(svn_client_status_t& status, apr_pool_t* pool);
    svn_wc_schedule_t scheduleOf(const svn_client_status_t& status);

    HSVNStatusFunctions::StatusReceiver _receiver;
    void* _baton;
    svn_client_ctx_t* _ctx;
#ifdef HSVN_FAST_STATUS
    FormerNodes _formerNodes;
#endif
};

} // namespace HSVNAdapter

#endif
