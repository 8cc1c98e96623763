#include "HSVNContext.h"
#include "Internal/DepthTranslation.h"
#include "Internal/Operation.h"

namespace {

using ConflictWalk = HSVNItemsCall<const std::string&>;

svn_error_t* receiveConflict(void* baton, const char* path)
{
    return static_cast<ConflictWalk*>(baton)->handOver([path] { return std::string{path}; });
}

} // namespace

void HSVNContext::conflicts(const HSVNTarget& target, const HSVNConflictsChoices& choices,
                            const HSVNReceiver<const std::string&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "conflicts", {{"target", target.text()}}};
    ConflictWalk walk{operation, receiver};
    operation.call(&HSVNConflictFunctions::conflict_walk, operation.cString(target.text()),
                   HSVNDepthForSubversion(choices.depth), receiveConflict, &walk, operation.ctx(), operation.pool());
}

std::vector<std::string> HSVNContext::conflicts(const HSVNTarget& target, const HSVNConflictsChoices& choices)
{
    return HSVNCollected<std::string>([&](const auto& receiver) { conflicts(target, choices, receiver); });
}
