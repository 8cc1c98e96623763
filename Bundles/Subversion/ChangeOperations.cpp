#include "CanonicalPaths.h"
#include "CommitInformation.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTargets.h"
#include "Notifications.h"

#include <cstring>

namespace HSVNAdapter {
namespace {

/// What is on disk, symbolic links not followed; none when that cannot be told.
svn_node_kind_t kindOnDisk(const char* path, apr_pool_t* pool)
{
    svn_node_kind_t kind = svn_node_none;
    svn_boolean_t isSpecial = FALSE;
    svn_error_clear(svn_io_check_special_path(path, &kind, &isSpecial, pool));
    return kind;
}

/// A forced deletion of what is gone already succeeds, and the delegate hears of unversioned items too.
svn_error_t* deletePath(svn_commit_info_t** info, const char* path, svn_boolean_t force, svn_client_ctx_t* ctx,
                        apr_pool_t* pool)
{
    const svn_node_kind_t kind = kindOnDisk(path, pool);
    auto* targets = apr_array_make(pool, 1, sizeof(const char*));
    APR_ARRAY_PUSH(targets, const char*) = path;
    const DeletionTap tap{ctx, path};
    svn_error_t* error = svn_client_delete2(info, targets, force, ctx, pool);
    if (error == nullptr) {
        if (kind != svn_node_none && !tap.wasReported() && kindOnDisk(path, pool) == svn_node_none) {
            auto* notification = svn_wc_create_notify(path, svn_wc_notify_delete, pool);
            notification->kind = kind;
            tap.pass(notification, pool);
        }
        return SVN_NO_ERROR;
    }
    if (force && kind == svn_node_none && error->apr_err == SVN_ERR_BAD_FILENAME) {
        svn_error_clear(error);
        return SVN_NO_ERROR;
    }
    return smoothed(error, {{SVN_ERR_UNVERSIONED_RESOURCE, SVN_ERR_WC_NOT_DIRECTORY}});
}

svn_error_t* delete2(svn_commit_info_t** info, const apr_array_header_t* paths, svn_boolean_t force,
                     svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    SVN_ERR(canonicalizeAll(&paths, TargetKind::PathOrURL, pool));
    if (paths->nelts > 0 && isURL(APR_ARRAY_IDX(paths, 0, const char*))) {
        return smoothed(svn_client_delete2(info, paths, force, ctx, pool));
    }
    for (int index = 0; index < paths->nelts; ++index) {
        SVN_ERR(deletePath(info, APR_ARRAY_IDX(paths, index, const char*), force, ctx, pool));
    }
    return SVN_NO_ERROR;
}

/// Of a source that does not exist.
constexpr ErrorRule sourceOfNoKind{SVN_ERR_NODE_UNKNOWN_KIND, SVN_ERR_ENTRY_NOT_FOUND};

svn_error_t* copy3(svn_commit_info_t** info, const char* source, const svn_opt_revision_t* sourceRevision,
                   const char* destination, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    HSVN_CANONICAL_TARGET(source, pool);
    HSVN_CANONICAL_TARGET(destination, pool);
    const auto revision = revisionForTarget(source, sourceRevision);
    return smoothed(svn_client_copy3(info, source, &revision, destination, ctx, pool), {sourceOfNoKind});
}

svn_error_t* move4(svn_commit_info_t** info, const char* source, const char* destination, svn_boolean_t force,
                   svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    HSVN_CANONICAL_TARGET(source, pool);
    HSVN_CANONICAL_TARGET(destination, pool);
    return smoothed(svn_client_move4(info, source, destination, force, ctx, pool), {sourceOfNoKind});
}

/// Subversion names the native line ends by giving none.
const char* lineEnds(const char* nativeEOL)
{
    return nativeEOL != nullptr && std::strcmp(nativeEOL, "native") == 0 ? nullptr : nativeEOL;
}

svn_error_t* takeRevision(void* result, const char*, const svn_info_t* info, apr_pool_t*)
{
    *static_cast<svn_revnum_t*>(result) = info->rev;
    return SVN_NO_ERROR;
}

/// Of a single file from a repository Subversion does not tell the revision that it exported: it is looked up. One that
/// cannot be found stays invalid, for the export has succeeded.
void completeRevision(svn_revnum_t* result, const char* from, const svn_opt_revision_t* peg,
                      const svn_opt_revision_t* revision, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_opt_revision_t wanted = *(revision->kind == svn_opt_revision_unspecified ? peg : revision);
    if (wanted.kind == svn_opt_revision_unspecified && isURL(from)) {
        wanted.kind = svn_opt_revision_head;
    }
    const bool isOfRepository = wanted.kind == svn_opt_revision_head || wanted.kind == svn_opt_revision_number ||
                                wanted.kind == svn_opt_revision_date;
    if (!SVN_IS_VALID_REVNUM(*result) && isOfRepository) {
        svn_error_clear(svn_client_info(from, peg, &wanted, takeRevision, result, FALSE, ctx, pool));
    }
}

/// One of Subversion's exports, which differ in whether they take a depth or a flag for all depths.
template <auto Export, class Depth>
svn_error_t* exportTree(svn_revnum_t* result, const char* from, const char* to, const svn_opt_revision_t* pegRevision,
                        const svn_opt_revision_t* revision, svn_boolean_t overwrite, svn_boolean_t ignoreExternals,
                        Depth depth, const char* nativeEOL, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(from, pool);
    HSVN_CANONICAL_PATH(to, pool);
    *result = SVN_INVALID_REVNUM;
    SVN_ERR(smoothed(Export(result, from, to, pegRevision, revision, overwrite, ignoreExternals, depth,
                            lineEnds(nativeEOL), ctx, pool)));
    completeRevision(result, from, pegRevision, revision, ctx, pool);
    return SVN_NO_ERROR;
}

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

#if SVN_VER_MINOR >= 5
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
#endif

} // namespace

void fillChangeOperations(HSVNBundleEntryPoints& table)
{
    table.client_delete2 = delete2;
    table.client_copy3 = copy3;
    table.client_move4 = move4;
    table.client_export3 = exportTree<svn_client_export3, svn_boolean_t>;
    table.client_merge2 = merge2;
#if SVN_VER_MINOR >= 5
    table.client_export4 = exportTree<svn_client_export4, svn_depth_t>;
    table.client_merge3 = merge3;
#endif
}

} // namespace HSVNAdapter
