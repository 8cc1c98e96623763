#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "Notifications.h"

namespace HSVNAdapter {
namespace {

/// Subversion refuses a call for nothing.
svn_error_t* lockAny(const apr_array_header_t* targets, const char* comment, svn_boolean_t stealLock,
                     svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    return targets->nelts == 0 ? SVN_NO_ERROR : svn_client_lock(targets, comment, stealLock, ctx, pool);
}

svn_error_t* unlockAny(const apr_array_header_t* targets, svn_boolean_t breakLock, svn_client_ctx_t* ctx,
                       apr_pool_t* pool)
{
    return targets->nelts == 0 ? SVN_NO_ERROR : svn_client_unlock(targets, breakLock, ctx, pool);
}

svn_error_t* lock(const apr_array_header_t* targets, const char* comment, svn_boolean_t stealLock,
                  svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(canonicalizeAll(&targets, TargetKind::PathOrURL, pool));
    const LockTap tap{ctx, targets};
    return tap.result(lockAny(targets, comment, stealLock, ctx, pool));
}

svn_error_t* unlock(const apr_array_header_t* targets, svn_boolean_t breakLock, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(canonicalizeAll(&targets, TargetKind::PathOrURL, pool));
    const LockTap tap{ctx, targets};
    return tap.result(unlockAny(targets, breakLock, ctx, pool));
}

/// The second table's: what cannot be locked is told by notifications alone.
svn_error_t* lockAndTell(const apr_array_header_t* targets, const char* comment, svn_boolean_t stealLock,
                         svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTargets(&targets, pool));
    return lockAny(targets, comment, stealLock, ctx, pool);
}

svn_error_t* unlockAndTell(const apr_array_header_t* targets, svn_boolean_t breakLock, svn_client_ctx_t* ctx,
                           apr_pool_t* pool)
{
    SVN_ERR(checkTargets(&targets, pool));
    return unlockAny(targets, breakLock, ctx, pool);
}

} // namespace

void fillLock(HSVNBundleEntryPoints& table)
{
    table.client_lock = lock;
    table.client_unlock = unlock;
}

void fillLock(HSVNCommitFunctions& table)
{
    table.client_lock = lockAndTell;
    table.client_unlock = unlockAndTell;
}

} // namespace HSVNAdapter
