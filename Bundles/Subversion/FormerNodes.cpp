#include "FormerNodes.h"

#ifdef HSVN_FAST_STATUS

#include "WorkingCopyPlace.h"

#include <string_view>

namespace HSVNAdapter {

bool FormerNodes::complete(svn_client_status_t& status, apr_pool_t* pool)
{
    auto* const database = databaseOf(status.local_abspath);
    const auto base =
        database != nullptr ? database->baseBelow(database->relativePathOf(status.local_abspath), pool) : std::nullopt;
    if (!base) {
        return false;
    }
    status.revision = base->revision;
    if (status.node_status == svn_wc_status_deleted && base->revision != SVN_INVALID_REVNUM) {
        status.changed_rev = base->changedRevision;
        status.changed_date = base->changedDate;
        status.changed_author = base->changedAuthor;
    }
    return true;
}

std::optional<svn_wc_schedule_t> FormerNodes::scheduleOf(const char* path)
{
    auto* const database = databaseOf(path);
    return database != nullptr ? database->scheduleOf(database->relativePathOf(path)) : std::nullopt;
}

WorkingCopyDatabase* FormerNodes::databaseOf(const char* path)
{
    const std::string root = workingCopyRoot(path, _pool);
    if (root.empty() || root == path) { // another's root in the place of an item tells of itself
        return nullptr;
    }
    auto found = _databases.find(root);
    if (found == _databases.end()) {
        found =
            _databases.emplace(root, WorkingCopyDatabase::openFile(root, HSVNAdapter::databaseOf(root, _pool))).first;
    }
    return found->second.get();
}

} // namespace HSVNAdapter

#endif
