#include "Internal/OperationNotifications.h"

#include "HSVNPlatformException.h"
#include "Internal/CaughtException.h"

namespace {

HSVNPathRef pathOrNil(const HSVNTarget& target)
{
    try {
        return HSVNPath::pathWithString(target.text());
    } catch (const HSVNPlatformException&) {
        return nullptr;
    }
}

} // namespace

HSVNOperationNotifications::HSVNOperationNotifications(const HSVNOperationActions& actions)
    : _started{HSVNNotification::notificationWithAction(actions.started)},
      _succeeded{HSVNNotification::notificationWithAction(actions.succeeded)},
      _failed{HSVNNotification::notificationWithAction(actions.failed)}
{
}

HSVNOperationNotifications::HSVNOperationNotifications(const HSVNOperationActions& actions, const HSVNTargets& targets)
    : HSVNOperationNotifications{actions}
{
    if (targets.texts().size() == 1) {
        nameItem(targets.texts().front());
    }
}

HSVNOperationNotifications::HSVNOperationNotifications(const HSVNOperationActions& actions, const HSVNPath& path,
                                                       const HSVNPathRef& alternatePath)
    : HSVNOperationNotifications{actions}
{
    namePlaces(path.string(), alternatePath);
}

HSVNOperationNotifications::HSVNOperationNotifications(const HSVNOperationActions& actions, const HSVNTarget& path,
                                                       const HSVNTarget& alternatePath)
    : HSVNOperationNotifications{actions}
{
    namePlaces(path.text(), pathOrNil(alternatePath));
}

void HSVNOperationNotifications::namePlaces(const std::string& path, const HSVNPathRef& alternatePath)
{
    nameItem(path);
    _failed->setPath(path);
    for (const auto& notification : {_started, _succeeded, _failed}) {
        notification->setAlternatePath(alternatePath);
    }
}

void HSVNOperationNotifications::nameItem(const std::string& path)
{
    _started->setPath(path);
    _succeeded->setPath(path);
}

void HSVNOperationNotifications::sendFailure(HSVNContext& context) noexcept
{
    try {
        _failed->setRevision(_succeeded->revision());
        _failed->setError(HSVNCaughtException());
        context.notify(_failed);
    } catch (...) { // NOLINT(bugprone-empty-catch): it must not take the place of the failure itself
    }
}
