#pragma once

#include "Notifications.h"

#include <string>
#include <vector>

namespace HSVNAdapter {

/// Looks after the administrative areas that working copies had in each of their directories: an upgrade removes them,
/// but tells nobody when it cannot, and such a directory is then taken for a working copy of the former format.
class FormerAreas : public NotificationTap
{
  public:
    FormerAreas(svn_client_ctx_t* ctx, apr_pool_t* pool) : NotificationTap{ctx}, _pool{pool} {}

    /// Removes what the upgrade has left.
    ///
    /// @return an error that names what cannot be removed
    svn_error_t* remove() const;

  protected:
    const svn_wc_notify_t* heard(const svn_wc_notify_t* notification, apr_pool_t* pool) override;

  private:
    apr_pool_t* _pool;
    std::vector<const char*> _upgraded; ///< directories
};

/// The root of the working copy of an absolute path whose upgrade was interrupted while it removed those areas; empty
/// for others. What it has begun to remove, Subversion's own clean-up leaves.
std::string rootOfUnfinishedUpgrade(const char* path, apr_pool_t* pool);

/// Removes what is left of them, as `FormerAreas::remove` does; nothing without a root.
svn_error_t* removeFormerAreas(const std::string& root, apr_pool_t* pool);

} // namespace HSVNAdapter
