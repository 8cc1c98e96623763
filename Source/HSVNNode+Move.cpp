// Moves and copies of one item: HSVNNode (Services).

#include "HSVNDeleteOptions.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNNode.h"
#include "HSVNRevision.h"
#include "Internal/CleanUp.h"
#include "Internal/Copy.h"
#include "Internal/FileManager.h"
#include "Internal/Move.h"
#include "Internal/PathKind.h"
#include "Internal/ReplacedItem.h"

#include <fmt/format.h>

namespace {

/// Copies an item with the file manager.
///
/// @param verb  "move" or "copy", for the message
void copyOnDisk(const HSVNPath& source, const HSVNPath& destination, const char* verb)
{
    const auto error = HSVNFileManager::copyItem(source.string(), destination.string());
    if (!error) {
        return;
    }
    const auto reason = fmt::format("Failed to {} item at '{}' to unversioned directory at '{}'", verb, source.string(),
                                    destination.string());
    if (error == std::errc::file_exists) {
        HSVNEntryExistsException::exceptionWithReason(reason, error.value())->raise();
    }
    HSVNFileManager::fail(reason, error);
}

void cleanUpParentOf(const HSVNPathRef& path, const HSVNContextRef& context)
{
    try {
        HSVNCleanUpAlone(path->parent(), context);
    } catch (const HSVNException&) { // NOLINT(bugprone-empty-catch): the item is where it should be
    }
}

/// Moves an item to a folder that is not under version control. The source goes once the copy is complete: a versioned
/// one is scheduled for deletion. When it does not go, both stay, for what is left of it may not be all of it.
void moveOnDisk(const HSVNPathRef& source, const HSVNPathRef& destination, const HSVNContextRef& context)
{
    copyOnDisk(*source, *destination, "move");
    cleanUpParentOf(source, context);
    auto options = HSVNDeleteOptions::defaults();
    options->setForce(true);
    try {
        HSVNNode::deleteWorkingCopyNodesAtPaths({source}, options, context);
    } catch (const HSVNException& failure) {
        const auto reason =
            fmt::format("Copied item at '{}' to unversioned directory at '{}', but cannot delete it: {}",
                        source->string(), destination->string(), failure.reason());
        HSVNException::exceptionWithReason(reason, failure.status())->raise();
    }
}

template <class... Classes>
bool isAnyOf(const HSVNException& exception)
{
    return ((dynamic_cast<const Classes*>(&exception) != nullptr) || ...);
}

/// Asks Subversion for the move.
///
/// @return nil when the destination lies where Subversion cannot put it, and the file manager is to move the item
std::optional<HSVNRevisionNumber> moveWithSubversion(const HSVNPathRef& source, const HSVNPathRef& destination,
                                                     const HSVNMoveOptionsRef& options, const HSVNContextRef& context)
{
    HSVNRevisionChange change{
        context,
        "HSVNNode",
        "moveNodeAtPath:toPath:withOptions:withContext:",
        {{"sourcePath", source}, {"destPath", destination}, {"options", options}, {"context", context}}};
    HSVNRevisionNumber revision = HSVNInvalidRevision;
    try {
        revision = HSVNMove(change, {source->string()}, destination->string(), {}, options->force()).revision;
    } catch (const HSVNException& exception) {
        const bool isMisplaced = isAnyOf<HSVNNoSuchEntryException, HSVNNotWorkingCopyException,
                                         HSVNWorkingCopyNotLockedException, HSVNInvalidScheduleException>(exception);
        if (!isMisplaced || !HSVNIsLocal(source) || !HSVNIsLocal(destination)) {
            throw;
        }
        return std::nullopt;
    }
    if (revision == HSVNInvalidRevision && !HSVNIsLocal(source)) {
        throw HSVNOperationCancelledException("Move was canceled");
    }
    return revision;
}

/// Asks Subversion for the copy; answers as `moveWithSubversion` does.
std::optional<HSVNRevisionNumber> copyWithSubversion(const HSVNPathRef& source, const HSVNPathRef& destination,
                                                     const HSVNCopyOptionsRef& options, const HSVNContextRef& context)
{
    HSVNRevisionChange change{
        context,
        "HSVNNode",
        "copyNodeAtPath:toPath:withOptions:withContext:",
        {{"sourcePath", source}, {"destPath", destination}, {"options", options}, {"context", context}}};
    const HSVNTargetInRevision item{HSVNTarget::verbatim(source->string()), options->revision()};
    try {
        return HSVNCopy(change, {item}, destination->string(), {}).revision;
    } catch (const HSVNException& exception) {
        const bool isMisplaced =
            isAnyOf<HSVNNoSuchEntryException, HSVNNotWorkingCopyException, HSVNInvalidScheduleException>(exception);
        if (!isMisplaced || !HSVNIsLocal(source) || !HSVNIsLocal(destination)) {
            throw;
        }
        return std::nullopt;
    }
}

} // namespace

HSVNRevisionNumber HSVNNode::moveNodeAtPath(const HSVNPathRef& sourcePath, const HSVNPathRef& destPath,
                                            const HSVNMoveOptionsRef& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(sourcePath != nullptr, "sourcePath != nil");
    HSVNAssertParameter(destPath != nullptr, "destPath != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    if (const auto revision = moveWithSubversion(sourcePath, destPath, options, context)) {
        return *revision;
    }
    moveOnDisk(sourcePath, destPath, context);
    return HSVNInvalidRevision;
}

HSVNRevisionNumber HSVNNode::copyNodeAtPath(const HSVNPathRef& sourcePath, const HSVNPathRef& destPath,
                                            const HSVNCopyOptionsRef& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(sourcePath != nullptr, "sourcePath != nil");
    HSVNAssertParameter(destPath != nullptr, "destPath != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    if (const auto revision = copyWithSubversion(sourcePath, destPath, options, context)) {
        return *revision;
    }
    copyOnDisk(*sourcePath, *destPath, "copy");
    if (HSVNFileManager::isFolder(destPath->string())) {
        HSVNDirectory::purgeAdminDirectoriesInPath(destPath);
    }
    return HSVNInvalidRevision;
}
