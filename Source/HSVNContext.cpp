#include "HSVNContext.h"

#include "HSVNBundleLoader.h"
#include "HSVNException.h"
#include "Internal/Pool.h"
#include "Internal/TransferCallback.h"

#include <fmt/format.h>

HSVNContext::HSVNContext() : HSVNContext(nullptr) {}

HSVNContext::HSVNContext(const HSVNBundleRef& bundle)
{
    HSVNContext::setBundle(bundle ? bundle : HSVNBundleLoader::sharedInstance().defaultBundle());
}

HSVNContext::HSVNContext(WithoutBundle) {}

HSVNContext::~HSVNContext()
{
    if (_pool) {
        cleanupContext();
    }
}

std::string HSVNContext::description() const
{
    const auto version = bundleVersion();
    return fmt::format("{} ({})", objectDescription(), version ? version->description() : "(null)");
}

HSVNBundleRef HSVNContext::bundle() const
{
    const std::lock_guard guard{_lock};
    return _bundle;
}

void HSVNContext::changeBundle(const HSVNBundleRef& bundle)
{
    const std::lock_guard guard{_lock};
    if (_bundle) {
        cleanupContext();
    }
    _bundle = bundle;
    _bundleVersion = bundle ? HSVNBundleLoader::sharedInstance().versionForBundle(bundle) : std::nullopt;
    if (!bundle) {
        return;
    }
    try {
        setupContext();
    } catch (...) {
        _bundle = nullptr;
        _bundleVersion = std::nullopt;
        throw;
    }
}

std::optional<HSVNVersion> HSVNContext::bundleVersion() const
{
    const std::lock_guard guard{_lock};
    return _bundleVersion;
}

void HSVNContext::setBundleVersion(const std::optional<HSVNVersion>& version)
{
    const std::lock_guard guard{_lock};
    _bundleVersion = version;
}

apr_pool_t* HSVNContext::pool() const { return _pool ? _pool->get() : nullptr; }

void HSVNContext::notify(const std::shared_ptr<const HSVNNotification>& notification)
{
    HSVNAssertParameter(notification != nullptr, "notification != nil");
}

void HSVNContext::beginOperation() { _operationBytes = 0; }

void HSVNContext::setupContext()
{
    const HSVNBundleScope scope{_bundle};
    auto pool = std::make_unique<HSVNPool>();
    if (svn_error_t* const error = HSVNCurrentEntryPoints().client_create_context(&_ctx, *pool)) {
        _ctx = nullptr;
        HSVNException::exceptionWithError(error)->raise();
    }
    _pool = std::move(pool);
    _countedBytes = 0;
    _ctx->progress_func = HSVNTransferCallback::receive;
    _ctx->progress_baton = this;
}

void HSVNContext::cleanupContext()
{
    const HSVNBundleScope scope{_bundle};
    _ctx = nullptr;
    _pool.reset();
}
