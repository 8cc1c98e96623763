#include "CanonicalPaths.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "VersionDetails.h"

#include <apr_getopt.h>

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

#endif

svn_error_t* parsePath(svn_opt_revision_t* pegRevision, const char** path, const char* text, apr_pool_t* pool)
{
    return svn_opt_parse_path(pegRevision, path, text, pool);
}

int parseRevision(svn_opt_revision_t* start, svn_opt_revision_t* end, const char* text, apr_pool_t* pool)
{
    return svn_opt_parse_revision(start, end, text, pool);
}

#if HSVN_LINE_MINOR >= 9
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
#endif

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
    table.client_url_from_path = urlFromPath;
    table.error_meaning = meaningOf;
#if HSVN_LINE_MINOR >= 6
    fillTerminalPrompts(table);
#endif
#if HSVN_LINE_MINOR >= 7
    table.client_args_to_target_array = targetArray;
    fillNestedDatabases(table);
    fillOpenWorkingCopies(table);
#endif
#if HSVN_LINE_MINOR >= 8
    table.version_details = versionDetails;
#endif
#if HSVN_LINE_MINOR >= 9
    table.client_info = info;
#endif
    fillAuthenticationExtensions(table);
    fillWorkingCopyExtensions(table);
    fillLockExtensions(table);
    fillPropertyExtensions(table);
    fillLayout(table);
    fillMergeInformation(table);
    fillPatch(table);
    fillPropertyCommits(table);
    fillStoredCredentials(table);
    fillCheckOut(table);
    fillCommit(table);
    fillCopyAndMove(table);
    fillExport(table);
    fillImport(table);
    fillMakeDirectories(table);
    fillMerge(table);
    fillRemove(table);
    fillSwitchTo(table);
    fillUpdate(table);
    fillConflictExtensions(table);
    fillList(table);
    fillLog(table);
    fillStatus(table);
    fillStatusOnThreads(table);
    fillBlame(table);
    fillDiff(table);
    fillContents(table);
    fillTextComparison(table);
    return table;
}

} // namespace
} // namespace HSVNAdapter

extern "C" __attribute__((visibility("default"))) const HSVNBundleExtensions* HSVNBundleExtensionsTable()
{
    static const HSVNBundleExtensions table = HSVNAdapter::makeExtensions();
    return &table;
}
