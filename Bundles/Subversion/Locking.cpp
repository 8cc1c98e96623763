#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "Notifications.h"

namespace HSVNAdapter {
namespace {

svn_error_t* lock(const apr_array_header_t* targets, const char* comment, svn_boolean_t stealLock,
                  svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(canonicalizeAll(&targets, TargetKind::PathOrURL, pool));
    if (targets->nelts == 0) {
        return SVN_NO_ERROR;
    }
    const LockTap tap{ctx, targets};
    return tap.result(svn_client_lock(targets, comment, stealLock, ctx, pool));
}

svn_error_t* unlock(const apr_array_header_t* targets, svn_boolean_t breakLock, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(canonicalizeAll(&targets, TargetKind::PathOrURL, pool));
    if (targets->nelts == 0) {
        return SVN_NO_ERROR;
    }
    const LockTap tap{ctx, targets};
    return tap.result(svn_client_unlock(targets, breakLock, ctx, pool));
}

} // namespace

void fillLocking(HSVNBundleEntryPoints& table)
{
    table.client_lock = lock;
    table.client_unlock = unlock;
}

} // namespace HSVNAdapter
