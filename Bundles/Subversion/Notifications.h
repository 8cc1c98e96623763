#pragma once

#include "SubversionLine.h"

#include <vector>

// Some results come only as notifications. A tap hears them for one call and passes them on.

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
    /// Answers the notification to pass on: the given one, a copy in the pool, or null for none.
    virtual const svn_wc_notify_t* heard(const svn_wc_notify_t* notification, apr_pool_t* pool) = 0;

  private:
    static void notified(void* baton, const svn_wc_notify_t* notification, apr_pool_t* pool);

    svn_client_ctx_t* _ctx;
    svn_wc_notify_func2_t _function;
    void* _baton;
};

/// Keeps the errors that were only reported as failed locks or unlocks, and gives every notification its target: lines
/// report a name relative to what the targets have in common. An item that another user locked, and one that is out of
/// date, come with the codes that commits answer for them.
class LockTap : public NotificationTap
{
  public:
    /// @param targets  canonical paths or URLs that outlive the tap
    LockTap(svn_client_ctx_t* ctx, const apr_array_header_t* targets) : NotificationTap{ctx}, _targets{targets} {}
    ~LockTap() override;
    LockTap(const LockTap&) = delete;
    LockTap& operator=(const LockTap&) = delete;

    /// The call's own error, else a copy of the first kept one; the caller owns it.
    svn_error_t* result(svn_error_t* error) const;

  protected:
    const svn_wc_notify_t* heard(const svn_wc_notify_t* notification, apr_pool_t* pool) override;

  private:
    const char* targetNamed(const char* name) const;

    const apr_array_header_t* _targets;
    std::vector<svn_error_t*> _failures; // for as long as notifications with them may be looked at
};

#if HSVN_LINE_MINOR < 6
/// Makes the paths of a commit's notifications absolute: lines before 1.6 report them relative to what the working copy
/// and the current folder have in common.
class CommitTap : public NotificationTap
{
  public:
    CommitTap(svn_client_ctx_t* ctx, const apr_array_header_t* targets, svn_boolean_t recurse, apr_pool_t* pool);

  protected:
    const svn_wc_notify_t* heard(const svn_wc_notify_t* notification, apr_pool_t* pool) override;

  private:
    const char* _prefix = "/";
};
#endif

/// Knows whether a path was reported as deleted.
class DeletionTap : public NotificationTap
{
  public:
    DeletionTap(svn_client_ctx_t* ctx, const char* path) : NotificationTap{ctx}, _path{path} {}

    bool wasReported() const { return _wasReported; }

  protected:
    const svn_wc_notify_t* heard(const svn_wc_notify_t* notification, apr_pool_t* pool) override;

  private:
    const char* _path;
    bool _wasReported = false;
};

} // namespace HSVNAdapter
