#include "HSVNContext.h"
#include "Internal/Export.h"
#include "Internal/OperationNotifications.h"

HSVNRevisionNumber HSVNContext::exportTree(const HSVNTarget& from, const HSVNTarget& to,
                                           const HSVNRevisionSpecRef& revision, const HSVNExportChoices& choices)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNOperation operation{*this, "exportTree", {{"from", from.text()}, {"to", to.text()}, {"revision", revision}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionExportStarted, HSVNNotifyActionExportSucceeded, HSVNNotifyActionExportFailed}, to, from};
    notifications.started().setRevision(HSVNNumberOfExport(*revision));
    return notifications.run(*this, [&] {
        const HSVNRevisionNumber exported = HSVNExport(operation, from.text(), to.text(), *revision, choices);
        notifications.succeeded().setRevision(exported);
        return exported;
    });
}
