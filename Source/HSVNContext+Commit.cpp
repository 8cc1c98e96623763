#include "HSVNContext.h"
#include "Internal/Commit.h"
#include "Internal/ExtensionCall.h"
#include "Internal/OperationNotifications.h"

HSVNCommitResult HSVNContext::commit(const HSVNTargets& targets, const HSVNCommitChoices& choices,
                                     const HSVNReceiver<const HSVNCommitResult&>& receiver)
{
    if (targets.empty()) {
        return {};
    }
    HSVNRevisionChange change{
        *this, "commit", {{"targets", targets.texts()}}, choices.message, choices.revisionProperties, receiver};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionCommitStarted, HSVNNotifyActionCommitSucceeded, HSVNNotifyActionCommitFailed}, targets};
    return notifications.run(*this, [&] {
        const auto result = HSVNCommit(change, HSVNChangedArray(change.operation(), targets.texts()), choices);
        notifications.succeeded().setRevision(result.revision);
        return result;
    });
}
