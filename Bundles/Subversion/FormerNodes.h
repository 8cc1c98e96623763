#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

#include "WorkingCopyDatabase.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace HSVNAdapter {

/// Adds to the record of an item that goes or has taken another's place what was there until now: a record of the
/// newest interface does not say, and asking for an older one of each such item takes a walk of its own.
///
/// As Subversion's own client has it: of an item that lies on another that was itself scheduled nothing is added.
class FormerNodes
{
  public:
    /// @param pool  lives as long as the object
    explicit FormerNodes(apr_pool_t* pool) : _pool{pool} {}

    /// Sets the revision of what was there, and of an item that goes its last change, too. The texts are made in the
    /// pool.
    ///
    /// @return false when the database could not be asked
    bool complete(svn_client_status_t& status, apr_pool_t* pool);
    /// What is scheduled for an item, by its absolute path; nothing when the database could not be asked.
    std::optional<svn_wc_schedule_t> scheduleOf(const char* path);

  private:
    /// The database of the working copy that an item lies in; null when it cannot be used.
    WorkingCopyDatabase* databaseOf(const char* path);

    apr_pool_t* _pool;
    std::map<std::string, std::unique_ptr<WorkingCopyDatabase>> _databases; ///< by root
};

} // namespace HSVNAdapter

#endif
