#include "UpgradedExternals.h"

#include "ItemsOnDisk.h"
#include "StandIns.h"
#include "WorkingCopyFormat.h"

#include <string>
#include <svn_wc.h>

namespace {

constexpr const char* upgradedTargetKey = "HSVNAdapter::UpgradedTarget";

} // namespace

void HSVNAdapter::leaveLinkedExternals(const char* target, apr_pool_t* pool)
{
    apr_pool_userdata_setn(target, upgradedTargetKey, nullptr, pool);
}

#ifdef HSVN_GUARDS_DATABASES
namespace {

/// The target of the upgrade in a pool or one above it; empty when there is none.
std::string_view upgradedTarget(apr_pool_t* pool)
{
    void* target = nullptr;
    for (; pool != nullptr && target == nullptr; pool = apr_pool_parent_get(pool)) {
        apr_pool_userdata_get(&target, upgradedTargetKey, pool);
    }
    return target == nullptr ? "" : static_cast<const char*>(target);
}

/// Whether a path below another leads there through a symbolic link, its own last name among them.
bool isReachedThroughLink(std::string path, std::string_view top, apr_pool_t* pool)
{
    for (; path.size() > top.size() && path.starts_with(top); path.resize(path.rfind('/'))) {
        if (HSVNAdapter::isSymbolicLink(path.c_str(), pool)) {
            return true;
        }
    }
    return false;
}

} // namespace

// Subversion comes here for the target, and then for each external.
HSVN_STAND_IN(svn_error_t*, svn_wc_upgrade)
(svn_wc_context_t* context, const char* path, svn_wc_upgrade_get_repos_info_t repositoryInfo, void* repositoryBaton,
 svn_cancel_func_t cancel, void* cancelBaton, svn_wc_notify_func2_t notify, void* notifyBaton, apr_pool_t* pool)
{
    const auto top = upgradedTarget(pool);
    if (!top.empty() && isReachedThroughLink(path, top, pool)) {
        if (HSVNAdapter::isFormatOfLine(HSVNAdapter::statedFormat(path, pool))) {
            return SVN_NO_ERROR; // nothing is to be done
        }
        return svn_error_createf(SVN_ERR_NODE_UNEXPECTED_KIND, nullptr,
                                 "'%s' is reached through a symbolic link: upgrade it where it is", path);
    }
    return HSVN_BEHIND(svn_wc_upgrade)(context, path, repositoryInfo, repositoryBaton, cancel, cancelBaton, notify,
                                       notifyBaton, pool);
}
#endif
