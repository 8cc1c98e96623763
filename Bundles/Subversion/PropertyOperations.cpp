#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"

namespace HSVNAdapter {
namespace {

svn_error_t* propget2(apr_hash_t** properties, const char* name, const char* target,
                      const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision, svn_boolean_t recurse,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    return smoothed(svn_client_propget2(properties, name, target, pegRevision, revision, recurse, ctx, pool));
}

svn_error_t* proplist2(apr_array_header_t** properties, const char* target, const svn_opt_revision_t* pegRevision,
                       const svn_opt_revision_t* revision, svn_boolean_t recurse, svn_client_ctx_t* ctx,
                       apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    return smoothed(svn_client_proplist2(properties, target, pegRevision, revision, recurse, ctx, pool));
}

svn_error_t* propset2(const char* name, const svn_string_t* value, const char* target, svn_boolean_t recurse,
                      svn_boolean_t skipChecks, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(target, pool);
    return smoothed(svn_client_propset2(name, value, target, recurse, skipChecks, ctx, pool));
}

} // namespace

void fillPropertyOperations(HSVNBundleEntryPoints& table)
{
    table.client_propget2 = propget2;
    table.client_proplist2 = proplist2;
    table.client_propset2 = propset2;
}

} // namespace HSVNAdapter
