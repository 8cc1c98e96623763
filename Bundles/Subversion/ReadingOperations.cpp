#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"

namespace HSVNAdapter {
namespace {

svn_error_t* cat2(svn_stream_t* out, const char* target, const svn_opt_revision_t* pegRevision,
                  const svn_opt_revision_t* revision, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    return smoothed(svn_client_cat2(out, target, pegRevision, revision, ctx, pool));
}

svn_error_t* diffPeg3(const apr_array_header_t* diffOptions, const char* target, const svn_opt_revision_t* pegRevision,
                      const svn_opt_revision_t* startRevision, const svn_opt_revision_t* endRevision,
                      svn_boolean_t recurse, svn_boolean_t ignoreAncestry, svn_boolean_t noDiffDeleted,
                      svn_boolean_t ignoreContentType, const char* headerEncoding, apr_file_t* outFile,
                      apr_file_t* errorFile, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    return smoothed(svn_client_diff_peg3(diffOptions, target, pegRevision, startRevision, endRevision, recurse,
                                         ignoreAncestry, noDiffDeleted, ignoreContentType, headerEncoding, outFile,
                                         errorFile, ctx, pool));
}

svn_error_t* info(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                  svn_info_receiver_t receiver, void* baton, svn_boolean_t recurse, svn_client_ctx_t* ctx,
                  apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    const auto peg = revisionForTarget(target, pegRevision);
    svn_error_t* error = svn_client_info(target, &peg, revision, receiver, baton, recurse, ctx, pool);
    if (isURL(target)) {
        return smoothed(error);
    }
    // Every line has a code of its own for an item that is not versioned.
    return smoothed(error, {
        {SVN_ERR_ENTRY_NOT_FOUND, SVN_ERR_UNVERSIONED_RESOURCE},
#if HSVN_LINE_MINOR >= 7
        {
            SVN_ERR_WC_PATH_NOT_FOUND, SVN_ERR_UNVERSIONED_RESOURCE
        }
#endif
    });
}

} // namespace

void fillReadingOperations(HSVNBundleEntryPoints& table)
{
    table.client_cat2 = cat2;
    table.client_diff_peg3 = diffPeg3;
    table.client_info = info;
}

} // namespace HSVNAdapter
