#include "HSVNContext.h"
#include "HSVNNode.h"
#include "Internal/Status.h"

HSVNRevisionNumber HSVNContext::status(const HSVNTarget& target, const HSVNStatusChoices& choices,
                                       const HSVNReceiver<const HSVNNodeRef&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "status", {{"target", target.text()}, {"revision", choices.revision}}};
    return HSVNReportStatus(operation, target.text(), choices, receiver);
}

std::vector<HSVNNodeRef> HSVNContext::status(const HSVNTarget& target, const HSVNStatusChoices& choices)
{
    return HSVNCollected<HSVNNodeRef>([&](const auto& receiver) { status(target, choices, receiver); });
}
