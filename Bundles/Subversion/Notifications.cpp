#include "Notifications.h"

#include <cstring>
#include <string>
#include <string_view>

namespace HSVNAdapter {
namespace {

bool isRelative(const char* path) { return *path != '/' && !svn_path_is_url(path); }

svn_wc_notify_t* copyWithPath(const svn_wc_notify_t* notification, const char* path, apr_pool_t* pool)
{
    auto* copy = svn_wc_dup_notify(notification, pool);
    copy->path = path;
    return copy;
}

} // namespace

NotificationTap::NotificationTap(svn_client_ctx_t* ctx)
    : _ctx{ctx}, _function{ctx->notify_func2}, _baton{ctx->notify_baton2}
{
    ctx->notify_func2 = notified;
    ctx->notify_baton2 = this;
}

NotificationTap::~NotificationTap()
{
    _ctx->notify_func2 = _function;
    _ctx->notify_baton2 = _baton;
}

void NotificationTap::pass(const svn_wc_notify_t* notification, apr_pool_t* pool) const
{
    if (_function != nullptr) {
        _function(_baton, notification, pool);
    }
}

void NotificationTap::notified(void* baton, const svn_wc_notify_t* notification, apr_pool_t* pool)
{
    auto* tap = static_cast<NotificationTap*>(baton);
    tap->pass(tap->heard(notification, pool), pool);
}

LockTap::~LockTap() { svn_error_clear(_failure); }

svn_error_t* LockTap::result(svn_error_t* error)
{
    if (error != nullptr) {
        return error;
    }
    svn_error_t* failure = _failure;
    _failure = nullptr;
    return failure;
}

const svn_wc_notify_t* LockTap::heard(const svn_wc_notify_t* notification, apr_pool_t* pool)
{
    const bool failed =
        notification->action == svn_wc_notify_failed_lock || notification->action == svn_wc_notify_failed_unlock;
    if (failed && _failure == nullptr && notification->err != nullptr) {
        _failure = svn_error_dup(notification->err);
    }
    const char* target = isRelative(notification->path) ? targetNamed(notification->path) : nullptr;
    return target == nullptr ? notification : copyWithPath(notification, target, pool);
}

/// The shortest target that ends with the name: longer ones have longer names below the common folder.
const char* LockTap::targetNamed(const char* name) const
{
    const std::string ending = std::string{"/"} + name;
    const char* shortest = nullptr;
    for (int index = 0; index < _targets->nelts; ++index) {
        const char* target = APR_ARRAY_IDX(_targets, index, const char*);
        if (std::string_view{target}.ends_with(ending) &&
            (shortest == nullptr || std::strlen(target) < std::strlen(shortest))) {
            shortest = target;
        }
    }
    return shortest;
}

#if SVN_VER_MINOR < 6
CommitTap::CommitTap(svn_client_ctx_t* ctx, const apr_array_header_t* targets, svn_boolean_t recurse, apr_pool_t* pool)
    : NotificationTap{ctx}
{
    // The steps by which these lines find the folder that they take away from the paths.
    const char* folder = nullptr;
    const char* currentFolder = nullptr;
    apr_array_header_t* relativeTargets = nullptr;
    svn_error_clear(svn_path_condense_targets(&folder, &relativeTargets, targets, recurse, pool));
    svn_error_clear(svn_path_get_absolute(&currentFolder, "", pool));
    if (folder == nullptr || currentFolder == nullptr) {
        return;
    }
    const char* parent = folder;
    const char* name = "";
    if (relativeTargets == nullptr || relativeTargets->nelts == 0) {
        svn_error_clear(svn_wc_get_actual_target(folder, &parent, &name, pool));
    }
    const char* prefix = svn_path_get_longest_ancestor(currentFolder, *name != '\0' ? parent : folder, pool);
    if (prefix != nullptr && *prefix != '\0') {
        _prefix = prefix;
    }
}

const svn_wc_notify_t* CommitTap::heard(const svn_wc_notify_t* notification, apr_pool_t* pool)
{
    if (!isRelative(notification->path)) {
        return notification;
    }
    const char* path = *notification->path == '\0' ? _prefix : svn_path_join(_prefix, notification->path, pool);
    return copyWithPath(notification, path, pool);
}
#endif

const svn_wc_notify_t* DeletionTap::heard(const svn_wc_notify_t* notification, apr_pool_t*)
{
    if (notification->action == svn_wc_notify_delete && std::strcmp(notification->path, _path) == 0) {
        _wasReported = true;
    }
    return notification;
}

} // namespace HSVNAdapter
