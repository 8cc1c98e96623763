#include "HSVNContext.h"
#include "Internal/DepthTranslation.h"
#include "Internal/Operation.h"

namespace {

struct ConflictWalk
{
    HSVNOperation& operation;
    const HSVNReceiver<const std::string&>& receiver;
};

svn_error_t* receiveConflict(void* baton, const char* path)
{
    const auto& walk = *static_cast<ConflictWalk*>(baton);
    return HSVNGuardCallback(*walk.operation.context(),
                             [&] { return HSVNHandOver(walk.operation, walk.receiver, std::string{path}); });
}

} // namespace

void HSVNContext::conflicts(const HSVNTarget& target, const HSVNConflictsChoices& choices,
                            const HSVNReceiver<const std::string&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "conflicts", {{"target", target.text()}}};
    const auto find = operation.extension(&HSVNBundleExtensions::conflict_walk);
    ConflictWalk walk{operation, receiver};
    operation.check(find(operation.cString(target.text()), HSVNDepthForSubversion(choices.depth), receiveConflict,
                         &walk, operation.ctx(), operation.pool()));
}

std::vector<std::string> HSVNContext::conflicts(const HSVNTarget& target, const HSVNConflictsChoices& choices)
{
    std::vector<std::string> paths;
    conflicts(target, choices, [&](const std::string& path) { paths.push_back(path); });
    return paths;
}
