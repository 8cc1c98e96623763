// Deletion in repositories and working copies: HSVNNode (Services).

#include "HSVNException.h"
#include "HSVNNode.h"
#include "HSVNNotification.h"
#include "HSVNRevisionSpec.h"
#include "Internal/CanonicalPath.h"
#include "Internal/FileManager.h"
#include "Internal/PathKind.h"
#include "Internal/Remove.h"
#include "Internal/ReplacedItem.h"
#include "Internal/ReservedName.h"

#include <fmt/format.h>

namespace {

void checkDeletion(const HSVNDeleteOptionsRef& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
}

/// For what the file manager is to do without an operation's frame.
void requireUnreserved(const HSVNPath& path, const HSVNContextRef& context)
{
    const HSVNBundleScope bundle{context->bundle()};
    HSVNRequireUnreserved(path.string());
}

void removeFromDisk(const std::string& path)
{
    if (const auto error = HSVNFileManager::removeItem(path)) {
        HSVNFileManager::fail(fmt::format("Cannot delete '{}'. The file may be in use", path), error);
    }
}

void removeUnversionedItem(const std::string& path, const HSVNDeleteOptions& options, HSVNContext& context)
{
    if (!options.force()) {
        throw HSVNItemModifiedException(
            fmt::format("Cannot delete '{}' because it is unversioned and force was not specified", path));
    }
    auto notification = HSVNNotification::notificationWithAction(HSVNNotifyActionDelete);
    notification->setPath(path);
    notification->setNodeKind(HSVNFileManager::isFolder(path) ? HSVNNodeKindDirectory : HSVNNodeKindFile);
    removeFromDisk(path);
    context.notify(notification);
}

void deleteWorkingCopyNode(HSVNRevisionChange& change, const HSVNPath& path, const HSVNDeleteOptions& options)
{
    auto& operation = change.operation();
    const HSVNPool pool{operation.pool()};
    try {
        HSVNRemove(change, operation.pathArray(path), options.choices(), pool);
    } catch (const HSVNNotWorkingCopyException&) {
        removeUnversionedItem(path.string(), options, *operation.context());
    }
}

} // namespace

void HSVNNode::deleteNodes(const std::vector<HSVNPathRef>& nodePaths, const HSVNDeleteOptionsRef& options,
                           const HSVNContextRef& context)
{
    checkDeletion(options, context);
    HSVNLogCall("HSVNNode", "deleteNodes:withOptions:withContext:",
                {{"nodePaths", nodePaths}, {"options", options}, {"context", context}});
    if (!nodePaths.empty() && HSVNIsURL(nodePaths.front())) {
        deleteRepositoryNodesAtURLs(nodePaths, options, context);
    } else {
        deleteWorkingCopyNodesAtPaths(nodePaths, options, context);
    }
}

void HSVNNode::deleteRepositoryNodesAtURLs(const std::vector<HSVNPathRef>& nodePaths,
                                           const HSVNDeleteOptionsRef& options, const HSVNContextRef& context)
{
    checkDeletion(options, context);
    if (nodePaths.empty()) {
        return;
    }
    HSVNRevisionChange change{context,
                              "HSVNNode",
                              "deleteRepositoryNodesAtURLs:withOptions:withContext:",
                              {{"nodePaths", nodePaths}, {"options", options}, {"context", context}}};
    auto& operation = change.operation();
    HSVNRemove(change, operation.pathArray(nodePaths), options->choices(), operation.pool());
}

void HSVNNode::deleteWorkingCopyNodesAtPaths(const std::vector<HSVNPathRef>& nodePaths,
                                             const HSVNDeleteOptionsRef& options, const HSVNContextRef& context)
{
    checkDeletion(options, context);
    if (nodePaths.empty()) {
        return;
    }
    HSVNRevisionChange change{context,
                              "HSVNNode",
                              "deleteWorkingCopyNodesAtPaths:withOptions:withContext:",
                              {{"nodePaths", nodePaths}, {"options", options}, {"context", context}}};
    change.operation().pathArray(nodePaths); // refuses reserved names before anything is deleted
    for (const auto& path : nodePaths) {
        HSVNRequireLocalPath(path); // Subversion would delete it in the repository at once
    }
    for (const auto& path : nodePaths) {
        deleteWorkingCopyNode(change, *path, *options);
    }
}

bool HSVNNode::isVersionedFileAtPath(const HSVNPathRef& path, const HSVNContextRef& context)
{
    try {
        return kindOfNodeAtPath(path, HSVNRevisionSpec::UNSPECIFIED(), context) != HSVNNodeKindNone;
    } catch (const HSVNNotWorkingCopyException&) {
        return false;
    } catch (const HSVNUnversionedResourceException&) {
        return false;
    } catch (const HSVNNoSuchEntryException&) {
        return false;
    }
}

void HSVNNode::deleteNodeAtPath(const HSVNPathRef& path, const HSVNPathRef& source, const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(source != nullptr, "source != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNLogCall("HSVNNode", "deleteNodeAtPath:forOverwriteWithFileAtPath:withContext:",
                {{"path", path}, {"source", source}, {"context", context}});
    HSVNCheckReplacement(path, source, context);
    requireUnreserved(*path, context);
    if (HSVNIsLocal(path) && !isVersionedFileAtPath(path, context)) {
        removeFromDisk(path->string());
        return;
    }
    auto options = HSVNDeleteOptions::defaults();
    options->setForce(true);
    deleteNodes({path}, options, context);
    // A file made where one was deleted before is not Subversion's to remove. Folders of older lines stay until their
    // deletion is committed.
    if (HSVNIsLocal(path) && HSVNFileManager::itemExists(path->string()) && !HSVNFileManager::isFolder(path->string()))
    {
        removeFromDisk(path->string());
    }
}
