#include "CanonicalPaths.h"
#include "CommitInformation.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "Export.h"
#include "ExtensionTargets.h"
#include "LineEnds.h"
#include "Notifications.h"
#include "VersionedFolders.h"

#include <algorithm>
#include <array>
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

/// Whether Subversion has a record of the item, whatever is on disk. What cannot be told counts as none.
bool isVersioned(const char* path, apr_pool_t* pool)
{
    const char* url = nullptr;
    svn_error_clear(svn_client_url_from_path(&url, path, pool));
    return url != nullptr;
}

/// That nothing is at a path, in words of its own: the line's name another reason or the folder around it.
svn_error_t* nothingAt(const char* path)
{
    return svn_error_createf(SVN_ERR_NODE_UNKNOWN_KIND, nullptr, "'%s' does not exist", path);
}

/// A failed deletion as it is told: an unversioned item is in no working copy. Not so a versioned folder, which is
/// refused for the sake of an unversioned item inside, nor what is not there at all.
svn_error_t* deletionError(svn_error_t* error, const char* path, svn_node_kind_t kind, apr_pool_t* pool)
{
    // Lines before 1.7 say of what is missing that it is no file's name.
    const bool isUnversioned = hasCode(error, SVN_ERR_UNVERSIONED_RESOURCE) ||
                               hasCode(error, SVN_ERR_WC_NOT_DIRECTORY) || error->apr_err == SVN_ERR_BAD_FILENAME;
    if (!isUnversioned || isVersioned(path, pool)) {
        // Its outermost error says that force is wanted, the next one for the sake of which item.
        const bool isOfItemInside = error->child != nullptr && error->child->apr_err == error->apr_err;
        return smoothed(isOfItemInside && error->child->message != nullptr
                            ? svn_error_create(error->apr_err, error, error->child->message)
                            : error);
    }
    if (kind == svn_node_none) {
        svn_error_clear(error);
        return nothingAt(path);
    }
    return smoothed(error, {{SVN_ERR_UNVERSIONED_RESOURCE, SVN_ERR_WC_NOT_DIRECTORY}});
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
    return deletionError(error, path, kind, pool);
}

