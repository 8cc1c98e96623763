#include "CanonicalPaths.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "ListingLocks.h"
#include "VersionDetails.h"

#include <apr_getopt.h>
#include <svn_cmdline.h>

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 7
svn_error_t* targetArray(apr_array_header_t** targets, const apr_array_header_t* arguments, svn_client_ctx_t* ctx,
                         apr_pool_t* pool)
{
    // All arguments are handed over as known ones, which are UTF-8, and none is left on the command line.
    apr_getopt_t* commandLine = nullptr;
    const char* const none = nullptr;
    if (const apr_status_t status = apr_getopt_init(&commandLine, pool, 0, &none); status != APR_SUCCESS) {
        return svn_error_wrap_apr(status, "Can't read the arguments");
    }
    commandLine->ind = 0;
    return svn_client_args_to_target_array2(targets, commandLine, arguments, ctx, FALSE, pool);
}

svn_error_t* conflicted(svn_boolean_t* text, svn_boolean_t* properties, svn_boolean_t* tree, const char* path,
                        svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkAbsoluteTarget(&path, pool));
    return svn_wc_conflicted_p3(text, properties, tree, ctx->wc_ctx, path, pool);
}
#endif

svn_error_t* parsePath(svn_opt_revision_t* pegRevision, const char** path, const char* text, apr_pool_t* pool)
{
    return svn_opt_parse_path(pegRevision, path, text, pool);
}

int parseRevision(svn_opt_revision_t* start, svn_opt_revision_t* end, const char* text, apr_pool_t* pool)
{
    return svn_opt_parse_revision(start, end, text, pool);
}

#if HSVN_LINE_MINOR >= 6
svn_error_t* createAuthBaton(svn_auth_baton_t** baton, const HSVNBundleExtensions::Authentication* wishes,
                             svn_config_t* config, HSVNBundleExtensions::CancelFunction cancel, void* cancelBaton,
                             apr_pool_t* pool)
{
    const char* folder = wishes->configFolder;
    if (folder != nullptr) {
        SVN_ERR(checkLocalTarget(&folder, pool));
    }
#if HSVN_LINE_MINOR >= 9
    return svn_cmdline_create_auth_baton2(baton, wishes->nonInteractive, wishes->username, wishes->password, folder,
                                          wishes->noAuthCache, wishes->trustUnknownAuthority,
                                          wishes->trustHostnameMismatch, wishes->trustExpired, wishes->trustNotYetValid,
                                          wishes->trustOther, config, cancel, cancelBaton, pool);
#else
    return svn_cmdline_create_auth_baton(baton, wishes->nonInteractive, wishes->username, wishes->password, folder,
                                         wishes->noAuthCache, wishes->trustUnknownAuthority, config, cancel,
                                         cancelBaton, pool);
#endif
}

svn_error_t* log(const apr_array_header_t* targets, const svn_opt_revision_t* pegRevision,
                 const apr_array_header_t* ranges, int limit, svn_boolean_t changedPaths, svn_boolean_t stopOnCopy,
                 svn_boolean_t mergedRevisions, const apr_array_header_t* revisionProperties,
                 HSVNBundleExtensions::LogReceiver receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    auto* checked = apr_array_copy(pool, targets);
    if (checked->nelts == 0) {
        return svn_error_create(SVN_ERR_ILLEGAL_TARGET, nullptr, "A log needs a target");
    }
    SVN_ERR(checkTarget(&APR_ARRAY_IDX(checked, 0, const char*), pool));
    const bool isRelative = isURL(APR_ARRAY_IDX(checked, 0, const char*));
    for (int index = 1; index < checked->nelts; ++index) {
        const char*& target = APR_ARRAY_IDX(checked, index, const char*);
        SVN_ERR(isRelative ? checkRelativeTarget(&target, pool) : checkTarget(&target, pool));
    }
    return svn_client_log5(checked, pegRevision, rangePointers(ranges, pool), limit, changedPaths, stopOnCopy,
                           mergedRevisions, revisionProperties, receiver, baton, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 8
svn_error_t* propget(apr_hash_t** properties, apr_array_header_t** inherited, const char* name, const char* target,
                     const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision, svn_depth_t depth,
                     const apr_array_header_t* changelists, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkAbsoluteTarget(&target, pool));
    SVN_ERR(checkWalkDepth(depth));
    return svn_client_propget5(properties, inherited, name, target, pegRevision, revision, nullptr, depth, changelists,
                               ctx, pool, pool);
}

svn_error_t* proplist(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                      svn_depth_t depth, const apr_array_header_t* changelists, svn_boolean_t inherited,
                      HSVNBundleExtensions::PropertiesReceiver receiver, void* baton, svn_client_ctx_t* ctx,
                      apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    SVN_ERR(checkWalkDepth(depth));
    return svn_client_proplist4(target, pegRevision, revision, depth, changelists, inherited, receiver, baton, ctx,
                                pool);
}
#endif

#if HSVN_LINE_MINOR >= 9
svn_error_t* status(svn_revnum_t* result, svn_client_ctx_t* ctx, const char* path, const svn_opt_revision_t* revision,
                    svn_depth_t depth, svn_boolean_t getAll, svn_boolean_t checkOutOfDate, svn_boolean_t noIgnore,
                    svn_boolean_t ignoreExternals, const apr_array_header_t* changelists,
                    HSVNBundleExtensions::StatusReceiver receiver, void* baton, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    return svn_client_status6(result, ctx, path, revision, depth, getAll, checkOutOfDate, TRUE, noIgnore,
                              ignoreExternals, FALSE, changelists, receiver, baton, pool);
}

svn_error_t* info(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                  svn_depth_t depth, svn_boolean_t includeExternals, const apr_array_header_t* changelists,
                  HSVNBundleExtensions::InfoReceiver receiver, void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkAbsoluteTarget(&target, pool));
    SVN_ERR(checkWalkDepth(depth));
    const auto peg = revisionForTarget(target, pegRevision);
    return svn_client_info4(target, &peg, revision, depth, TRUE, TRUE, includeExternals, changelists, receiver, baton,
                            ctx, pool);
}

