#include "HSVNContext.h"
#include "Internal/Export.h"
#include "Internal/OperationNotifications.h"

HSVNRevisionNumber HSVNContext::exportTree(const HSVNTarget& from, const HSVNTarget& to,
                                           const HSVNRevisionArgument& revision, const HSVNExportChoices& choices)
{
    HSVNAssertParameter(revision.spec() != nullptr, "revision != nil");
    HSVNOperation operation{
        *this, "exportTree", {{"from", from.text()}, {"to", to.text()}, {"revision", revision.spec()}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionExportStarted, HSVNNotifyActionExportSucceeded, HSVNNotifyActionExportFailed}, to, from};
    notifications.started().setRevision(HSVNNumberOfExport(*revision.spec()));
    return notifications.run(*this, [&] {
        const HSVNRevisionNumber exported = HSVNExport(operation, from.text(), to.text(), *revision.spec(), choices);
        notifications.succeeded().setRevision(exported);
        return exported;
    });
}
