#include "HSVNContext.h"
#include "Internal/List.h"

void HSVNContext::list(const HSVNTarget& target, const HSVNRevisionArgument& revision, const HSVNListChoices& choices,
                       const HSVNReceiver<const HSVNNodeRef&>& receiver)
{
    HSVNAssertParameter(revision.spec() != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "list", {{"target", target.text()}, {"revision", revision.spec()}}};
    HSVNList(operation, target.text(), *revision.spec(), choices, receiver);
}

std::vector<HSVNNodeRef> HSVNContext::list(const HSVNTarget& target, const HSVNRevisionArgument& revision,
                                           const HSVNListChoices& choices)
{
    return HSVNCollected<HSVNNodeRef>([&](const auto& receiver) { list(target, revision, choices, receiver); });
}
