#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/MakeDirectories.h"

HSVNCommitResult HSVNContext::makeDirectories(const HSVNTargets& targets, const HSVNMakeDirectoriesChoices& choices,
                                              const HSVNReceiver<const HSVNCommitResult&>& receiver)
{
    HSVNRevisionChange change{*this,           "makeDirectories",          {{"targets", targets.texts()}},
                              choices.message, choices.revisionProperties, receiver};
    return HSVNMakeDirectories(change, HSVNChangedArray(change.operation(), targets.texts()), choices);
}
