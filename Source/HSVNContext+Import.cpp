#include "HSVNContext.h"
#include "Internal/Import.h"
#include "Internal/OperationNotifications.h"

HSVNCommitResult HSVNContext::importTree(const HSVNTarget& path, const HSVNTarget& url,
                                         const HSVNImportChoices& choices,
                                         const HSVNReceiver<const HSVNCommitResult&>& receiver)
{
    HSVNRevisionChange change{*this,
                              "importTree",
                              {{"path", path.text()}, {"url", url.text()}},
                              choices.message,
                              choices.revisionProperties,
                              receiver};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionImportStarted, HSVNNotifyActionImportSucceeded, HSVNNotifyActionImportFailed}, path, url};
    return notifications.run(*this, [&] {
        const auto result = HSVNImport(change, path.text(), url.text(), choices);
        notifications.succeeded().setRevision(result.revision);
        return result;
    });
}
