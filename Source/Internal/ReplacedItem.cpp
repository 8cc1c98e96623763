#include "Internal/ReplacedItem.h"

#include "HSVNAddOptions.h"
#include "HSVNContext.h"
#include "HSVNCopyOptions.h"
#include "HSVNDebug.h"
#include "HSVNDeleteOptions.h"
#include "HSVNDirectory.h"
#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNRepositoryInfo.h"
#include "HSVNRevertOptions.h"
#include "HSVNRevision.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatus.h"
#include "HSVNStatusOptions.h"
#include "Internal/CleanUp.h"
#include "Internal/PathKind.h"
#include "Internal/ScopedValue.h"
#include "Internal/Subversion.h"

#include <fmt/format.h>
#include <utility>

namespace {

/// Does one step of a restoration, which goes on with the next one whatever becomes of it.
///
/// @return whether it succeeded
template <class Step>
bool attempt(const HSVNPathRef& path, Step step) noexcept
{
    try {
        step();
        return true;
    } catch (const std::exception& failure) {
        HSVNDebug::logAtLevel(HSVNDebugLevelNormal, "Could not restore '%@' in full: %@", path->string(),
                              std::string{failure.what()});
    } catch (...) { // NOLINT(bugprone-empty-catch): an exception of a delegate's own, which told all that it wants
    }
    return false;
}

void deleteWithForce(const HSVNPathRef& path, const HSVNContextRef& context)
{
    auto options = HSVNDeleteOptions::defaults();
    options->setForce(true);
    HSVNNode::deleteWorkingCopyNodesAtPaths({path}, options, context);
}

void addAlone(const HSVNPathRef& path, const HSVNContextRef& context)
{
    auto options = HSVNAddOptions::defaults();
    options->setRecursive(false);
    options->setMatchIgnorePatterns(false);
    HSVNNode::add(path, options, context);
}

void setProperties(const HSVNProperties& properties, const HSVNPathRef& path, const HSVNContextRef& context)
{
    for (const auto& [name, value] : HSVNNode::propertiesForNodeAtPath(path, HSVNRevisionSpec::UNSPECIFIED(), context))
    {
        if (!properties.value(name)) {
            HSVNNode::setProperty(name, std::nullopt, path, context);
        }
    }
    for (const auto& [name, value] : properties) {
        HSVNNode::setProperty(name, value, path, context);
    }
}

bool comesByAddition(HSVNSchedule schedule) { return schedule == HSVNScheduleAdd || schedule == HSVNScheduleReplace; }

bool comesByDeletion(HSVNSchedule schedule)
{
    return schedule == HSVNScheduleDelete || schedule == HSVNScheduleReplace;
}

} // namespace

void HSVNCheckReplacement(const HSVNPathRef& path, const HSVNPathRef& source, const HSVNContextRef& context)
{
    HSVNAssertParameter(HSVNIsLocal(source), "[source isKindOfClass:[HSVNLocalPath class]]");
    const auto ancestor = path->commonAncestorFor(source);
    if (ancestor && (ancestor->isEqualToPath(path) || ancestor->isEqualToPath(source))) {
        throw HSVNInvalidArgumentException(
            fmt::format("Cannot replace '{}' with '{}': one contains the other", path->string(), source->string()));
    }
    if (!HSVNFileManager::itemExists(source->string()) && !HSVNNode::isVersionedFileAtPath(source, context)) {
        throw HSVNNoSuchEntryException(
            fmt::format("Cannot replace '{}': there is nothing at '{}'", path->string(), source->string()));
    }
}

HSVNReplacedItem::HSVNReplacedItem(HSVNPathRef path, HSVNContextRef context)
    : _path{std::move(path)}, _context{std::move(context)}
{
    if (!HSVNIsLocal(_path)) {
        noteRevision();
        return;
    }
    _isVersioned = HSVNNode::isVersionedFileAtPath(_path, _context);
    if (_isVersioned) {
        noteChanges();
    }
    _wasLocked = lockedFolder() != nullptr;
    if (HSVNFileManager::itemExists(_path->string())) {
        _original.emplace(_path->string(), HSVNDirectory::adminAreaInWorkingCopyAtPath(_path)->lastComponent());
    }
}

bool HSVNReplacedItem::needsDeletion() const
{
    return !HSVNIsLocal(_path) || _isVersioned || HSVNFileManager::itemExists(_path->string());
}

void HSVNReplacedItem::discard() noexcept
{
    if (_original) {
        _original->discard();
    }
}

HSVNPathRef HSVNReplacedItem::lockedFolder() const
{
    HSVNPathRef locked;
    HSVNPathRef folder = HSVNFileManager::isFolder(_path->string()) ? _path : _path->parent();
    for (; folder && HSVNDirectory::isWorkingCopyAtPath(folder); folder = folder->parent()) {
        const auto node = HSVNNode::nodeWithStatusAtPath(folder, HSVNRevision::UNSPECIFIED(), false, _context);
        if (node && node->status()->locked()) {
            locked = folder;
        }
    }
    return locked;
}

