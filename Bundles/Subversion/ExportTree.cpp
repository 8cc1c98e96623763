#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "Export.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "VersionedFolders.h"

#include <cstring>

namespace HSVNAdapter {
namespace {

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

/// An export between canonical places.
///
/// @param exportItem  calls Subversion for what is a working copy's own
template <class Function>
svn_error_t* exportAny(svn_revnum_t* result, const char* from, const char* to, const svn_opt_revision_t* pegRevision,
                       const svn_opt_revision_t* revision, const ExportChoices& choices, Function exportItem,
                       svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    *result = SVN_INVALID_REVNUM;
    if (isRepositoryExport(from, *pegRevision, *revision)) {
        SVN_ERR(exportRepositoryTree(result, from, to, pegRevision, revision, choices, ctx, pool));
    } else {
#if HSVN_LINE_MINOR < 7
        // 1.4 and 1.6 end the process there.
        SVN_ERR(refuseObstructedFolders(from, ctx, pool));
#endif
        SVN_ERR(exportItem());
    }
    completeRevision(result, from, pegRevision, revision, ctx, pool);
    return SVN_NO_ERROR;
}

/// One of Subversion's exports, which differ in whether they take a depth or a flag for all depths.
template <auto Export, class Depth>
svn_error_t* exportPlace(svn_revnum_t* result, const char* from, const char* to, const svn_opt_revision_t* pegRevision,
                         const svn_opt_revision_t* revision, svn_boolean_t overwrite, svn_boolean_t ignoreExternals,
                         Depth depth, const char* nativeEOL, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(from, pool);
    HSVN_CANONICAL_PATH(to, pool);
    const char* const endOfLine = lineEnds(nativeEOL);
    const auto exportItem = [&] {
        return Export(result, from, to, pegRevision, revision, overwrite, ignoreExternals, depth, endOfLine, ctx, pool);
    };
    return smoothed(exportAny(result, from, to, pegRevision, revision,
                              {depthOf(depth), overwrite, ignoreExternals, FALSE, endOfLine}, exportItem, ctx, pool));
}

#if HSVN_LINE_MINOR >= 7
svn_error_t* exportTree(svn_revnum_t* result, const char* from, const char* to, const svn_opt_revision_t* pegRevision,
                        const svn_opt_revision_t* revision, const HSVNUpdateFunctions::Exporting* choices,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&from, pool));
    SVN_ERR(checkLocalTarget(&to, pool));
    const auto exportItem = [&] {
        return svn_client_export5(result, from, to, pegRevision, revision, choices->overwrite, choices->ignoreExternals,
                                  choices->ignoreKeywords, choices->depth, choices->nativeEOL, ctx, pool);
    };
    return exportAny(
        result, from, to, pegRevision, revision,
        {choices->depth, choices->overwrite, choices->ignoreExternals, choices->ignoreKeywords, choices->nativeEOL},
        exportItem, ctx, pool);
}
#endif

} // namespace

void fillExport(HSVNBundleEntryPoints& table)
{
    table.client_export3 = exportPlace<svn_client_export3, svn_boolean_t>;
#if HSVN_LINE_MINOR >= 5
    table.client_export4 = exportPlace<svn_client_export4, svn_depth_t>;
#endif
}

void fillExport([[maybe_unused]] HSVNUpdateFunctions& table)
{
#if HSVN_LINE_MINOR >= 7
    table.client_export = exportTree;
#endif
}

} // namespace HSVNAdapter
