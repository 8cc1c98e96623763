#include "FormerNodes.h"

#ifdef HSVN_FAST_STATUS

#include "ItemsOnDisk.h"
#include "WorkingCopyPlace.h"

#include <string_view>

namespace HSVNAdapter {
namespace {

std::string_view parentPath(std::string_view path) { return path.substr(0, path.rfind('/')); }

} // namespace

void FormerNodes::complete(svn_client_status_t& status, apr_pool_t* pool)
{
    if (status.node_status == svn_wc_status_deleted) {
        completeDeletion(status, pool);
    } else {
        completeReplacement(status);
    }
}

void FormerNodes::completeDeletion(svn_client_status_t& status, apr_pool_t* pool)
{
    // A folder that lies there tells of itself.
    const bool isThere = kindOnDisk(status.local_abspath, pool) == svn_node_dir;
    auto* const database = isThere ? nullptr : databaseOf(status.local_abspath);
    const auto node = database != nullptr ? database->deletedNode(database->relativePathOf(status.local_abspath), pool)
                                          : std::nullopt;
    if (node && node->revision > 0) {
        status.revision = node->revision;
        status.changed_rev = node->changedRevision;
        status.changed_date = node->changedDate;
        status.changed_author = node->changedAuthor;
    }
}

void FormerNodes::completeReplacement(svn_client_status_t& status)
{
    auto* const database = databaseOf(status.local_abspath);
    const auto replaced =
        database != nullptr ? database->plainlyReplaced(database->relativePathOf(status.local_abspath)) : std::nullopt;
    // 0: nothing was committed there.
    if (replaced && *replaced > 0) {
        status.revision = *replaced;
    }
}

WorkingCopyDatabase* FormerNodes::databaseOf(const char* path)
{
    const std::string root = workingCopyRoot(parentPath(path), _pool);
    if (root.empty()) {
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
