#include "HSVNClient.h"

#include "HSVNBundleLoader.h"
#include "HSVNLogMessageDelegate.h"
#include "Internal/Pool.h"

#include <mutex>

HSVNClientRef HSVNClient::clientWithDelegate(const HSVNClientDelegateRef& delegate)
{
    return std::make_shared<HSVNClient>(delegate);
}

HSVNClientRef HSVNClient::clientForSettings(const HSVNClientDelegateRef& delegate)
{
    return HSVNClientRef{new HSVNClient{nullptr, delegate, &HSVNClient::clearConfiguration}};
}

HSVNClientRef HSVNClient::clientOwningDelegate(HSVNClientDelegateRef delegate)
{
    HSVNAssertParameter(delegate != nullptr, "delegate != nil");
    auto client = clientWithDelegate();
    client->setOwnedDelegate(std::move(delegate));
    return client;
}

HSVNClient::HSVNClient(const HSVNClientDelegateRef& delegate) : HSVNClient{nullptr, delegate} {}

HSVNClient::HSVNClient(const HSVNBundleRef& bundle, const HSVNClientDelegateRef& delegate)
    : HSVNClient{bundle, delegate, &HSVNClient::setupConfiguration}
{
}

HSVNClient::HSVNClient(const HSVNBundleRef& bundle, const HSVNClientDelegateRef& delegate, Configuring configure)
    : HSVNContext{WithoutBundle{}}
{
    // The base's constructor would set the bundle up without what a client adds.
    setUp(bundle ? bundle : HSVNBundleLoader::sharedInstance().defaultBundle(), configure);
    setDelegate(delegate);
}

HSVNClient::~HSVNClient() = default;

HSVNClientDelegateRef HSVNClient::delegate() const
{
    const std::lock_guard guard{mutex()};
    return _delegate.lock();
}

void HSVNClient::setDelegate(const HSVNClientDelegateRef& delegate)
{
    const bool answers = delegate && delegate->respondsTo(HSVNClientDelegateMessage::queryContinue);
    const std::lock_guard guard{mutex()};
    _delegate = delegate;
    _hasDelegate = delegate != nullptr;
    _respondsToQueryContinue = answers;
    if (delegate && delegate == _installedDelegate) {
        return; // it hands on to the one of before
    }
    _installedDelegate.reset();
    if (delegate != _ownedDelegate) {
        _ownedDelegate.reset();
    }
}

void HSVNClient::setOwnedDelegate(HSVNClientDelegateRef delegate)
{
    HSVNAssertParameter(delegate != nullptr, "delegate != nil");
    setDelegate(delegate);
    const std::lock_guard guard{mutex()};
    _ownedDelegate = std::move(delegate);
}

void HSVNClient::notify(const HSVNNotificationRef& notification)
{
    HSVNContext::notify(notification);
    const auto receiver = delegate();
    if (receiver && receiver->respondsTo(HSVNClientDelegateMessage::notify)) {
        receiver->notify(*this, notification);
    }
}

bool HSVNClient::queryContinue()
{
    std::unique_lock guard{mutex()};
    const auto receiver = _respondsToQueryContinue ? _delegate.lock() : nullptr;
    guard.unlock();
    return !receiver || receiver->queryContinue(*this);
}

void HSVNClient::beginOperation()
{
    HSVNContext::beginOperation();
    _notifiedPath.clear();
}
