#include "Export.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "StillbornAreas.h"

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 8
/// Settles conflicts as it is told, while it lives.
class ConflictSettler
{
  public:
    ConflictSettler(svn_client_ctx_t* ctx, const HSVNBundleExtensions::Merging& wishes)
        : _ctx{ctx}, _function{ctx->conflict_func2}, _baton{ctx->conflict_baton2}, _wishes{wishes}
    {
        if (wishes.choose != nullptr) {
            ctx->conflict_func2 = choose;
            ctx->conflict_baton2 = this;
        }
    }
    ~ConflictSettler()
    {
        _ctx->conflict_func2 = _function;
        _ctx->conflict_baton2 = _baton;
    }
    ConflictSettler(const ConflictSettler&) = delete;
    ConflictSettler& operator=(const ConflictSettler&) = delete;

  private:
    static svn_error_t* choose(svn_wc_conflict_result_t** result, const svn_wc_conflict_description2_t* conflict,
                               void* baton, apr_pool_t* resultPool, apr_pool_t* /*scratchPool*/)
    {
        const auto& wishes = static_cast<ConflictSettler*>(baton)->_wishes;
        int choice = svn_wc_conflict_choose_postpone;
        SVN_ERR(wishes.choose(wishes.chooser, &choice, conflict->local_abspath, conflict->kind));
        *result = svn_wc_create_conflict_result(static_cast<svn_wc_conflict_choice_t>(choice), nullptr, resultPool);
        return SVN_NO_ERROR;
    }

    svn_client_ctx_t* _ctx;
    svn_wc_conflict_resolver_func2_t _function;
    void* _baton;
    const HSVNBundleExtensions::Merging& _wishes;
};
#endif

#if HSVN_LINE_MINOR >= 5
svn_error_t* checkout(svn_revnum_t* result, const char* url, const char* path, const svn_opt_revision_t* pegRevision,
                      const svn_opt_revision_t* revision, const HSVNBundleExtensions::Updating* wishes,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(checkLocalTarget(&path, pool));
    SVN_ERR(checkWalkDepth(wishes->depth));
    removeStillbornArea(path, pool);
    return svn_client_checkout3(result, url, path, pegRevision, revision, wishes->depth, wishes->ignoreExternals,
                                wishes->allowObstructions, ctx, pool);
}

svn_error_t* mergeReintegrate(const char* source, const svn_opt_revision_t* pegRevision, const char* target,
                              const HSVNBundleExtensions::Merging* wishes, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&source, pool));
    SVN_ERR(checkLocalTarget(&target, pool));
#if HSVN_LINE_MINOR >= 8
    const ConflictSettler settler{ctx, *wishes};
#endif
    return svn_client_merge_reintegrate(source, pegRevision, target, wishes->dryRun, wishes->arguments, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 7
svn_error_t* update(apr_array_header_t** revisions, const apr_array_header_t* targets,
                    const svn_opt_revision_t* revision, const HSVNBundleExtensions::Updating* wishes,
                    svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTargets(&targets, pool));
    return svn_client_update4(revisions, targets, revision, wishes->depth, wishes->depthIsSticky,
                              wishes->ignoreExternals, wishes->allowObstructions, wishes->addsAsModification,
                              wishes->makeParents, ctx, pool);
}

svn_error_t* switchTo(svn_revnum_t* result, const char* path, const char* url, const svn_opt_revision_t* pegRevision,
                      const svn_opt_revision_t* revision, const HSVNBundleExtensions::Updating* wishes,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(checkLocalTarget(&path, pool));
    return svn_client_switch3(result, path, url, pegRevision, revision, wishes->depth, wishes->depthIsSticky,
                              wishes->ignoreExternals, wishes->allowObstructions, wishes->ignoreAncestry, ctx, pool);
}

svn_error_t* exportTo(svn_revnum_t* result, const char* from, const char* to, const svn_opt_revision_t* pegRevision,
                      const svn_opt_revision_t* revision, const HSVNBundleExtensions::Exporting* wishes,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&from, pool));
    SVN_ERR(checkLocalTarget(&to, pool));
    if (isRepositoryExport(from, *pegRevision, *revision)) {
        const ExportChoices choices{wishes->depth, wishes->overwrite, wishes->ignoreExternals, wishes->ignoreKeywords,
                                    wishes->nativeEOL};
        return exportRepositoryTree(result, from, to, pegRevision, revision, choices, ctx, pool);
    }
    return svn_client_export5(result, from, to, pegRevision, revision, wishes->overwrite, wishes->ignoreExternals,
                              wishes->ignoreKeywords, wishes->depth, wishes->nativeEOL, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 8
svn_error_t* merge(const char* source1, const svn_opt_revision_t* revision1, const char* source2,
                   const svn_opt_revision_t* revision2, const char* target, const HSVNBundleExtensions::Merging* wishes,
                   svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&source1, pool));
    SVN_ERR(checkTarget(&source2, pool));
    SVN_ERR(checkLocalTarget(&target, pool));
    SVN_ERR(checkWalkDepth(wishes->depth));
    const ConflictSettler settler{ctx, *wishes};
    return svn_client_merge5(source1, revision1, source2, revision2, target, wishes->depth, wishes->ignoreMergeInfo,
                             wishes->diffIgnoreAncestry, wishes->forceDelete, wishes->recordOnly, wishes->dryRun,
                             wishes->allowMixedRevisions, wishes->arguments, ctx, pool);
}

svn_error_t* mergePeg(const char* source, const apr_array_header_t* ranges, const svn_opt_revision_t* pegRevision,
                      const char* target, const HSVNBundleExtensions::Merging* wishes, svn_client_ctx_t* ctx,
                      apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&source, pool));
    SVN_ERR(checkLocalTarget(&target, pool));
    SVN_ERR(checkWalkDepth(wishes->depth));
    const ConflictSettler settler{ctx, *wishes};
    return svn_client_merge_peg5(source, ranges != nullptr ? rangePointers(ranges, pool) : nullptr, pegRevision, target,
                                 wishes->depth, wishes->ignoreMergeInfo, wishes->diffIgnoreAncestry,
                                 wishes->forceDelete, wishes->recordOnly, wishes->dryRun, wishes->allowMixedRevisions,
                                 wishes->arguments, ctx, pool);
}
#endif

} // namespace

void fillUpdateExtensions([[maybe_unused]] HSVNBundleExtensions& table)
{
#if HSVN_LINE_MINOR >= 5
    table.client_checkout = checkout;
    table.client_merge_reintegrate = mergeReintegrate;
#endif
#if HSVN_LINE_MINOR >= 7
    table.client_update = update;
    table.client_switch = switchTo;
    table.client_export = exportTo;
#endif
#if HSVN_LINE_MINOR >= 8
    table.client_merge = merge;
    table.client_merge_peg = mergePeg;
#endif
}

} // namespace HSVNAdapter
