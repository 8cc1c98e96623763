#include "HSVNContext.h"
#include "Internal/Operation.h"

void HSVNContext::relocate(const HSVNTarget& root, const std::string& from, const std::string& to,
                           const HSVNRelocateChoices& choices)
{
    HSVNOperation operation{*this, "relocate", {{"root", root.text()}, {"from", from}, {"to", to}}};
    operation.call(&HSVNChangeFunctions::client_relocate, operation.changed(root.text()), operation.cString(from),
                   operation.cString(to), !choices.processExternals, operation.ctx(), operation.pool());
}
