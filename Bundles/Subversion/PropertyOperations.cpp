#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExternalsSearch.h"
#include "LineEnds.h"
#include "VersionedFolders.h"

#include <cstring>

#include <svn_props.h>

namespace HSVNAdapter {
namespace {

/// Whether the question is for the working copy's own properties of a whole tree, as scans ask it.
bool asksForWholeTree(const char* target, const svn_opt_revision_t& pegRevision, const svn_opt_revision_t& revision,
                      svn_boolean_t recurse)
{
    return recurse && !isURL(target) && pegRevision.kind == svn_opt_revision_unspecified &&
           revision.kind == svn_opt_revision_working;
}

svn_error_t* propget2(apr_hash_t** properties, const char* name, const char* target,
                      const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision, svn_boolean_t recurse,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    const bool ofWholeTree = asksForWholeTree(target, *pegRevision, *revision, recurse);
#ifdef HSVN_FAST_STATUS
    if (ofWholeTree && std::strcmp(name, SVN_PROP_EXTERNALS) == 0 && haveNoExternals(target, pool)) {
        *properties = apr_hash_make(pool);
        return SVN_NO_ERROR;
    }
#endif
    svn_error_t* error = svn_client_propget2(properties, name, target, pegRevision, revision, recurse, ctx, pool);
    if (ofWholeTree && hasCode(error, SVN_ERR_WC_NOT_LOCKED)) {
        // A line before 1.7 fails for the whole tree where a folder is missing or obstructed.
        svn_error_clear(error);
        *properties = apr_hash_make(pool);
        error = readPropertyBelow(*properties, name, target, ctx, pool);
    }
    return smoothed(error);
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
    SVN_ERR(endLines(&value, name, pool));
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
