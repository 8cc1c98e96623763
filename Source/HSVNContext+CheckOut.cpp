#include "HSVNContext.h"
#include "Internal/Browsing.h"
#include "Internal/CheckOut.h"
#include "Internal/OperationNotifications.h"

HSVNRevisionNumber HSVNContext::checkout(const HSVNTarget& url, const HSVNTarget& path,
                                         const HSVNRevisionArgument& revision, const HSVNCheckOutChoices& choices)
{
    const auto spec = HSVNSpecOrHead(revision.spec());
    HSVNAssertParameter(spec != nullptr, "revision != nil");
    HSVNOperation operation{*this, "checkout", {{"url", url.text()}, {"path", path.text()}, {"revision", spec}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionCheckOutStarted, HSVNNotifyActionCheckOutSucceeded, HSVNNotifyActionCheckOutFailed},
        path,
        url};
    return notifications.run(*this, [&] { return HSVNCheckOut(operation, url.text(), path.text(), *spec, choices); });
}