void HSVNReplacedItem::noteRevision()
{
    HSVNRepositoryInfoRef info;
    HSVNDirectory::directoryAtPath(_path->parent(), HSVNRevisionSpec::HEAD(), &info, _context);
    _revision = info ? info->revision() : HSVNInvalidRevision;
}

void HSVNReplacedItem::noteChanges()
{
    if (!HSVNFileManager::isFolder(_path->string())) {
        if (const auto node = HSVNNode::nodeWithStatusAtPath(_path, HSVNRevision::UNSPECIFIED(), false, _context)) {
            noteChange(*node);
        }
        return;
    }
    auto options = HSVNStatusOptions::defaults();
    options->setProcessExternals(false);
    HSVNNodeRef folder;
    const auto nodes = HSVNDirectory::statusForNodesInDirectoryAtPath(_path, options, &folder, nullptr, _context);
    if (folder) {
        noteChange(*folder);
    }
    for (const auto& node : nodes) {
        noteChange(*node);
    }
}

void HSVNReplacedItem::noteChange(const HSVNNode& node)
{
    constexpr HSVNStatusKinds unchanged = HSVNStatusKindNone | HSVNStatusKindNormal;
    const auto& status = *node.status();
    const bool isVersioned = (status.textStatus() & (HSVNStatusKindUnversioned | HSVNStatusKindIgnored)) == 0;
    const bool hasChangedProperties = (status.propertyStatus() & ~unchanged) != 0;
    if (!isVersioned || (status.schedule() == HSVNScheduleNormal && !hasChangedProperties)) {
        return;
    }
    Change change{node.path(), status.schedule(), std::nullopt};
    if (status.schedule() != HSVNScheduleDelete) {
        change.properties = HSVNNode::propertiesForNodeAtPath(node.path(), HSVNRevisionSpec::UNSPECIFIED(), _context);
    }
    _changes.push_back(std::move(change));
}

std::optional<std::string> HSVNReplacedItem::restore(HSVNReplacementFailure failure) noexcept
{
    const HSVNScopedValue uncancelled{_context->ctx()->cancel_func, nullptr};
    if (!HSVNIsLocal(_path)) {
        attempt(_path, [this] { restoreInRepository(); });
        return std::nullopt;
    }
    const bool isBack = failure != HSVNReplacementFailure::Arrived && restoreOnDisk(failure);
    return isBack || !_original ? std::nullopt : std::optional{_original->place()};
}

HSVNPathRef HSVNReplacedItem::folderToCleanUp() const noexcept
{
    try {
        if (auto folder = lockedFolder()) {
            return folder;
        }
    } catch (...) { // NOLINT(bugprone-empty-catch): what cannot be read is to be cleaned up all the more
    }
    return _path->parent();
}

void HSVNReplacedItem::takeBackChanges() const
{
    if (_isVersioned || HSVNNode::isVersionedFileAtPath(_path, _context)) {
        HSVNNode::revertNodes({_path}, HSVNRevertOptions::defaults(), _context);
    }
    for (const auto& change : _changes) {
        if (comesByDeletion(change.schedule)) {
            deleteWithForce(change.path, _context);
        }
    }
    // Subversion keeps its lock for as long as there is work left over, which a clean-up finishes; done after the item
    // is back, that would delete or overwrite it.
    if (const auto folder = lockedFolder()) {
        throw HSVNWorkingCopyLockedException(fmt::format("'{}' is locked", folder->string()));
    }
}

bool HSVNReplacedItem::clearTheWay(HSVNReplacementFailure failure) noexcept
{
    // A lock that this operation cannot have left is another program's.
    const bool mayBreakLocks = !_wasLocked && failure != HSVNReplacementFailure::Refused;
    return attempt(_path, [&] {
        if (mayBreakLocks) {
            // First of all: a database that could not be written may be left in a transaction, in which all that
            // follows seems to be done and is lost in the end. A clean-up opens it anew.
            HSVNCleanUpAlone(folderToCleanUp(), _context);
        }
        takeBackChanges();
    });
}

bool HSVNReplacedItem::restoreOnDisk(HSVNReplacementFailure failure) noexcept
{
    if (!clearTheWay(failure) || (_original && !attempt(_path, [this] { _original->putBack(); }))) {
        return false;
    }
    for (const auto& change : _changes) {
        if (comesByAddition(change.schedule)) {
            attempt(change.path, [&] { addAlone(change.path, _context); });
        }
        if (change.properties) {
            attempt(change.path, [&] { setProperties(*change.properties, change.path, _context); });
        }
    }
    return true;
}

void HSVNReplacedItem::restoreInRepository() const
{
    auto options = HSVNCopyOptions::defaults();
    options->setRevision(HSVNRevision::revisionWithNumber(_revision));
    HSVNNode::copyNodeAtPath(_path, _path, options, _context);
}
