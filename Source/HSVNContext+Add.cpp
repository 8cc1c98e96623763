#include "HSVNContext.h"
#include "Internal/Add.h"
#include "Internal/ExtensionCall.h"

void HSVNContext::add(const HSVNTargets& targets, const HSVNAddChoices& choices)
{
    HSVNOperation operation{*this, "add", {{"targets", targets.texts()}}};
    HSVNAdd(operation, HSVNChangedArray(operation, targets.texts()), choices);
}
