#include "ConfiguredTypes.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "FormerAreas.h"
#include "ItemsOnDisk.h"
#include "ObstructedParents.h"
#include "Obstructions.h"
#include "OwnDatabases.h"
#include "Relocation.h"
#include "UpgradedExternals.h"

#if HSVN_LINE_MINOR >= 7
#include <svn_dirent_uri.h>
#endif

namespace HSVNAdapter {
namespace {

#if HSVN_LINE_MINOR >= 5
svn_error_t* addToChangelist(const apr_array_header_t* paths, const char* changelist, svn_depth_t depth,
                             const apr_array_header_t* changelists, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTargets(&paths, pool));
    SVN_ERR(settleWalkDepth(&depth));
    return svn_client_add_to_changelist(paths, changelist, depth, changelists, ctx, pool);
}

svn_error_t* removeFromChangelists(const apr_array_header_t* paths, svn_depth_t depth,
                                   const apr_array_header_t* changelists, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTargets(&paths, pool));
    SVN_ERR(settleWalkDepth(&depth));
    return svn_client_remove_from_changelists(paths, depth, changelists, ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 7
svn_error_t* upgrade(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    const char* absolute = nullptr;
    SVN_ERR(svn_dirent_get_absolute(&absolute, path, pool));
    leaveLinkedExternals(absolute, pool);
    const FormerAreas areas{ctx, pool};
    SVN_ERR(svn_client_upgrade(path, ctx, pool));
    return areas.remove();
}
#endif

svn_error_t* relocate(const char* path, const char* from, const char* to, svn_boolean_t ignoreExternals,
                      svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    SVN_ERR(refuseZeroByte(from));
    SVN_ERR(refuseZeroByte(to));
    return relocateTree(path, from, to, ignoreExternals, ctx, pool);
}

#if HSVN_LINE_MINOR >= 8
svn_error_t* add(const char* path, svn_depth_t depth, svn_boolean_t force, svn_boolean_t noIgnore,
                 svn_boolean_t noAutoProperties, svn_boolean_t addParents, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    return withConfiguredTypes(ctx, pool, [&] {
        return svn_client_add5(path, depth, force, noIgnore, noAutoProperties, addParents, ctx, pool);
    });
}
#endif

#if HSVN_LINE_MINOR >= 9
svn_error_t* cleanup(const char* path, svn_boolean_t breakLocks, svn_boolean_t fixTimestamps,
                     svn_boolean_t clearWebCache, svn_boolean_t vacuumPristines, svn_boolean_t includeExternals,
                     svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    SVN_ERR(checkAbsoluteTarget(&path, pool));
    return cleanUpAnyFolder(path, breakLocks != 0, ctx, pool, [&] {
        return svn_client_cleanup2(path, breakLocks, fixTimestamps, clearWebCache, vacuumPristines, includeExternals,
                                   ctx, pool);
    });
}

/// Subversion takes what a symbolic link leads to for unversioned items of the versioned directory whose place it has.
svn_error_t* refuseLinkedDirectory(void* /*baton*/, const char* path, const svn_client_status_t* status,
                                   apr_pool_t* pool)
{
    const bool isObstructed = status->node_status == svn_wc_status_obstructed && status->kind == svn_node_dir;
    if (!isObstructed || !isSymbolicLink(status->local_abspath, pool)) {
        return SVN_NO_ERROR;
    }
    return svn_error_createf(SVN_ERR_NODE_UNEXPECTED_KIND, nullptr,
                             "'%s' is a symbolic link in the place of a versioned directory: delete the link first, "
                             "or what it leads to would be deleted",
                             path);
}

svn_error_t* vacuum(const char* path, svn_boolean_t removeUnversioned, svn_boolean_t removeIgnored,
                    svn_boolean_t fixTimestamps, svn_boolean_t vacuumPristines, svn_boolean_t includeExternals,
                    svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    SVN_ERR(checkAbsoluteTarget(&path, pool));
    if (removeUnversioned || removeIgnored) {
        SVN_ERR(refuseBelowDirectoryLink(svn_dirent_join(path, "item", pool), pool)); // nor in its own place
        SVN_ERR(
            findObstructions(path, svn_depth_infinity, !includeExternals, refuseLinkedDirectory, nullptr, ctx, pool));
    }
    return svn_client_vacuum(path, removeUnversioned, removeIgnored, fixTimestamps, vacuumPristines, includeExternals,
                             ctx, pool);
}
#endif

#if HSVN_LINE_MINOR >= 5
svn_error_t* revert(const apr_array_header_t* paths, svn_depth_t depth, const apr_array_header_t* changelists,
                    [[maybe_unused]] svn_boolean_t clearChangelists, [[maybe_unused]] svn_boolean_t metadataOnly,
                    [[maybe_unused]] svn_boolean_t keepAdded, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTargets(&paths, pool));
#if HSVN_LINE_MINOR >= 9
    if (!metadataOnly) {
        SVN_ERR(refuseObstructedDirectories(paths, depth, ctx, pool));
    }
#endif
#if HSVN_LINE_MINOR < 9
    return svn_client_revert2(paths, depth, changelists, ctx, pool);
#elif HSVN_LINE_MINOR < 11
    return svn_client_revert3(paths, depth, changelists, clearChangelists, metadataOnly, ctx, pool);
#else
    return svn_client_revert4(paths, depth, changelists, clearChangelists, metadataOnly, keepAdded, ctx, pool);
#endif
}
#endif

} // namespace

void fillWorkingCopyChanges(HSVNChangeFunctions& table)
{
    table.client_relocate = relocate;
#if HSVN_LINE_MINOR >= 5
    table.client_add_to_changelist = addToChangelist;
    table.client_remove_from_changelists = removeFromChangelists;
    table.client_revert = revert;
#endif
#if HSVN_LINE_MINOR >= 7
    table.client_upgrade = upgrade;
#endif
#if HSVN_LINE_MINOR >= 8
    table.client_add = add;
#endif
#if HSVN_LINE_MINOR >= 9
    table.client_cleanup = cleanup;
    table.client_vacuum = vacuum;
#endif
}

} // namespace HSVNAdapter
