#include "Internal/SetProperty.h"

#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/PropertyValue.h"
#include "Internal/RecursionFlag.h"

void HSVNSetProperty(HSVNOperation& operation, const apr_array_header_t* targets, const std::string& name,
                     const std::optional<std::string>& value, const HSVNSetPropertyChoices& choices)
{
    const char* const nameText = operation.cString(name);
    const HSVNPropertyValue record{value};
    if (const auto set = operation.newest(&HSVNPropertyFunctions::client_propset)) {
        operation.check(set(nameText, record.get(), targets, HSVNDepthForSubversion(choices.depth), choices.force,
                            HSVNFilterArray(operation, choices.changelists), operation.ctx(), operation.pool()));
        return;
    }
    operation.refuse(!choices.changelists.empty(), "changelists");
    const bool recurse = HSVNRecursionFlag(operation, choices.depth);
    HSVNForEachText(targets, [&](const char* target) {
        operation.check(operation->client_propset2(nameText, record.get(), target, recurse, choices.force,
                                                   operation.ctx(), operation.pool()));
    });
}
