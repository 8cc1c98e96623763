#pragma once

#include "HSVNSubversionPrivate.h"

// Some results come only as notifications. A tap hears them for one call and passes every one on.

namespace HSVNAdapter {

/// Stands in the context's place for notifications while it lives.
class NotificationTap
{
  public:
    /// Calls of the tap must not throw: they come from C frames.
    explicit NotificationTap(svn_client_ctx_t* ctx);
    virtual ~NotificationTap();
    NotificationTap(const NotificationTap&) = delete;
    NotificationTap& operator=(const NotificationTap&) = delete;

    /// Hands a notification to the function that the context had.
    void pass(const svn_wc_notify_t* notification, apr_pool_t* pool) const;

  protected:
    virtual void heard(const svn_wc_notify_t* notification) = 0;

  private:
    static void notified(void* baton, const svn_wc_notify_t* notification, apr_pool_t* pool);

    svn_client_ctx_t* _ctx;
    svn_wc_notify_func2_t _function;
    void* _baton;
};

/// Keeps the first error that was only reported as a failed lock or unlock.
class LockFailureTap : public NotificationTap
{
  public:
    using NotificationTap::NotificationTap;
    ~LockFailureTap() override;
    LockFailureTap(const LockFailureTap&) = delete;
    LockFailureTap& operator=(const LockFailureTap&) = delete;

    /// The call's own error, else the kept one; the caller owns it.
    svn_error_t* result(svn_error_t* error);

  protected:
    void heard(const svn_wc_notify_t* notification) override;

  private:
    svn_error_t* _failure = nullptr;
};

/// Knows whether a path was reported as deleted.
class DeletionTap : public NotificationTap
{
  public:
    DeletionTap(svn_client_ctx_t* ctx, const char* path) : NotificationTap{ctx}, _path{path} {}

    bool wasReported() const { return _wasReported; }

  protected:
    void heard(const svn_wc_notify_t* notification) override;

  private:
    const char* _path;
    bool _wasReported = false;
};

} // namespace HSVNAdapter
