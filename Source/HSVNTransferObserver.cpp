#include "HSVNTransferObserver.h"

#include "HSVNOperationPrivate.h"

#include <utility>

struct HSVNTransferCallback
{
    static void receive(apr_off_t bytes, apr_off_t total, void* baton, apr_pool_t* /*pool*/)
    {
        const auto& observer = *static_cast<const HSVNTransferObserver*>(baton);
        HSVNGuardVoidCallback(*observer._context, [&] {
            observer._receiver(bytes, total < 0 ? std::nullopt : std::optional<std::int64_t>{total});
        });
    }
};

HSVNTransferObserver::HSVNTransferObserver(std::shared_ptr<HSVNContext> context, Receiver receiver)
    : _context{std::move(context)}, _receiver{std::move(receiver)}
{
    HSVNAssertParameter(_context != nullptr, "context != nil");
    if (_context->ctx() && _receiver) {
        _context->ctx()->progress_func = HSVNTransferCallback::receive;
        _context->ctx()->progress_baton = this;
    }
}

HSVNTransferObserver::~HSVNTransferObserver()
{
    svn_client_ctx_t* const ctx = _context->ctx();
    if (ctx && ctx->progress_baton == this) {
        ctx->progress_func = nullptr;
        ctx->progress_baton = nullptr;
    }
}
