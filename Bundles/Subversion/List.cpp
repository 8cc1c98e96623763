#include "CanonicalPaths.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "ListingLocks.h"

namespace HSVNAdapter {
namespace {

/// What a server tells of an item is checked, and its lock is found, before anyone hears of it.
svn_error_t* checkListed(ListingLocks& locks, const char* path, const svn_lock_t** lock, const char* folder)
{
    SVN_ERR(checkListedPath(path, folder));
    return locks.find(lock, folder, path);
}

struct ListReceiver
{
    svn_client_list_func_t function;
    void* baton;
    ListingLocks* locks;
};

/// Newer lines report the size of a folder as -1, older ones as 0.
svn_error_t* receiveItem(void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                         const char* absolutePath, apr_pool_t* pool)
{
    const auto* receiver = static_cast<const ListReceiver*>(baton);
    SVN_ERR(checkListed(*receiver->locks, path, &lock, absolutePath));
    if (dirent == nullptr || dirent->size >= 0) {
        return receiver->function(receiver->baton, path, dirent, lock, absolutePath, pool);
    }
    svn_dirent_t sized = *dirent;
    sized.size = 0;
    return receiver->function(receiver->baton, path, &sized, lock, absolutePath, pool);
}

svn_error_t* list(const char* target, const svn_opt_revision_t* pegRevision, const svn_opt_revision_t* revision,
                  svn_boolean_t recurse, apr_uint32_t fields, svn_boolean_t fetchLocks, svn_client_list_func_t receiver,
                  void* baton, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    HSVN_CANONICAL_TARGET(target, pool);
    ListingLocks locks{recurse ? svn_depth_infinity : svn_depth_immediates, ctx, pool};
    ListReceiver sizing{receiver, baton, &locks};
    svn_error_t* const error = locks.takeOver(&fetchLocks, target);
    if (error != nullptr) {
        return smoothed(error);
    }
    return smoothed(
        svn_client_list(target, pegRevision, revision, recurse, fields, fetchLocks, receiveItem, &sizing, ctx, pool));
}

#if HSVN_LINE_MINOR >= 5
struct Listing
{
    HSVNReadingFunctions::ListReceiver receiver;
    void* baton;
    ListingLocks* locks;
};

svn_error_t* receiveListed(void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                           const char* absolutePath, const char* externalParentURL, const char* externalTarget,
                           apr_pool_t* pool)
{
    const auto& listing = *static_cast<Listing*>(baton);
    SVN_ERR(checkListed(*listing.locks, path, &lock, absolutePath));
    return listing.receiver(listing.baton, path, dirent, lock, absolutePath, externalParentURL, externalTarget, pool);
}

#if HSVN_LINE_MINOR < 8
/// These lines know no externals, and tell the size of a folder as 0.
svn_error_t* receivePlain(void* baton, const char* path, const svn_dirent_t* dirent, const svn_lock_t* lock,
                          const char* absolutePath, apr_pool_t* pool)
{
    svn_dirent_t sized = *dirent;
    if (sized.kind != svn_node_file) {
        sized.size = SVN_INVALID_FILESIZE;
    }
    return receiveListed(baton, path, &sized, lock, absolutePath, nullptr, nullptr, pool);
}
#endif

svn_error_t* listWithExternals(const char* target, const svn_opt_revision_t* pegRevision,
                               const svn_opt_revision_t* revision, [[maybe_unused]] const apr_array_header_t* patterns,
                               svn_depth_t depth, apr_uint32_t fields, svn_boolean_t fetchLocks,
                               [[maybe_unused]] svn_boolean_t includeExternals,
                               HSVNReadingFunctions::ListReceiver receiver, void* baton, svn_client_ctx_t* ctx,
                               apr_pool_t* pool)
{
    SVN_ERR(checkTarget(&target, pool));
    ListingLocks locks{depth, ctx, pool};
    if (!includeExternals) { // whose locks are those of other repositories
        SVN_ERR(locks.takeOver(&fetchLocks, target));
    }
    Listing listing{receiver, baton, &locks};
#if HSVN_LINE_MINOR >= 10
    return svn_client_list4(target, pegRevision, revision, patterns, depth, fields, fetchLocks, includeExternals,
                            receiveListed, &listing, ctx, pool);
#elif HSVN_LINE_MINOR >= 8
    return svn_client_list3(target, pegRevision, revision, depth, fields, fetchLocks, includeExternals, receiveListed,
                            &listing, ctx, pool);
#else
    return svn_client_list2(target, pegRevision, revision, depth, fields, fetchLocks, receivePlain, &listing, ctx,
                            pool);
#endif
}
#endif

} // namespace

void fillList(HSVNBundleEntryPoints& table) { table.client_list = list; }

void fillList([[maybe_unused]] HSVNReadingFunctions& table)
{
#if HSVN_LINE_MINOR >= 5
    table.client_list = listWithExternals;
#endif
}

} // namespace HSVNAdapter
