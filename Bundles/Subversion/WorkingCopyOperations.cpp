#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "Obstructions.h"
#include "OwnDatabases.h"
#include "WorkingCopyFormat.h"

#include <cstring>

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR < 7
bool isBelowWorkingCopy(const char* path, apr_pool_t* pool)
{
    while (std::strcmp(path, "/") != 0) {
        path = svn_path_dirname(path, pool);
        if (statedFormat(path, pool) > 0) {
            return true;
        }
    }
    return false;
}
#endif

svn_error_t* add3(const char* path, svn_boolean_t recursive, svn_boolean_t force, svn_boolean_t noIgnore,
                  svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    svn_error_t* error = svn_client_add3(path, recursive, force, noIgnore, ctx, pool);
#if HSVN_LINE_MINOR < 7
    // In a working copy, but in a folder that has no administrative area: newer lines look for the folder's entry.
    if (error != nullptr && error->apr_err == SVN_ERR_WC_NOT_DIRECTORY && isBelowWorkingCopy(path, pool)) {
        return withCode(SVN_ERR_ENTRY_NOT_FOUND, error);
    }
#endif
    return smoothed(error);
}

svn_error_t* cleanup(const char* folder, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(folder, pool);
    svn_error_t* const error =
        cleanUpAnyFolder(folder, true, ctx, pool, [&] { return svn_client_cleanup(folder, ctx, pool); });
    return formatChecked(folder, smoothed(error), pool);
}

svn_error_t* resolved(const char* path, svn_boolean_t recursive, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    return smoothed(svn_client_resolved(path, recursive, ctx, pool));
}

svn_error_t* revert(const apr_array_header_t* paths, svn_boolean_t recursive, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(canonicalizeAll(&paths, TargetKind::Path, pool));
#if HSVN_LINE_MINOR >= 9
    SVN_ERR(refuseObstructedDirectories(paths, recursive ? svn_depth_infinity : svn_depth_empty, ctx, pool));
#endif
    return smoothed(svn_client_revert(paths, recursive, ctx, pool));
}

} // namespace

void fillWorkingCopyOperations(HSVNBundleEntryPoints& table)
{
    table.client_add3 = add3;
    table.client_cleanup = cleanup;
    table.client_resolved = resolved;
    table.client_revert = revert;
}

} // namespace HSVNAdapter
