#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Remove.h"

HSVNCommitResult HSVNContext::remove(const HSVNTargets& targets, const HSVNDeleteChoices& choices,
                                     const HSVNReceiver<const HSVNCommitResult&>& receiver)
{
    HSVNRevisionChange change{
        *this, "remove", {{"targets", targets.texts()}}, choices.message, choices.revisionProperties, receiver};
    auto& operation = change.operation();
    return HSVNRemove(change, HSVNChangedArray(operation, targets.texts()), choices, operation.pool());
}
