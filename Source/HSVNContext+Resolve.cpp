#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Resolve.h"

void HSVNContext::resolve(const HSVNTargets& targets, const HSVNResolveChoices& choices)
{
    HSVNOperation operation{*this, "resolve", {{"targets", targets.texts()}}};
    HSVNResolve(operation, HSVNChangedArray(operation, targets.texts()), choices);
}
