#include "HSVNNode.h"
#include "HSVNPlatformException.h"
#include "HSVNRevision.h"
#include "HSVNUpdateOptions.h"
#include "Internal/Add.h"
#include "Internal/Commit.h"
#include "Internal/Operation.h"
#include "Internal/OperationNotifications.h"
#include "Internal/Resolve.h"
#include "Internal/Revert.h"
#include "Internal/Update.h"

void HSVNNode::add(const HSVNPathRef& path, const HSVNContextRef& context)
{
    add(path, HSVNAddOptions::defaults(), context);
}

void HSVNNode::add(const HSVNPathRef& path, const std::shared_ptr<const HSVNAddOptions>& options,
                   const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNNode",
                            "add:withOptions:withContext:",
                            {{"path", path}, {"options", options}, {"context", context}}};
    HSVNAdd(operation, operation.pathArray(*path), options->choices());
}

void HSVNNode::revertNodes(const std::vector<HSVNPathRef>& nodePaths,
                           const std::shared_ptr<const HSVNRevertOptions>& options, const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNNode",
                            "revertNodes:withOptions:withContext:",
                            {{"nodePaths", nodePaths}, {"options", options}, {"context", context}}};
    HSVNRevert(operation, operation.pathArray(nodePaths), options->choices());
}

void HSVNNode::resolveNodeAtPath(const HSVNPathRef& path, const std::shared_ptr<const HSVNResolveOptions>& options,
                                 const HSVNContextRef& context)
{
    HSVNOperation operation{context,
                            "HSVNNode",
                            "resolveNodeAtPath:withOptions:withContext:",
                            {{"path", path}, {"options", options}, {"context", context}}};
    HSVNResolve(operation, operation.pathArray(*path), options->choices());
}

std::vector<HSVNRevisionNumber> HSVNNode::updateNodes(const std::vector<HSVNPathRef>& nodePaths,
                                                      const HSVNRevisionRef& toRevision,
                                                      const std::shared_ptr<const HSVNUpdateOptions>& options,
                                                      const HSVNContextRef& context)
{
    HSVNOperation operation{
        context,
        "HSVNNode",
        "updateNodes:toRevision:withOptions:withContext:",
        {{"nodePaths", nodePaths}, {"revision", toRevision}, {"options", options}, {"context", context}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionUpdateStarted, HSVNNotifyActionUpdateSucceeded, HSVNNotifyActionUpdateFailed}, nodePaths};
    return notifications.run(*context, [&] {
        return HSVNUpdate(operation, operation.pathArray(nodePaths), *toRevision, options->choices());
    });
}

HSVNRevisionNumber HSVNNode::commitChangesToNodes(const std::vector<HSVNPathRef>& nodePaths,
                                                  const std::shared_ptr<const HSVNCommitOptions>& options,
                                                  const HSVNContextRef& context)
{
    HSVNAssertParameter(options != nullptr, "options != nil");
    constexpr const char* name = "commitChangesToNodes:withOptions:withContext:";
    // A nil context is not tested: it fails as making its bundle current does.
    const auto* const client = context.get();
    const std::vector<HSVNArgument> arguments{{"nodePaths", nodePaths}, {"options", options}, {"context", client}};
    if (nodePaths.empty()) {
        HSVNLogCall("HSVNNode", name, arguments);
        return HSVNInvalidRevision;
    }
    HSVNRevisionChange change{context, "HSVNNode", name, arguments};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionCommitStarted, HSVNNotifyActionCommitSucceeded, HSVNNotifyActionCommitFailed}, nodePaths};
    return notifications.run(*context, [&] {
        const auto result = HSVNCommit(change, change.operation().pathArray(nodePaths), options->choices());
        notifications.succeeded().setRevision(result.revision);
        return result.revision;
    });
}
