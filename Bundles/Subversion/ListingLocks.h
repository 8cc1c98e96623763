#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// The locks of the items that a listing tells.
///
/// Lines that let the server make the listing join the locks to the paths that come back, and crash on one outside of
/// the folder that is listed. So the locks of what comes over a connection are asked for apart.
class ListingLocks
{
  public:
    /// @param depth  of the listing
    ListingLocks(svn_depth_t depth, svn_client_ctx_t* ctx, apr_pool_t* pool) : _depth{depth}, _ctx{ctx}, _pool{pool} {}

    /// Takes the question for locks over where that is needed.
    ///
    /// @param wanted  whether Subversion is asked for locks; false afterwards when it is not to be
    svn_error_t* takeOver(svn_boolean_t* wanted, const char* target);
    /// Replaces an item's lock by the one that was asked for apart, if so.
    ///
    /// @param folder  the folder that is listed, from the repository's root on
    /// @param path    the item's below it
    svn_error_t* find(const svn_lock_t** lock, const char* folder, const char* path);

  private:
    svn_error_t* ask(const char* folder);

    // Lines that list by themselves have no use for them.
    [[maybe_unused]] svn_depth_t _depth;
    [[maybe_unused]] svn_client_ctx_t* _ctx;
    [[maybe_unused]] apr_pool_t* _pool;
    [[maybe_unused]] const char* _url = nullptr; ///< of the target, when the locks are asked for apart
    [[maybe_unused]] apr_hash_t* _locks = nullptr;
};

} // namespace HSVNAdapter
