#include "ExtensionTable.h"
#include "WorkingCopyContexts.h"

#if HSVN_LINE_MINOR >= 7

namespace HSVNAdapter {
namespace {

constexpr const char* nestedDatabasesKey = "HSVNAdapter::NestedDatabases";
constexpr const char* sharingKey = "HSVNAdapter::SharedDatabases";

/// The databases of the calls within one operation's callbacks.
struct NestedDatabases
{
    apr_pool_t* pool;
    svn_wc_context_t* context;
};

/// What a client context had before.
struct Lent
{
    svn_client_ctx_t* ctx;
    svn_wc_context_t* context;
};

apr_status_t giveBack(void* baton)
{
    const auto& lent = *static_cast<Lent*>(baton);
    lent.ctx->wc_ctx = lent.context;
    return APR_SUCCESS;
}

svn_error_t* renew(NestedDatabases* databases, const svn_client_ctx_t* ctx, apr_pool_t* poolAround)
{
    const NestedDatabases former = *databases;
    apr_pool_t* const pool = svn_pool_create(poolAround);
    SVN_ERR(createWorkingCopyContext(&databases->context, ctx, pool, pool));
    databases->pool = pool;
    if (former.pool != nullptr) {
        svn_pool_destroy(former.pool); // with which they are closed
    }
    return SVN_NO_ERROR;
}

bool sharesDatabases(const svn_client_ctx_t* ctx, apr_pool_t* poolAround)
{
    void* mark = nullptr;
    apr_pool_userdata_get(&mark, sharingKey, poolAround);
    return mark != nullptr && keepsOthersOut(ctx);
}

svn_error_t* useOwnDatabases(svn_client_ctx_t* ctx, apr_pool_t* poolAround, svn_boolean_t anew, apr_pool_t* pool)
{
    if (sharesDatabases(ctx, poolAround)) {
        return SVN_NO_ERROR;
    }
    void* kept = nullptr;
    apr_pool_userdata_get(&kept, nestedDatabasesKey, poolAround);
    if (kept == nullptr) {
        kept = apr_pcalloc(poolAround, sizeof(NestedDatabases));
        apr_pool_userdata_setn(kept, nestedDatabasesKey, nullptr, poolAround);
    }
    auto& databases = *static_cast<NestedDatabases*>(kept);
    if (anew || databases.context == nullptr) {
        SVN_ERR(renew(&databases, ctx, poolAround));
    }
    auto* const lent = static_cast<Lent*>(apr_palloc(pool, sizeof(Lent)));
    *lent = {ctx, ctx->wc_ctx};
    apr_pool_cleanup_register(pool, lent, giveBack, apr_pool_cleanup_null);
    ctx->wc_ctx = databases.context;
    return SVN_NO_ERROR;
}

} // namespace

void shareDatabasesWithin(apr_pool_t* operationPool)
{
    apr_pool_userdata_setn(operationPool, sharingKey, nullptr, operationPool);
}

void fillNestedDatabases(HSVNDatabaseFunctions& table) { table.use_own_databases = useOwnDatabases; }

} // namespace HSVNAdapter

#endif