svn_error_t* delete2(svn_commit_info_t** info, const apr_array_header_t* paths, svn_boolean_t force,
                     svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    const LogMessageTap messages{ctx};
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

/// Whether an error says that an item is in no working copy or in no revision, or cannot be what it is to be there: the
/// file manager then puts it where it is to go.
bool startsFallBack(const svn_error_t* error)
{
    constexpr std::array codes{SVN_ERR_ENTRY_NOT_FOUND,  SVN_ERR_FS_NOT_FOUND,  SVN_ERR_FS_NO_SUCH_ENTRY,
                               SVN_ERR_WC_NOT_DIRECTORY, SVN_ERR_WC_NOT_LOCKED, SVN_ERR_WC_INVALID_SCHEDULE};
    return std::ranges::any_of(codes, [&](apr_status_t code) { return hasCode(error, code); });
}

/// The error of a move or a copy. A local source that is not on disk cannot be put anywhere by the file manager either.
svn_error_t* transferError(svn_error_t* error, const char* source, apr_pool_t* pool)
{
    error = smoothed(error, {sourceOfNoKind});
    if (error != nullptr && startsFallBack(error) && !isURL(source) && kindOnDisk(source, pool) == svn_node_none) {
        svn_error_clear(error);
        return nothingAt(source);
    }
    return error;
}

/// Whether a revision of a local item is read in the repository, and so is not what is on disk.
bool isOfRepository(const svn_opt_revision_t& revision)
{
    return revision.kind != svn_opt_revision_unspecified && revision.kind != svn_opt_revision_base &&
           revision.kind != svn_opt_revision_working;
}

svn_error_t* ignoreInfo(void* /*baton*/, const char* /*path*/, const svn_info_t* /*info*/, apr_pool_t* /*pool*/)
{
    return SVN_NO_ERROR;
}

/// An error without a code that would have today's item copied in place of the one that was asked for.
svn_error_t* withoutFallBack(svn_error_t* error)
{
    if (!startsFallBack(error)) {
        return error;
    }
    svn_error_t* const alone = withCode(SVN_ERR_CLIENT_UNRELATED_RESOURCES, error);
    svn_error_clear(alone->child);
    alone->child = nullptr;
    return alone;
}

/// Goes on where a copy of a local item as it was in the repository failed. An item that lay elsewhere then is copied
/// from there; one that was nowhere is an error.
svn_error_t* copyOldItem(svn_error_t* failure, svn_commit_info_t** info, const char* source,
                         const svn_opt_revision_t& revision, const char* destination, svn_client_ctx_t* ctx,
                         apr_pool_t* pool)
{
    const svn_opt_revision_t working{svn_opt_revision_working, {0}};
    if (svn_error_t* absent = svn_client_info(source, &working, &revision, ignoreInfo, nullptr, FALSE, ctx, pool)) {
        svn_error_clear(failure);
        return withoutFallBack(absent);
    }
    if (!hasCode(failure, SVN_ERR_FS_NOT_FOUND)) {
        return transferError(failure, source, pool);
    }
#if HSVN_LINE_MINOR >= 5
    svn_error_clear(failure);
    svn_client_copy_source_t record{source, &revision, &working};
    auto* const sources = apr_array_make(pool, 1, sizeof(svn_client_copy_source_t*));
    APR_ARRAY_PUSH(sources, svn_client_copy_source_t*) = &record;
    return transferError(svn_client_copy4(info, sources, destination, FALSE, FALSE, nullptr, ctx, pool), source, pool);
#else
    static_cast<void>(info);
    static_cast<void>(destination);
    return withoutFallBack(failure);
#endif
}

svn_error_t* copy3(svn_commit_info_t** info, const char* source, const svn_opt_revision_t* sourceRevision,
                   const char* destination, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    const LogMessageTap messages{ctx};
    HSVN_CANONICAL_TARGET(source, pool);
    HSVN_CANONICAL_TARGET(destination, pool);
    const auto revision = revisionForTarget(source, sourceRevision);
    svn_error_t* error = smoothed(svn_client_copy3(info, source, &revision, destination, ctx, pool), {sourceOfNoKind});
    if (error != nullptr && !isURL(source) && isOfRepository(revision) && startsFallBack(error)) {
        return copyOldItem(error, info, source, revision, destination, ctx, pool);
    }
    return transferError(error, source, pool);
}

svn_error_t* move4(svn_commit_info_t** info, const char* source, const char* destination, svn_boolean_t force,
                   svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const CommitInformation information{info};
    const LogMessageTap messages{ctx};
    HSVN_CANONICAL_TARGET(source, pool);
    HSVN_CANONICAL_TARGET(destination, pool);
    return transferError(svn_client_move4(info, source, destination, force, ctx, pool), source, pool);
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

[[maybe_unused]] svn_depth_t depthOf(svn_depth_t depth) { return depth; }
svn_depth_t depthOf(svn_boolean_t recurse) { return recurse ? svn_depth_infinity : svn_depth_files; }

/// One of Subversion's exports, which differ in whether they take a depth or a flag for all depths.
template <auto Export, class Depth>
svn_error_t* exportTree(svn_revnum_t* result, const char* from, const char* to, const svn_opt_revision_t* pegRevision,
                        const svn_opt_revision_t* revision, svn_boolean_t overwrite, svn_boolean_t ignoreExternals,
                        Depth depth, const char* nativeEOL, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(from, pool);
    HSVN_CANONICAL_PATH(to, pool);
    *result = SVN_INVALID_REVNUM;
    if (isRepositoryExport(from, *pegRevision, *revision)) {
        const ExportChoices choices{depthOf(depth), overwrite, ignoreExternals, FALSE, lineEnds(nativeEOL)};
        SVN_ERR(smoothed(exportRepositoryTree(result, from, to, pegRevision, revision, choices, ctx, pool)));
    } else {
#if HSVN_LINE_MINOR < 7
        // 1.4 and 1.6 end the process there.
        SVN_ERR(refuseObstructedFolders(from, ctx, pool));
#endif
        SVN_ERR(smoothed(Export(result, from, to, pegRevision, revision, overwrite, ignoreExternals, depth,
                                lineEnds(nativeEOL), ctx, pool)));
    }
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
#endif

} // namespace

void fillChangeOperations(HSVNBundleEntryPoints& table)
{
    table.client_delete2 = delete2;
    table.client_copy3 = copy3;
    table.client_move4 = move4;
    table.client_export3 = exportTree<svn_client_export3, svn_boolean_t>;
    table.client_merge2 = merge2;
#if HSVN_LINE_MINOR >= 5
    table.client_export4 = exportTree<svn_client_export4, svn_depth_t>;
    table.client_merge3 = merge3;
#endif
}

} // namespace HSVNAdapter
