// Care of working copies: what was interrupted, what nobody needs, an older format.

#include "HSVNContext.h"
#include "Internal/CleanUp.h"

void HSVNContext::cleanUp(const HSVNTarget& directory, const HSVNCleanUpChoices& choices)
{
    HSVNOperation operation{*this, "cleanUp", {{"directory", directory.text()}}};
    HSVNCleanUp(operation, directory.text(), choices);
    HSVNTellOfItemsSetAside(directory.text());
}

void HSVNContext::vacuum(const HSVNTarget& directory, const HSVNVacuumChoices& choices)
{
    HSVNOperation operation{*this, "vacuum", {{"directory", directory.text()}}};
    operation.call(&HSVNChangeFunctions::client_vacuum, operation.cString(directory.text()), choices.removeUnversioned,
                   choices.removeIgnored, choices.fixTimestamps, choices.vacuumPristines, choices.includeExternals,
                   operation.ctx(), operation.pool());
}

void HSVNContext::upgrade(const HSVNTarget& root)
{
    HSVNOperation operation{*this, "upgrade", {{"root", root.text()}}};
    operation.call(&HSVNChangeFunctions::client_upgrade, operation.cString(root.text()), operation.ctx(),
                   operation.pool());
}
