#include "CanonicalPaths.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"

#include <apr_getopt.h>

namespace HSVNAdapter {
namespace {

/// What stands on a command line with nothing on it as the line's own client reads it; lines before 1.6 know no URLs
/// that are relative to a repository's root.
svn_error_t* readTargets(apr_array_header_t** targets, apr_getopt_t* commandLine, const apr_array_header_t* arguments,
                         [[maybe_unused]] svn_client_ctx_t* ctx, apr_pool_t* pool)
{
#if HSVN_LINE_MINOR >= 7
    return svn_client_args_to_target_array2(targets, commandLine, arguments, ctx, FALSE, pool);
#elif HSVN_LINE_MINOR >= 6
    return svn_client_args_to_target_array(targets, commandLine, arguments, ctx, pool);
#else
    // These take the array without const, and do not write to it.
    auto* const known = const_cast<apr_array_header_t*>(arguments);
#if HSVN_LINE_MINOR >= 5
    return svn_opt_args_to_target_array3(targets, commandLine, known, pool);
#else
    return svn_opt_args_to_target_array2(targets, commandLine, known, pool);
#endif
#endif
}

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
    return readTargets(targets, commandLine, arguments, ctx, pool);
}

svn_error_t* parsePath(svn_opt_revision_t* pegRevision, const char** path, const char* text, apr_pool_t* pool)
{
    return svn_opt_parse_path(pegRevision, path, text, pool);
}

int parseRevision(svn_opt_revision_t* start, svn_opt_revision_t* end, const char* text, apr_pool_t* pool)
{
    return svn_opt_parse_revision(start, end, text, pool);
}

svn_error_t* urlFromPath(const char** url, const char* target, apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    return svn_client_url_from_path(url, target, pool);
}

} // namespace

void fillTargets(HSVNTargetFunctions& table)
{
    table.opt_parse_path = parsePath;
    table.opt_parse_revision = parseRevision;
    table.client_url_from_path = urlFromPath;
    table.client_args_to_target_array = targetArray;
}

} // namespace HSVNAdapter
