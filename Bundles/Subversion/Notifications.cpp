#include "Notifications.h"

#include <cstring>

namespace HSVNAdapter {

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
    tap->heard(notification);
    tap->pass(notification, pool);
}

LockFailureTap::~LockFailureTap() { svn_error_clear(_failure); }

svn_error_t* LockFailureTap::result(svn_error_t* error)
{
    if (error != nullptr) {
        return error;
    }
    svn_error_t* failure = _failure;
    _failure = nullptr;
    return failure;
}

void LockFailureTap::heard(const svn_wc_notify_t* notification)
{
    const bool failed =
        notification->action == svn_wc_notify_failed_lock || notification->action == svn_wc_notify_failed_unlock;
    if (failed && _failure == nullptr && notification->err != nullptr) {
        _failure = svn_error_dup(notification->err);
    }
}

void DeletionTap::heard(const svn_wc_notify_t* notification)
{
    if (notification->action == svn_wc_notify_delete && std::strcmp(notification->path, _path) == 0) {
        _wasReported = true;
    }
}

} // namespace HSVNAdapter
