#include "HSVNContext.h"
#include "Internal/Info.h"

void HSVNContext::info(const HSVNTarget& target, const HSVNRevisionArgument& revision, const HSVNInfoChoices& choices,
                       const HSVNReceiver<const HSVNItemInfo&>& receiver)
{
    HSVNAssertParameter(revision.spec() != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "info", {{"target", target.text()}, {"revision", revision.spec()}}};
    HSVNInfo(operation, target.text(), *revision.spec(), choices, receiver);
}

std::vector<HSVNItemInfo> HSVNContext::info(const HSVNTarget& target, const HSVNRevisionArgument& revision,
                                            const HSVNInfoChoices& choices)
{
    return HSVNCollected<HSVNItemInfo>([&](const auto& receiver) { info(target, revision, choices, receiver); });
}
