#include "HSVNTransferObserver.h"

#include "Internal/ContextUse.h"
#include "Internal/Operation.h"
#include "Internal/TransferCallback.h"

#include <utility>

void HSVNTransferCallback::receive(apr_off_t bytes, apr_off_t total, void* baton, apr_pool_t* /*pool*/)
{
    auto& context = *static_cast<HSVNContext*>(baton);
    // Newer lines count since the client context was made, older ones anew for every connection.
    context._operationBytes += bytes < context._countedBytes ? bytes : bytes - context._countedBytes;
    context._countedBytes = bytes;
    if (const HSVNTransferObserver* const observer = context._transferObserver) {
        HSVNGuardVoidCallback(context, [&] {
            observer->_receiver(context._operationBytes, total < 0 ? std::nullopt : std::optional<std::int64_t>{total});
        });
    }
}

HSVNTransferObserver::HSVNTransferObserver(std::shared_ptr<HSVNContext> context, Receiver receiver)
    : _context{std::move(context)}, _receiver{std::move(receiver)}
{
    HSVNAssertParameter(_context != nullptr, "context != nil");
    const HSVNContextUse use{*_context};
    if (_receiver) {
        _context->_transferObserver = this;
    }
}

HSVNTransferObserver::~HSVNTransferObserver()
{
    if (_context->_transferObserver == this) {
        _context->_transferObserver = nullptr;
    }
}
