#include "HSVNContext.h"
#include "Internal/CheckOut.h"
#include "Internal/OperationNotifications.h"

HSVNRevisionNumber HSVNContext::checkout(const HSVNTarget& url, const HSVNTarget& path,
                                         const HSVNRevisionArgument& revision, const HSVNCheckOutChoices& choices)
{
    HSVNAssertParameter(revision.spec() != nullptr, "revision != nil");
    HSVNOperation operation{
        *this, "checkout", {{"url", url.text()}, {"path", path.text()}, {"revision", revision.spec()}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionCheckOutStarted, HSVNNotifyActionCheckOutSucceeded, HSVNNotifyActionCheckOutFailed},
        path,
        url};
    return notifications.run(
        *this, [&] { return HSVNCheckOut(operation, url.text(), path.text(), *revision.spec(), choices); });
}
