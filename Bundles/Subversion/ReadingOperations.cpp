#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTargets.h"
#include "ListingLocks.h"

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

struct ListReceiver
{
    svn_client_list_func_t function;
    void* baton;
    ListingLocks* locks;
};

/// Newer lines report the size of a folder as -1, older ones as 0.
svn_error_t* receiveListed(void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                           const char* absolutePath, apr_pool_t* pool)
{
    const auto* receiver = static_cast<const ListReceiver*>(baton);
    SVN_ERR(checkListedPath(path, absolutePath));
    SVN_ERR(receiver->locks->find(&lock, absolutePath, path));
    if (dirent == nullptr || dirent->size >= 0) {
        return receiver->function(receiver->baton, path, dirent, lock, absolutePath, pool);
    }
    svn_dirent_t sized = *dirent;
    sized.size = 0;
    return receiver->function(receiver->baton, path, &sized, lock, absolutePath, pool);
}

svn_error_t* list(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                  svn_boolean_t recurse, apr_uint32_t fields, svn_boolean_t fetchLocks, svn_client_list_func_t receiver,
                  void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    ListingLocks locks{recurse ? svn_depth_infinity : svn_depth_immediates, ctx, pool};
    ListReceiver sizing{receiver, baton, &locks};
    svn_error_t* const error = locks.takeOver(&fetchLocks, target);
    if (error != nullptr) {
        return smoothed(error);
    }
    return smoothed(
        svn_client_list(target, pegRevision, revision, recurse, fields, fetchLocks, receiveListed, &sizing, ctx, pool));
}

/// A path, or a URL that paths relative to it may follow.
svn_error_t* canonicalizeLogTargets(const apr_array_header_t** targets, apr_pool_t* pool)
{
    if ((*targets)->nelts == 0) {
        return svn_error_create(SVN_ERR_ILLEGAL_TARGET, nullptr, "A log needs a target");
    }
    auto* canonical = apr_array_copy(pool, *targets);
    HSVN_CANONICAL_TARGET(APR_ARRAY_IDX(canonical, 0, const char*), pool);
    const bool isRelative = isURL(APR_ARRAY_IDX(canonical, 0, const char*));
    for (int index = 1; index < canonical->nelts; ++index) {
        const char*& target = APR_ARRAY_IDX(canonical, index, const char*);
        target = isRelative ? apr_pstrcat(pool, "/", target, nullptr) : target;
        HSVN_CANONICAL_PATH(target, pool);
        target += isRelative ? 1 : 0;
    }
    *targets = canonical;
    return SVN_NO_ERROR;
}

svn_error_t* log3(const apr_array_header_t* targets, const svn_opt_revision_t* pegRevision,
                  const svn_opt_revision_t* start, const svn_opt_revision_t* end, int limit,
                  svn_boolean_t discoverChangedPaths, svn_boolean_t strictNodeHistory,
                  svn_log_message_receiver_t receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(canonicalizeLogTargets(&targets, pool));
    return smoothed(svn_client_log3(targets, pegRevision, start, end, limit, discoverChangedPaths, strictNodeHistory,
                                    receiver, baton, ctx, pool));
}

} // namespace

void fillReadingOperations(HSVNBundleEntryPoints& table)
{
    table.client_cat2 = cat2;
    table.client_diff_peg3 = diffPeg3;
    table.client_info = info;
    table.client_list = list;
    table.client_log3 = log3;
}

} // namespace HSVNAdapter
