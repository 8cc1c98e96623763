#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Log.h"

void HSVNContext::log(const HSVNTargets& targets, const HSVNLogChoices& choices,
                      const HSVNReceiver<const HSVNLogItemRef&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    for (const auto& [start, end] : choices.ranges) {
        HSVNAssertParameter(start && end, "revision != nil");
    }
    HSVNOperation operation{
        *this, "log", {{"targets", targets.texts()}, {"pegRevision", choices.pegRevision}, {"ranges", choices.ranges}}};
    HSVNLog(operation, HSVNTextArray(operation, targets.texts()), choices, receiver);
}

std::vector<HSVNLogItemRef> HSVNContext::log(const HSVNTargets& targets, const HSVNLogChoices& choices)
{
    return HSVNCollected<HSVNLogItemRef>([&](const auto& receiver) { log(targets, choices, receiver); });
}
