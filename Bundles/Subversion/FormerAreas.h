#pragma once

#include "SubversionLine.h"

#include <string>
#include <svn_client.h>
#include <vector>

namespace HSVNAdapter {

/// Looks after the administrative areas that working copies had in each of their directories: an upgrade removes them,
/// but tells nobody when it cannot, and such a directory is then taken for a working copy of the former format.
///
/// Stands in the place of the client's notifications as long as it lives.
class FormerAreas
{
  public:
    FormerAreas(svn_client_ctx_t* ctx, apr_pool_t* pool);
    ~FormerAreas();
    FormerAreas(const FormerAreas&) = delete;
    FormerAreas& operator=(const FormerAreas&) = delete;

    /// Removes what the upgrade has left.
    ///
    /// @return an error that names what cannot be removed
    svn_error_t* remove() const;

  private:
    static void notify(void* baton, const svn_wc_notify_t* record, apr_pool_t* pool);

    svn_client_ctx_t* _ctx;
    apr_pool_t* _pool;
    svn_wc_notify_func2_t _notify;
    void* _baton;
    std::vector<const char*> _upgraded; ///< directories
};

/// The root of the working copy of an absolute path whose upgrade was interrupted while it removed those areas; empty
/// for others. What it has begun to remove, Subversion's own clean-up leaves.
std::string rootOfUnfinishedUpgrade(const char* path, apr_pool_t* pool);

/// Removes what is left of them, as `FormerAreas::remove` does; nothing without a root.
svn_error_t* removeFormerAreas(const std::string& root, apr_pool_t* pool);

} // namespace HSVNAdapter
