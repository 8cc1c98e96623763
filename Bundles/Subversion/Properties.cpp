#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "ExternalsSearch.h"
#include "LineEnds.h"
#include "VersionedFolders.h"

#include <cstring>

#if HSVN_LINE_MINOR >= 7
#include <svn_dirent_uri.h>
#endif
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

#if HSVN_LINE_MINOR >= 7
bool isRepositoryRevision(const svn_opt_revision_t& revision)
{
    return revision.kind == svn_opt_revision_number || revision.kind == svn_opt_revision_date ||
           revision.kind == svn_opt_revision_head;
}

/// Refuses the question for a repository's revision of an item that no repository has, where Subversion crashes.
svn_error_t* requireCommitted(const char* target, const svn_opt_revision_t& pegRevision,
                              const svn_opt_revision_t& revision, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    if (isURL(target) || !(isRepositoryRevision(pegRevision) || isRepositoryRevision(revision))) {
        return SVN_NO_ERROR;
    }
    SVN_ERR(svn_dirent_get_absolute(&target, target, pool));
    svn_wc_status3_t* status = nullptr;
    svn_error_t* const error = svn_wc_status3(&status, ctx->wc_ctx, target, pool, pool);
    const bool isNew = error == nullptr && !status->copied &&
                       (status->node_status == svn_wc_status_added || status->node_status == svn_wc_status_replaced);
    svn_error_clear(error);
    return isNew
               ? svn_error_createf(SVN_ERR_CLIENT_BAD_REVISION, nullptr, "Path '%s' has no committed revision", target)
               : SVN_NO_ERROR;
}
#else
svn_error_t* requireCommitted(const char*, const svn_opt_revision_t&, const svn_opt_revision_t&, svn_client_ctx_t*,
                              apr_pool_t*)
{
    return SVN_NO_ERROR;
}
#endif

#ifdef HSVN_FAST_STATUS
/// The externals of a whole tree from those items alone that may have any; null for the long way.
apr_hash_t* externalsBelow(const char* target, const svn_opt_revision_t& pegRevision,
                           const svn_opt_revision_t& revision, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const auto items = itemsThatMayHaveExternals(target, pool);
    apr_hash_t* all = items ? apr_hash_make(pool) : nullptr;
    for (std::size_t index = 0; all != nullptr && index < items->size(); ++index) {
        apr_hash_t* found = nullptr;
        const char* const item = apr_pstrdup(pool, (*items)[index].c_str());
        if (svn_error_t* const error =
                svn_client_propget2(&found, SVN_PROP_EXTERNALS, item, &pegRevision, &revision, FALSE, ctx, pool))
        {
            svn_error_clear(error);
            return nullptr;
        }
        all = apr_hash_overlay(pool, found, all);
    }
    return all;
}
#endif

svn_error_t* propget2(apr_hash_t** properties, const char* name, const char* target,
                      const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision, svn_boolean_t recurse,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    const bool ofWholeTree = asksForWholeTree(target, *pegRevision, *revision, recurse);
#ifdef HSVN_FAST_STATUS
    if (ofWholeTree && std::strcmp(name, SVN_PROP_EXTERNALS) == 0) {
        if (auto* const externals = externalsBelow(target, *pegRevision, *revision, ctx, pool)) {
            *properties = externals;
            return SVN_NO_ERROR;
        }
    }
#endif
    SVN_ERR(requireCommitted(target, *pegRevision, *revision, ctx, pool));
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

#if HSVN_LINE_MINOR >= 8
svn_error_t* propget(apr_hash_t** properties, apr_array_header_t** inherited, const char* name, const char* target,
                     const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision, svn_depth_t depth,
                     const apr_array_header_t* changelists, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkAbsoluteTarget(&target, pool));
    SVN_ERR(checkWalkDepth(depth));
    SVN_ERR(requireCommitted(target, *pegRevision, *revision, ctx, pool));
    return svn_client_propget5(properties, inherited, name, target, pegRevision, revision, nullptr, depth, changelists,
                               ctx, pool, pool);
}

#endif

#if HSVN_LINE_MINOR >= 5
#if HSVN_LINE_MINOR < 8
/// Who takes the properties that an older function tells.
struct PropertyListing
{
    HSVNPropertyFunctions::PropertiesReceiver receiver;
    void* baton;
};

svn_error_t* receiveProperties(void* baton, const char* path, apr_hash_t* properties, apr_pool_t* pool)
{
    const auto& listing = *static_cast<const PropertyListing*>(baton);
    return listing.receiver(listing.baton, path, properties, nullptr, pool);
}
#endif

