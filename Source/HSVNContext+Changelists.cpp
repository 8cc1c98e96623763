#include "HSVNContext.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"

void HSVNContext::addToChangelist(const HSVNTargets& targets, const std::string& changelist,
                                  const HSVNChangelistChoices& choices)
{
    HSVNOperation operation{*this, "addToChangelist", {{"targets", targets.texts()}, {"changelist", changelist}}};
    operation.call(&HSVNChangeFunctions::client_add_to_changelist, HSVNChangedArray(operation, targets.texts()),
                   operation.cString(changelist), HSVNDepthForSubversion(choices.depth),
                   HSVNFilterArray(operation, choices.changelists), operation.ctx(), operation.pool());
}

void HSVNContext::removeFromChangelists(const HSVNTargets& targets, const HSVNChangelistChoices& choices)
{
    HSVNOperation operation{*this, "removeFromChangelists", {{"targets", targets.texts()}}};
    operation.call(&HSVNChangeFunctions::client_remove_from_changelists, HSVNChangedArray(operation, targets.texts()),
                   HSVNDepthForSubversion(choices.depth), HSVNFilterArray(operation, choices.changelists),
                   operation.ctx(), operation.pool());
}
