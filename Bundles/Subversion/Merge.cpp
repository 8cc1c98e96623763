#include "CanonicalPaths.h"
#include "ConflictSettler.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"

namespace HSVNAdapter {
namespace {

svn_error_t* merge2(const char* source1, const svn_opt_revision_t* revision1, const char* source2,
                    const svn_opt_revision_t* revision2, const char* target, svn_boolean_t recurse,
                    svn_boolean_t ignoreAncestry, svn_boolean_t force, svn_boolean_t dryRun,
                    const apr_array_header_t* mergeOptions, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(source1, pool);
    HSVN_CANONICAL_TARGET(source2, pool);
    HSVN_CANONICAL_PATH(target, pool);
    return smoothed(svn_client_merge2(source1, revision1, source2, revision2, target, recurse, ignoreAncestry, force,
                                      dryRun, mergeOptions, ctx, pool));
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* merge3(const char* source1, const svn_opt_revision_t* revision1, const char* source2,
                    const svn_opt_revision_t* revision2, const char* target, svn_depth_t depth,
                    svn_boolean_t ignoreAncestry, svn_boolean_t force, svn_boolean_t recordOnly, svn_boolean_t dryRun,
                    const apr_array_header_t* mergeOptions, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(source1, pool);
    HSVN_CANONICAL_TARGET(source2, pool);
    HSVN_CANONICAL_PATH(target, pool);
    SVN_ERR(checkWalkDepth(depth));
    return smoothed(svn_client_merge3(source1, revision1, source2, revision2, target, depth, ignoreAncestry, force,
                                      recordOnly, dryRun, mergeOptions, ctx, pool));
}

svn_error_t* mergeReintegrate(const char* source, const svn_opt_revision_t* pegRevision, const char* target,
                              const HSVNMergeFunctions::Merging* choices, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&source, pool));
    SVN_ERR(checkLocalTarget(&target, pool));
#if HSVN_LINE_MINOR >= 7
    const ConflictSettler settler{ctx, choices->choosing};
#endif
    return svn_client_merge_reintegrate(source, pegRevision, target, choices->dryRun, choices->arguments, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 8
svn_error_t* merge(const char* source1, const svn_opt_revision_t* revision1, const char* source2,
                   const svn_opt_revision_t* revision2, const char* target, const HSVNMergeFunctions::Merging* choices,
                   svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&source1, pool));
    SVN_ERR(checkTarget(&source2, pool));
    SVN_ERR(checkLocalTarget(&target, pool));
    SVN_ERR(checkWalkDepth(choices->depth));
    const ConflictSettler settler{ctx, choices->choosing};
    return svn_client_merge5(source1, revision1, source2, revision2, target, choices->depth, choices->ignoreMergeInfo,
                             choices->diffIgnoreAncestry, choices->forceDelete, choices->recordOnly, choices->dryRun,
                             choices->allowMixedRevisions, choices->arguments, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 5 && HSVN_LINE_MINOR < 8
/// What lines before 1.8 take for a merge of all that is not merged yet: their clients ask for everything.
apr_array_header_t* wholeHistory(const svn_opt_revision_t* pegRevision, apr_pool_t* pool)
{
    auto* const ranges = apr_array_make(pool, 1, sizeof(HSVNReadingFunctions::RevisionRange));
    auto& range = APR_ARRAY_PUSH(ranges, HSVNReadingFunctions::RevisionRange);
    range.start.kind = svn_opt_revision_number;
    range.start.value.number = 1;
    range.end = *pegRevision;
    return ranges;
}
#endif

svn_error_t* mergePeg(const char* source, const apr_array_header_t* ranges, const svn_opt_revision_t* pegRevision,
                      const char* target, const HSVNMergeFunctions::Merging* choices, svn_client_ctx_t* ctx,
                      apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&source, pool));
    SVN_ERR(checkLocalTarget(&target, pool));
#if HSVN_LINE_MINOR >= 5
    SVN_ERR(checkWalkDepth(choices->depth));
#endif
#if HSVN_LINE_MINOR >= 8
    const ConflictSettler settler{ctx, choices->choosing};
    return svn_client_merge_peg5(source, ranges != nullptr ? rangePointers(ranges, pool) : nullptr, pegRevision, target,
                                 choices->depth, choices->ignoreMergeInfo, choices->diffIgnoreAncestry,
                                 choices->forceDelete, choices->recordOnly, choices->dryRun,
                                 choices->allowMixedRevisions, choices->arguments, ctx, pool);
#elif HSVN_LINE_MINOR >= 5
    ranges = rangePointers(ranges != nullptr ? ranges : wholeHistory(pegRevision, pool), pool);
#if HSVN_LINE_MINOR >= 7
    const ConflictSettler settler{ctx, choices->choosing};
    return svn_client_merge_peg4(source, ranges, pegRevision, target, choices->depth, choices->diffIgnoreAncestry,
                                 choices->forceDelete, choices->recordOnly, choices->dryRun,
                                 choices->allowMixedRevisions, choices->arguments, ctx, pool);
#else
    return svn_client_merge_peg3(source, ranges, pegRevision, target, choices->depth, choices->diffIgnoreAncestry,
                                 choices->forceDelete, choices->recordOnly, choices->dryRun, choices->arguments, ctx,
                                 pool);
#endif
#else
    for (int index = 0; index < ranges->nelts; ++index) {
        const auto& range = APR_ARRAY_IDX(ranges, index, HSVNReadingFunctions::RevisionRange);
        SVN_ERR(svn_client_merge_peg2(source, &range.start, &range.end, pegRevision, target, recurses(choices->depth),
                                      choices->diffIgnoreAncestry, choices->forceDelete, choices->dryRun,
                                      choices->arguments, ctx, pool));
    }
    return SVN_NO_ERROR;
#endif
}

} // namespace

void fillMerge(HSVNBundleEntryPoints& table)
{
    table.client_merge2 = merge2;
#if HSVN_LINE_MINOR >= 5
    table.client_merge3 = merge3;
#endif
}

void fillMerge(HSVNMergeFunctions& table)
{
    table.client_merge_peg = mergePeg;
#if HSVN_LINE_MINOR >= 5
    table.client_merge_reintegrate = mergeReintegrate;
#endif
#if HSVN_LINE_MINOR >= 8
    table.client_merge = merge;
#endif
}

} // namespace HSVNAdapter
