// Locks of repository items through their working-copy paths: HSVNNode (Locking).

#include "HSVNLock.h"
#include "HSVNLockOptions.h"
#include "HSVNNode.h"
#include "HSVNStatus.h"
#include "HSVNUnlockOptions.h"
#include "Internal/Lock.h"

void HSVNNode::lockNodes(const std::vector<HSVNPathRef>& nodePaths, const std::optional<std::string>& comment,
                         const HSVNLockOptionsRef& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    constexpr const char* name = "lockNodes:withComment:withOptions:withContext:";
    const std::vector<HSVNArgument> arguments{{"nodePaths", nodePaths}, {"options", options}, {"context", context}};
    if (nodePaths.empty()) {
        HSVNLogCall("HSVNNode", name, arguments);
        return;
    }
    HSVNOperation operation{context, "HSVNNode", name, arguments};
    auto choices = options->choices();
    choices.comment = comment;
    HSVNLockTargets(operation, operation.pathArray(nodePaths), choices);
}

void HSVNNode::unlockNodes(const std::vector<HSVNPathRef>& nodePaths, const HSVNUnlockOptionsRef& options,
                           const HSVNContextRef& context)
{
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    constexpr const char* name = "unlockNodes:withOptions:withContext:";
    const std::vector<HSVNArgument> arguments{{"nodePaths", nodePaths}, {"options", options}, {"context", context}};
    if (nodePaths.empty()) {
        HSVNLogCall("HSVNNode", name, arguments);
        return;
    }
    HSVNOperation operation{context, "HSVNNode", name, arguments};
    HSVNUnlockTargets(operation, operation.pathArray(nodePaths), options->choices());
}

HSVNLockRef HSVNNode::controllingLock() const
{
    if (!status()) {
        return lock();
    }
    switch (lockStatus()) {
    case HSVNLockStatusLockedElsewhere:
    case HSVNLockStatusStolen:
        return status()->repositoryLock();
    case HSVNLockStatusLockedHere:
    case HSVNLockStatusBroken:
    case HSVNLockStatusLockedLocally:
        return lock();
    case HSVNLockStatusNone:
        break;
    }
    return nullptr;
}
