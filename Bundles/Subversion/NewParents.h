#pragma once

#include "SubversionLine.h"

#if HSVN_LINE_MINOR >= 7

#include <vector>

namespace HSVNAdapter {

/// The directories that are made or versioned for the sake of one below them. Subversion leaves them as they are when
/// it cannot make the latter.
class NewParents
{
  public:
    /// Finds out what there is, before anything is made.
    ///
    /// @param path  of the lowest directory, local
    svn_error_t* look(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool);

    /// Takes off the record what came to it since, and removes the directories that were not on the disk and are empty.
    /// Nobody can stop it; what is reverted is told.
    svn_error_t* takeBack(svn_client_ctx_t* ctx, apr_pool_t* pool) const;

  private:
    const char* _topmost = nullptr;   ///< that is not versioned; null for none
    std::vector<const char*> _absent; ///< that are not on the disk, the lowest first
};

} // namespace HSVNAdapter

#endif
