#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Properties.h"
#include "Internal/SetProperty.h"

void HSVNContext::properties(const HSVNTarget& target, const HSVNRevisionArgument& revision,
                             const HSVNPropertiesChoices& choices,
                             const HSVNReceiver<const HSVNItemProperties&>& receiver)
{
    HSVNAssertParameter(revision.spec() != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "properties", {{"target", target.text()}, {"revision", revision.spec()}}};
    HSVNReadProperties(operation, target.text(), *revision.spec(), choices, receiver);
}

std::vector<HSVNItemProperties> HSVNContext::properties(const HSVNTarget& target, const HSVNRevisionArgument& revision,
                                                        const HSVNPropertiesChoices& choices)
{
    return HSVNCollected<HSVNItemProperties>(
        [&](const auto& receiver) { properties(target, revision, choices, receiver); });
}

HSVNPropertyValues HSVNContext::property(const HSVNTarget& target, const std::string& name,
                                         const HSVNRevisionArgument& revision, const HSVNPropertiesChoices& choices)
{
    HSVNAssertParameter(revision.spec() != nullptr, "revision != nil");
    HSVNOperation operation{
        *this, "property", {{"target", target.text()}, {"name", name}, {"revision", revision.spec()}}};
    return HSVNReadProperty(operation, target.text(), name, *revision.spec(), choices);
}

void HSVNContext::setProperty(const HSVNTargets& targets, const std::string& name,
                              const std::optional<std::string>& value, const HSVNSetPropertyChoices& choices)
{
    HSVNOperation operation{*this, "setProperty", {{"targets", targets.texts()}, {"name", name}}};
    HSVNSetProperty(operation, HSVNChangedArray(operation, targets.texts()), name, value, choices);
}
