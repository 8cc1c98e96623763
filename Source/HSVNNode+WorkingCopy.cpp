#include "HSVNAddOptions.h"
#include "HSVNCommitOptions.h"
#include "HSVNNode.h"
#include "HSVNPlatformException.h"
#include "HSVNResolveOptions.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNUpdateOptions.h"
#include "Internal/DepthTranslation.h"
#include "Internal/Operation.h"
#include "Internal/OperationNotifications.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Update.h"

namespace {

svn_error_t* callCommit(HSVNOperation& operation, svn_commit_info_t** info, const apr_array_header_t* targets,
                        const HSVNCommitOptions& options)
{
    const svn_boolean_t keepLocks = !options.releaseLocks();
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return operation->client_commit4(info, targets, HSVNDepthForSubversion(options.depth()), keepLocks,
                                         FALSE /* keep changelists */, nullptr /* changelists */,
                                         nullptr /* revision properties */, operation.ctx(), operation.pool());
    }
    return operation->client_commit3(info, targets, HSVNRecurseForDepth(options.depth(), HSVNDepthEmpty), keepLocks,
                                     operation.ctx(), operation.pool());
}

} // namespace

void HSVNNode::add(const HSVNPathRef& path, const HSVNContextRef& context)
{
    add(path, HSVNAddOptions::defaults(), context);
}

void HSVNNode::add(const HSVNPathRef& path, const std::shared_ptr<const HSVNAddOptions>& options,
                   const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "add:withOptions:withContext:",
                            {{"path", path}, {"options", options}, {"context", context}}};
    operation.check(operation->client_add3(operation.changed(path->string()), options->recursive(), options->force(),
                                           !options->matchIgnorePatterns(), operation.ctx(), operation.pool()));
}

void HSVNNode::revertNodes(const std::vector<HSVNPathRef>& nodePaths,
                           const std::shared_ptr<const HSVNRevertOptions>& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "revertNodes:withOptions:withContext:",
                            {{"nodePaths", nodePaths}, {"options", options}, {"context", context}}};
    operation.check(operation->client_revert(operation.pathArray(nodePaths), options->recursive(), operation.ctx(),
                                             operation.pool()));
}

void HSVNNode::resolveNodeAtPath(const HSVNPathRef& path, const std::shared_ptr<const HSVNResolveOptions>& options,
                                 const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNNode",
                            "resolveNodeAtPath:withOptions:withContext:",
                            {{"path", path}, {"options", options}, {"context", context}}};
    operation.check(operation->client_resolved(operation.changed(path->string()), options->recursive(), operation.ctx(),
                                               operation.pool()));
}

std::vector<HSVNRevisionNumber> HSVNNode::updateNodes(const std::vector<HSVNPathRef>& nodePaths,
                                                      const HSVNRevisionRef& toRevision,
                                                      const std::shared_ptr<const HSVNUpdateOptions>& options,
                                                      const HSVNContextRef& context)
{
    HSVNAssertParameter(toRevision != nullptr, "revision != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
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
    if (nodePaths.empty()) {
        return HSVNInvalidRevision;
    }
    HSVNOperation operation{context,
                            "HSVNNode",
                            "commitChangesToNodes:withOptions:withContext:",
                            {{"nodePaths", nodePaths}, {"options", options}, {"context", context}}};
    HSVNOperationNotifications notifications{
        {HSVNNotifyActionCommitStarted, HSVNNotifyActionCommitSucceeded, HSVNNotifyActionCommitFailed}, nodePaths};
    return notifications.run(*context, [&] {
        svn_commit_info_t* info = nullptr;
        svn_error_t* const error = callCommit(operation, &info, operation.pathArray(nodePaths), *options);
        operation.check(error, info);
        // When nothing was committed, older lines leave the record out and newer ones put -1 into it.
        const auto revision = info ? HSVNRevisionNumberFromSubversion(info->revision) : HSVNInvalidRevision;
        notifications.succeeded().setRevision(revision);
        return revision;
    });
}
