#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/OperationNotifications.h"
#include "Internal/Update.h"

std::vector<HSVNRevisionNumber> HSVNContext::update(const HSVNTargets& targets, const HSVNRevisionRef& revision,
                                                    const HSVNUpdateChoices& choices)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNOperation operation{*this, "update", {{"targets", targets.texts()}, {"revision", revision}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionUpdateStarted, HSVNNotifyActionUpdateSucceeded, HSVNNotifyActionUpdateFailed}, targets};
    return notifications.run(
        *this, [&] { return HSVNUpdate(operation, HSVNChangedArray(operation, targets.texts()), *revision, choices); });
}