svn_error_t* proplist(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                      svn_depth_t depth, const apr_array_header_t* changelists,
                      [[maybe_unused]] svn_boolean_t inherited, HSVNPropertyFunctions::PropertiesReceiver receiver,
                      void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkShownTarget(&target, pool));
    SVN_ERR(checkWalkDepth(depth));
#if HSVN_LINE_MINOR >= 8
    return svn_client_proplist4(target, pegRevision, revision, depth, changelists, inherited, receiver, baton, ctx,
                                pool);
#else
    PropertyListing listing{receiver, baton};
    return svn_client_proplist3(target, pegRevision, revision, depth, changelists, receiveProperties, &listing, ctx,
                                pool);
#endif
}
#else
svn_error_t* proplist(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                      svn_depth_t depth, const apr_array_header_t* /*changelists*/, svn_boolean_t /*inherited*/,
                      HSVNPropertyFunctions::PropertiesReceiver receiver, void* baton, svn_client_ctx_t* ctx,
                      apr_pool_t* pool)
{
    SVN_ERR(checkShownTarget(&target, pool));
    apr_array_header_t* items = nullptr;
    SVN_ERR(svn_client_proplist2(&items, target, pegRevision, revision, recurses(depth), ctx, pool));
    for (int index = 0; index < items->nelts; ++index) {
        const auto* const item = APR_ARRAY_IDX(items, index, const svn_client_proplist_item_t*);
        SVN_ERR(receiver(baton, item->node_name->data, item->prop_hash, nullptr, pool));
    }
    return SVN_NO_ERROR;
}
#endif

svn_error_t* revpropGet(const char* name, svn_string_t** value, const char* url, const svn_opt_revision_t* revision,
                        svn_revnum_t* number, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(checkRevision(revision));
    return svn_client_revprop_get(name, value, url, revision, number, ctx, pool);
}

svn_error_t* revpropList(apr_hash_t** properties, const char* url, const svn_opt_revision_t* revision,
                         svn_revnum_t* number, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(checkRevision(revision));
    return svn_client_revprop_list(properties, url, revision, number, ctx, pool);
}

svn_error_t* revpropSet(const char* name, const svn_string_t* value, const char* url,
                        const svn_opt_revision_t* revision, svn_revnum_t* number, svn_boolean_t force,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_URL(url, pool);
    SVN_ERR(checkRevision(revision));
    SVN_ERR(endLines(&value, name, pool));
#if HSVN_LINE_MINOR >= 6
    return svn_client_revprop_set2(name, value, nullptr, url, revision, number, force, ctx, pool);
#else
    return svn_client_revprop_set(name, value, url, revision, number, force, ctx, pool);
#endif
}

#if HSVN_LINE_MINOR >= 5
svn_error_t* propset(const char* name, const svn_string_t* value, const apr_array_header_t* targets, svn_depth_t depth,
                     svn_boolean_t skipChecks, const apr_array_header_t* changelists, svn_client_ctx_t* ctx,
                     apr_pool_t* pool)
{
    SVN_ERR(checkLocalTargets(&targets, pool));
    SVN_ERR(settleWalkDepth(&depth));
    SVN_ERR(endLines(&value, name, pool));
#if HSVN_LINE_MINOR >= 7
    return svn_client_propset_local(name, value, targets, depth, skipChecks, changelists, ctx, pool);
#else
    for (int index = 0; index < targets->nelts; ++index) {
        svn_commit_info_t* info = nullptr;
        SVN_ERR(svn_client_propset3(&info, name, value, APR_ARRAY_IDX(targets, index, const char*), depth, skipChecks,
                                    SVN_INVALID_REVNUM, changelists, nullptr, ctx, pool));
    }
    return SVN_NO_ERROR;
#endif
}
#endif

} // namespace

void fillProperties(HSVNBundleEntryPoints& table)
{
    table.client_propget2 = propget2;
    table.client_proplist2 = proplist2;
    table.client_propset2 = propset2;
}

void fillProperties(HSVNPropertyFunctions& table)
{
    table.client_revprop_get = revpropGet;
    table.client_revprop_list = revpropList;
    table.client_revprop_set = revpropSet;
    table.client_proplist = proplist;
#if HSVN_LINE_MINOR >= 5
    table.client_propset = propset;
#endif
#if HSVN_LINE_MINOR >= 8
    table.client_propget = propget;
#endif
}

} // namespace HSVNAdapter