svn_error_t* cat(svn_stream_t* out, const char* target, const svn_opt_revision_t* pegRevision,
                 const svn_opt_revision_t* revision, svn_boolean_t expandKeywords, svn_client_ctx_t* ctx,
                 apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    return svn_client_cat3(nullptr, out, target, pegRevision, revision, expandKeywords, ctx, pool, pool);
}
#endif

#if HSVN_LINE_MINOR >= 10
struct Listing
{
    HSVNBundleExtensions::ListReceiver receiver;
    void* baton;
    ListingLocks* locks;
};

svn_error_t* receiveListed(void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                           const char* absolutePath, const char* externalParentURL, const char* externalTarget,
                           apr_pool_t* pool)
{
    const auto& listing = *static_cast<Listing*>(baton);
    SVN_ERR(checkListedPath(path, absolutePath));
    SVN_ERR(listing.locks->find(&lock, absolutePath, path));
    return listing.receiver(listing.baton, path, dirent, lock, absolutePath, externalParentURL, externalTarget, pool);
}

svn_error_t* list(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                  const apr_array_header_t* patterns, svn_depth_t depth, apr_uint32_t fields, svn_boolean_t fetchLocks,
                  svn_boolean_t includeExternals, HSVNBundleExtensions::ListReceiver receiver, void* baton,
                  svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    ListingLocks locks{depth, ctx, pool};
    if (!includeExternals) { // whose locks are those of other repositories
        SVN_ERR(locks.takeOver(&fetchLocks, target));
    }
    Listing listing{receiver, baton, &locks};
    return svn_client_list4(target, pegRevision, revision, patterns, depth, fields, fetchLocks, includeExternals,
                            receiveListed, &listing, ctx, pool);
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

svn_error_t* urlFromPath(const char** url, const char* target, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    return svn_client_url_from_path(url, target, pool);
}

HSVNBundleExtensions makeExtensions()
{
    HSVNBundleExtensions table{};
    table.size = sizeof table;
    table.version = 1;
    table.opt_parse_path = parsePath;
    table.opt_parse_revision = parseRevision;
    table.client_revprop_get = revpropGet;
    table.client_revprop_list = revpropList;
    table.client_url_from_path = urlFromPath;
    table.error_meaning = meaningOf;
#if HSVN_LINE_MINOR >= 6
    table.cmdline_create_auth_baton = createAuthBaton;
    table.client_log = log;
#endif
#if HSVN_LINE_MINOR >= 7
    table.client_args_to_target_array = targetArray;
    table.wc_conflicted = conflicted;
    fillOpenWorkingCopies(table);
#endif
#if HSVN_LINE_MINOR >= 8
    table.client_propget = propget;
    table.client_proplist = proplist;
    table.version_details = versionDetails;
#endif
#if HSVN_LINE_MINOR >= 9
    table.client_status = status;
    table.client_info = info;
    table.client_cat = cat;
#endif
#if HSVN_LINE_MINOR >= 10
    table.client_list = list;
#endif
    fillAuthenticationExtensions(table);
    fillWorkingCopyExtensions(table);
    fillUpdateExtensions(table);
    fillMergeInformation(table);
    fillPatch(table);
    fillPropertyCommits(table);
    fillRepositoryExtensions(table);
    fillStoredCredentials(table);
    fillConflictExtensions(table);
    fillComparisonExtensions(table);
    return table;
}

} // namespace
} // namespace HSVNAdapter

extern "C" __attribute__((visibility("default"))) const HSVNBundleExtensions* HSVNBundleExtensionsTable()
{
    static const HSVNBundleExtensions table = HSVNAdapter::makeExtensions();
    return &table;
}
