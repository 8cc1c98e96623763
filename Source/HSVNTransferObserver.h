#pragma once

#include "HSVNContext.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

/// Hears how much the operations of a context transfer over the network, for as long as it lives.
///
/// A context has one observer at a time, the one made last. The observer keeps its context alive and belongs to its
/// thread.
class HSVN_EXPORT HSVNTransferObserver
{
  public:
    /// @param bytes  sent and received since the operation began, over all connections that it opens; operations inside
    ///               its callbacks count as part of it, and the next operation begins at zero again
    /// @param total  how many there will be; nil where Subversion does not know, which is nearly always
    ///
    /// Called on the operation's thread, several times a second. When it throws, the operation is stopped as soon as
    /// Subversion allows, and the exception reaches its caller.
    using Receiver = std::function<void(std::int64_t bytes, std::optional<std::int64_t> total)>;

    /// @param context   not nil ("context != nil")
    /// @param receiver  may be empty
    /// Stands for `progress_func` of svn_client_ctx_t.
    HSVNTransferObserver(std::shared_ptr<HSVNContext> context, Receiver receiver);
    /// Ends the observation.
    ~HSVNTransferObserver();
    HSVNTransferObserver(const HSVNTransferObserver&) = delete;
    HSVNTransferObserver& operator=(const HSVNTransferObserver&) = delete;

  private:
    friend struct HSVNTransferCallback;

    std::shared_ptr<HSVNContext> _context;
    Receiver _receiver;
};
