#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Revert.h"

void HSVNContext::revert(const HSVNTargets& targets, const HSVNRevertChoices& choices)
{
    HSVNOperation operation{*this, "revert", {{"targets", targets.texts()}}};
    HSVNRevert(operation, HSVNChangedArray(operation, targets.texts()), choices);
}
