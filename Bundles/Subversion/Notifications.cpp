#include "Notifications.h"

#include "ErrorCodes.h"

#include <cstring>
#include <string>
#include <string_view>

namespace HSVNAdapter {
namespace {

bool isRelative(const char* path) { return *path != '/' && !svn_path_is_url(path); }

/// A copy that shares what the notification points to.
svn_wc_notify_t* copyOf(const svn_wc_notify_t* notification, apr_pool_t* pool)
{
    return static_cast<svn_wc_notify_t*>(apr_pmemdup(pool, notification, sizeof *notification));
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
    if (const auto* const passed = tap->heard(notification, pool)) {
        tap->pass(passed, pool);
    }
}

LockTap::~LockTap()
{
    for (auto* failure : _failures) {
        svn_error_clear(failure);
    }
}

svn_error_t* LockTap::result(svn_error_t* error) const
{
    return error != nullptr || _failures.empty() ? smoothed(error) : svn_error_dup(_failures.front());
}

const svn_wc_notify_t* LockTap::heard(const svn_wc_notify_t* notification, apr_pool_t* pool)
{
    const bool failed =
        notification->action == svn_wc_notify_failed_lock || notification->action == svn_wc_notify_failed_unlock;
    auto* copy = copyOf(notification, pool);
    if (failed && notification->err != nullptr) {
        copy->err = _failures.emplace_back(smoothed(svn_error_dup(notification->err)));
    }
    if (const char* target = isRelative(notification->path) ? targetNamed(notification->path) : nullptr) {
        copy->path = target;
    }
    return copy;
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

#if HSVN_LINE_MINOR < 6
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
    auto* copy = copyOf(notification, pool);
    const char* const name = svn_path_canonicalize(notification->path, pool); // "." becomes ""
    copy->path = *name == '\0' ? _prefix : svn_path_join(_prefix, name, pool);
    return copy;
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
