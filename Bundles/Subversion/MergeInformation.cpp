#include "ExtensionTable.h"
#include "ExtensionTargets.h"

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 8
svn_error_t* mergingSummary(HSVNMergeFunctions::MergingSummary* summary, const char* source,
                            const svn_opt_revision_t* sourceRevision, const char* target,
                            const svn_opt_revision_t* targetRevision, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&source, pool));
    SVN_ERR(checkTarget(&target, pool));
    return svn_client_get_merging_summary(&summary->reintegrates, &summary->ancestorURL, &summary->ancestorRevision,
                                          &summary->baseURL, &summary->baseRevision, &summary->sourceURL,
                                          &summary->sourceRevision, &summary->targetURL, &summary->targetRevision,
                                          &summary->repositoryRoot, source, sourceRevision, target, targetRevision, ctx,
                                          pool, pool);
}

svn_error_t* mergeinfoLog(svn_boolean_t merged, const char* target, const svn_opt_revision_t* targetRevision,
                          const char* source, const svn_opt_revision_t* sourceRevision, const svn_opt_revision_t* start,
                          const svn_opt_revision_t* end, svn_boolean_t changedPaths, svn_depth_t depth,
                          const apr_array_header_t* revisionProperties, HSVNReadingFunctions::LogReceiver receiver,
                          void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&source, pool));
    SVN_ERR(checkTarget(&target, pool));
    SVN_ERR(checkWalkDepth(depth));
    return svn_client_mergeinfo_log2(merged, target, targetRevision, source, sourceRevision, start, end, receiver,
                                     baton, changedPaths, depth, revisionProperties, ctx, pool);
}
#endif

} // namespace

void fillMergeInformation([[maybe_unused]] HSVNMergeFunctions& table)
{
#if HSVN_LINE_MINOR >= 8
    table.client_merging_summary = mergingSummary;
    table.client_mergeinfo_log = mergeinfoLog;
#endif
}

} // namespace HSVNAdapter
