#include "Output/NotificationPrinter.h"

#include "CommandLine/Targets.h"
#include "Output/Display.h"
#include "Output/ErrorOutput.h"
#include "Output/HunkLine.h"
#include "Output/Output.h"
#include "Output/Progress.h"
#include "Output/Words.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <utility>

namespace {

constexpr const char* failedExternals = "Failure occurred processing one or more externals definitions";

std::string shownURL(const HSVNNotification& notification)
{
    return notification.URL() ? notification.URL()->string() : "";
}

/// Whether it is about a lock that no working copy holds.
bool isRemoteLock(const HSVNNotification& notification)
{
    return notification.URL() &&
           (notification.action() == HSVNNotifyActionLocked || notification.action() == HSVNNotifyActionUnlocked);
}

/// The item as it is shown: without the prefix that the notification names, else as seen from the current folder.
std::string shownPath(const HSVNNotification& notification)
{
    if (isRemoteLock(notification)) {
        return shownURL(notification);
    }
    const std::string path = notification.path().value_or("");
    if (const auto& prefix = notification.pathPrefix()) {
        return Display::inLine(localStyle(std::string{pathBelow(path, *prefix).value_or(path)}));
    }
    return Display::inLine(relativeToCurrentFolder(path));
}

bool isBinary(const HSVNNotification& notification)
{
    return notification.mimeType() && isBinaryMIMEType(*notification.mimeType());
}

bool isFailedLock(const HSVNNotification& notification)
{
    return notification.error() && (notification.action() == HSVNNotifyActionFailedLock ||
                                    notification.action() == HSVNNotifyActionFailedUnlock);
}

/// The column of an item's text or properties after an update or merge.
char letterOf(std::int32_t state)
{
    switch (state) {
    case HSVNNotifyStateConflicted:
        return 'C';
    case HSVNNotifyStateMerged:
        return 'G';
    case HSVNNotifyStateChanged:
        return 'U';
    default:
        return ' ';
    }
}

/// "--- Merging r5 through r6 into 'path':"
std::string mergeHeader(const HSVNNotification& notification, const std::string& forward, const std::string& backward)
{
    const auto start = notification.mergeStart()->number();
    const auto end = notification.mergeEnd()->number();
    const bool isForward = start <= end;
    const auto first = isForward ? std::min(start + 1, end) : start;
    const auto last = isForward ? end : end + 1;
    return fmt::format("--- {} r{}{} into '{}':\n", isForward ? forward : backward, first,
                       first == last ? "" : fmt::format(" through r{}", last), shownPath(notification));
}

std::string mergeHeader(const HSVNNotification& notification)
{
    const bool isForeign = notification.action() == HSVNNotifyActionForeignMergeBegin;
    if (!notification.mergeStart()) {
        return fmt::format("--- Merging differences between {}repository URLs into '{}':\n",
                           isForeign ? "foreign " : "", shownPath(notification));
    }
    const std::string source = isForeign ? " (from foreign repository)" : "";
    return mergeHeader(notification, "Merging" + source, "Reverse-merging" + source);
}

std::string recordingHeader(const HSVNNotification& notification)
{
    if (!notification.mergeStart()) {
        return fmt::format("--- Recording mergeinfo for merge between repository URLs into '{}':\n",
                           shownPath(notification));
    }
    return mergeHeader(notification, "Recording mergeinfo for merge of", "Recording mergeinfo for reverse merge of");
}

std::string externalRemoval(const HSVNNotification& notification)
{
    const auto error = std::dynamic_pointer_cast<const HSVNException>(notification.error());
    // That local changes were left is a notification of its own, unless the reason names what was changed.
    const bool tellsReason =
        error && (error->status() != LeftLocalModifications || error->reason().find('/') != std::string::npos);
    return fmt::format("Removed external '{}'{}\n", shownPath(notification), tellsReason ? ": " + error->reason() : "");
}

/// What is printed for an action: {0} is the item, {1} the property, {2} the revision, {3} the changelist, {4} the URL.
struct Line // NOLINT(clang-analyzer-optin.performance.Padding): the order in which the table below reads well
{
    const char* format;
    std::int32_t action;
    bool isChange = false; ///< counts as something that an update brought
};

constexpr Line actionLines[] = {
    {"D         {0}\n", HSVNNotifyActionDelete, true},
    {"Restored '{0}'\n", HSVNNotifyActionRestore},
    {"Reverted '{0}'\n", HSVNNotifyActionRevert},
    {"Failed to revert '{0}' -- try updating instead.\n", HSVNNotifyActionFailedRevert},
    {"D    {0}\n", HSVNNotifyActionUpdateDelete, true},
    {"R    {0}\n", HSVNNotifyActionUpdateReplace, true},
    {"Status against revision: {2:6}\n", HSVNNotifyActionStatusCompleted},
    {"\nPerforming status on external item at '{0}':\n", HSVNNotifyActionStatusExternal},
    {"'{0}' unlocked.\n", HSVNNotifyActionUnlocked},
    {"A [{3}] {0}\n", HSVNNotifyActionChangeListSet},
    {"D [{3}] {0}\n", HSVNNotifyActionChangeListClear},
    {"D [{3}] {0}\n", HSVNNotifyActionChangeListMoved},
    {"property '{1}' set on '{0}'\n", HSVNNotifyActionPropertyAdded},
    {"property '{1}' set on '{0}'\n", HSVNNotifyActionPropertyModified},
    {"property '{1}' deleted from '{0}'.\n", HSVNNotifyActionPropertyDeleted},
    {"Attempting to delete nonexistent property '{1}' on '{0}'\n", HSVNNotifyActionPropertyDeletedNonExistent},
    {"property '{1}' set on repository revision {2}\n", HSVNNotifyActionRevisionPropertySet},
    {"property '{1}' deleted from repository revision {2}\n", HSVNNotifyActionRevisionPropertyDeleted},
    {"   A {0}\n", HSVNNotifyActionUpdateShadowedAdd, true},
    {"   U {0}\n", HSVNNotifyActionUpdateShadowedUpdate, true},
    {"   D {0}\n", HSVNNotifyActionUpdateShadowedDelete, true},
    {"--- Eliding mergeinfo from '{0}':\n", HSVNNotifyActionMergeElideInfo},
    {"Upgraded '{0}'\n", HSVNNotifyActionUpgradedPath},
    {"Redirecting to URL '{4}':\n", HSVNNotifyActionURLRedirect},
    {"'{0}' is not under version control\n", HSVNNotifyActionPathNonexistent},
    {"D    {0}\n", HSVNNotifyActionExclude, true},
    {"B    {0}\n", HSVNNotifyActionUpdateBrokenLock},
    {"Left local modifications as '{0}'\n", HSVNNotifyActionLeftLocalModifications},
    {"--- Copying from foreign repository URL '{4}':\n", HSVNNotifyActionForeignCopyBegin},
    {"Breaking move with source path '{0}'\n", HSVNNotifyActionMoveBroken},
    {"Performing cleanup on external item at '{0}'.\n", HSVNNotifyActionCleanupExternal},
    {"\nPerforming info on external item at '{0}':\n", HSVNNotifyActionInfoExternal},
    {"Searching tree conflict details for '{0}' in repository:\n", HSVNNotifyActionBeginSearchTreeConflictDetails},
    {"Checking r{2}...", HSVNNotifyActionTreeConflictDetailsProgress},
    {" done\n", HSVNNotifyActionEndSearchTreeConflictDetails},
};

/// How the end of an operation is told.
struct CompletionWords
{
    const char* verb;
    const char* noun;
    const char* capitalized;
};

CompletionWords completionWords(NotifiedOperation operation)
{
    switch (operation) {
    case NotifiedOperation::Export:
        return {"Exported", "export", "Export"};
    case NotifiedOperation::CheckOut:
        return {"Checked out", "checkout", "Checkout"};
    default:
        return {"Updated", "update", "Update"};
    }
}

/// Why an item was skipped; null for an action that skips none.
const char* skipFormat(const HSVNNotification& notification)
{
    switch (notification.action()) {
    case HSVNNotifyActionSkip:
        break;
    case HSVNNotifyActionUpdateSkipObstruction:
        return "Skipped '{}' -- An obstructing working copy was found\n";
    case HSVNNotifyActionUpdateSkipWorkingOnly:
        return "Skipped '{}' -- Has no versioned parent\n";
    case HSVNNotifyActionUpdateSkipAccessDenied:
        return "Skipped '{}' -- Access denied\n";
    case HSVNNotifyActionSkipConflicted:
        return "Skipped '{}' -- Node remains in conflict\n";
    default:
        return nullptr;
    }
    switch (notification.contentState()) {
    case HSVNNotifyStateMissing:
        return "Skipped missing target: '{}'\n";
    case HSVNNotifyStateSourceMissing:
        return "Skipped target: '{}' -- copy-source is missing\n";
    case HSVNNotifyStateObstructed:
        return "Skipped '{}' -- obstructed by unversioned node\n";
    default:
        return "Skipped '{}'\n";
    }
}

/// Whether it tells of an item, not of the work as a whole nor once more of the same item.
bool isItem(const HSVNNotification& notification)
{
    constexpr std::array others{
        std::int32_t{HSVNNotifyActionCommitPostfixTXDelta},    std::int32_t{HSVNNotifyActionUpdateCompleted},
        std::int32_t{HSVNNotifyActionUpdateOfPathStarted},     std::int32_t{HSVNNotifyActionCommitFinalizing},
        std::int32_t{HSVNNotifyActionPatchAppliedHunk},        std::int32_t{HSVNNotifyActionPatchRejectedHunk},
        std::int32_t{HSVNNotifyActionPatchHunkAlreadyApplied}, std::int32_t{HSVNNotifyActionConflictResolverStarting},
        std::int32_t{HSVNNotifyActionConflictResolverDone}};
    return std::find(others.begin(), others.end(), notification.action()) == others.end();
}

} // namespace

void NotificationPrinter::print(const HSVNNotification& notification)
{
    if (notification.action() == HSVNNotifyActionFailedExternal) {
        _hasFailedExternal = true;
    }
    _hasWarned = _hasWarned || isFailedLock(notification);
    try {
        if (!_isQuiet) {
            if (notification.action() == HSVNNotifyActionTreeConflictDetailsProgress) {
                Output::writeControl("\r"); // in the place of the one before
            }
            Display::writeLine(text(notification));
        }
        Output::write(copyWarning(notification));
        Output::flush();
        if (!_isQuiet) {
            Progress::advance(isItem(notification) ? 1 : 0);
        }
    } catch (const HSVNException& exception) {
        // What the operation does in the repository and the working copy is worth more than its report.
        if (!_cannotWrite) {
            _cannotWrite = true;
            printError(exception);
        }
    }
}

void NotificationPrinter::requireExternals() const
{
    if (_hasFailedExternal) {
        fail(ExternalsProcessing, failedExternals);
    }
}

HSVNException NotificationPrinter::withFailedExternals(const HSVNException& failure) const
{
    return _hasFailedExternal ? ::failure(ExternalsProcessing, failedExternals,
                                          ::failure(ComposedError, "Additional errors:", failure))
                              : failure;
}

void NotificationPrinter::printConflictSummary() const
{
    if (!_isQuiet) {
        Output::write(_conflicts.summary());
    }
}

std::string NotificationPrinter::text(const HSVNNotification& notification)
{
    const auto* const line = std::find_if(std::begin(actionLines), std::end(actionLines), [&](const Line& candidate) {
        return candidate.action == notification.action();
    });
    if (line != std::end(actionLines)) {
        _hasChange = _hasChange || line->isChange;
        return fmt::format(fmt::runtime(line->format), shownPath(notification),
                           notification.propertyName().value_or(""), notification.revision(),
                           notification.changelistName().value_or(""), shownURL(notification));
    }
    if (const char* const format = skipFormat(notification)) {
        _conflicts.addSkipped();
        return fmt::format(fmt::runtime(format), shownPath(notification));
    }
    return textOfChange(notification);
}

std::string NotificationPrinter::textOfChange(const HSVNNotification& notification)
{
    switch (notification.action()) {
    case HSVNNotifyActionAdd:
        return fmt::format("A  {}  {}\n", isBinary(notification) ? "(bin)" : "     ", shownPath(notification));
    case HSVNNotifyActionUpdateAdd:
        return addition(notification);
    case HSVNNotifyActionExists:
        return existing(notification);
    case HSVNNotifyActionUpdateUpdate:
    case HSVNNotifyActionMergeRecordInfo:
        return update(notification, 2);
    case HSVNNotifyActionPatch:
        return update(notification, 7);
    case HSVNNotifyActionPatchAppliedHunk:
    case HSVNNotifyActionPatchRejectedHunk:
    case HSVNNotifyActionPatchHunkAlreadyApplied:
        return hunkLine(notification);
    case HSVNNotifyActionTreeConflict:
        _conflicts.add(shownPath(notification), ConflictKind::Tree);
        return fmt::format("   C {}\n", shownPath(notification));
    case HSVNNotifyActionUpdateCompleted:
        return completion(notification);
    case HSVNNotifyActionUpdateExternal:
        ++_externalsUnderWay;
        return fmt::format("\nFetching external item into '{}':\n", shownPath(notification));
    case HSVNNotifyActionUpdateExternalRemoved:
        _hasChange = true;
        return externalRemoval(notification);
    case HSVNNotifyActionUpdateOfPathStarted:
        return _leavesOutFrame || _externalsUnderWay > 0 || _operation != NotifiedOperation::Other
                   ? ""
                   : fmt::format("Updating '{}':\n", shownPath(notification));
    case HSVNNotifyActionMergeBegin:
    case HSVNNotifyActionForeignMergeBegin:
        return mergeHeader(notification);
    case HSVNNotifyActionMergeRecordInfoBegin:
        return recordingHeader(notification);
    default:
        return textOfCommit(notification);
    }
}

std::string NotificationPrinter::textOfCommit(const HSVNNotification& notification)
{
    switch (notification.action()) {
    case HSVNNotifyActionCommitModified:
        return sending("Sending", notification);
    case HSVNNotifyActionCommitAdded:
    case HSVNNotifyActionCommitCopied:
        return sending("Adding", notification);
    case HSVNNotifyActionCommitDeleted:
        return sending("Deleting", notification);
    case HSVNNotifyActionCommitReplaced:
    case HSVNNotifyActionCommitCopiedReplaced:
        return sending("Replacing", notification);
    case HSVNNotifyActionCommitPostfixTXDelta:
        return std::exchange(_isSendingText, true) ? "." : "Transmitting file data .";
    case HSVNNotifyActionCommitFinalizing:
        return std::exchange(_isSendingText, false) ? "done\nCommitting transaction...\n"
                                                    : "Committing transaction...\n";
    default:
        return textOfResult(notification);
    }
}

std::string NotificationPrinter::textOfResult(const HSVNNotification& notification)
{
    const std::string path = shownPath(notification);
    switch (notification.action()) {
    case HSVNNotifyActionLocked:
        return fmt::format("'{}' locked by user '{}'.\n", path, notification.lock()->owner().value_or(""));
    case HSVNNotifyActionResolvedText:
        _conflicts.resolve(path, ConflictKind::Text);
        return fmt::format("Merge conflicts in '{}' marked as resolved.\n", path);
    case HSVNNotifyActionResolvedProperty:
        _conflicts.resolve(path, ConflictKind::Property);
        return fmt::format("Conflict in property '{}' at '{}' marked as resolved.\n",
                           notification.propertyName().value_or(""), path);
    case HSVNNotifyActionResolvedTree:
        _conflicts.resolve(path, ConflictKind::Tree);
        return fmt::format("Tree conflict at '{}' marked as resolved.\n", path);
    case HSVNNotifyActionResolved:
        for (const auto kind : {ConflictKind::Text, ConflictKind::Property, ConflictKind::Tree}) {
            _conflicts.resolve(path, kind);
        }
        return fmt::format("Resolved conflicted state of '{}'\n", path);
    case HSVNNotifyActionFailedLock:
    case HSVNNotifyActionFailedUnlock:
    case HSVNNotifyActionFailedExternal:
        warn(notification);
        return notification.action() == HSVNNotifyActionFailedExternal ? endOfExternal() : "";
    default:
        return ""; // the error that ends the operation says it
    }
}

std::string NotificationPrinter::copyWarning(const HSVNNotification& notification)
{
    const bool isCopy = notification.action() == HSVNNotifyActionCommitCopied ||
                        notification.action() == HSVNNotifyActionCommitCopiedReplaced;
    if (_commitDepth == HSVNDepthInfinity || !isCopy || notification.nodeKind() != HSVNNodeKindDirectory) {
        return "";
    }
    return fmt::format("{}: The depth of this commit is '{}', but copies are always performed recursively in the "
                       "repository.\n",
                       programName(), HSVNTextOfDepth(std::exchange(_commitDepth, HSVNDepthInfinity)));
}

void NotificationPrinter::warn(const HSVNNotification& notification)
{
    const auto error = std::dynamic_pointer_cast<const HSVNException>(notification.error());
    if (!error) {
        return;
    }
    if (notification.action() == HSVNNotifyActionFailedExternal && _externalsUnderWay == 0) {
        // The line that says what is fetched names the external otherwise.
        printWarning(failure(ExternalsProcessing,
                             fmt::format("Error handling externals definition for '{}':", shownPath(notification))));
    }
    printWarning(*error);
}

/// Conflicts of text and properties are counted wherever they show.
void NotificationPrinter::countConflicts(const HSVNNotification& notification)
{
    if (notification.contentState() == HSVNNotifyStateConflicted) {
        _conflicts.add(shownPath(notification), ConflictKind::Text);
    }
    if (notification.propertyState() == HSVNNotifyStateConflicted) {
        _conflicts.add(shownPath(notification), ConflictKind::Property);
    }
}

std::string NotificationPrinter::addition(const HSVNNotification& notification)
{
    countConflicts(notification);
    _hasChange = true;
    const bool conflicts = notification.contentState() == HSVNNotifyStateConflicted;
    return fmt::format("{}    {}\n", conflicts ? 'C' : 'A', shownPath(notification));
}

std::string NotificationPrinter::existing(const HSVNNotification& notification)
{
    countConflicts(notification);
    _hasChange = true;
    const bool textConflicts = notification.contentState() == HSVNNotifyStateConflicted;
    const char properties = letterOf(notification.propertyState());
    return fmt::format("{}{}   {}\n", textConflicts ? 'C' : 'E', properties == 'U' ? ' ' : properties,
                       shownPath(notification));
}

std::string NotificationPrinter::update(const HSVNNotification& notification, std::size_t gap)
{
    countConflicts(notification);
    const bool isFile = notification.nodeKind() == HSVNNodeKindFile;
    const char text = letterOf(notification.contentState());
    const std::string columns{text == 'C' || isFile ? text : ' ', letterOf(notification.propertyState()),
                              notification.lockState() == HSVNNotifyLockStateUnlocked ? 'B' : ' '};
    if (columns == "   ") {
        return "";
    }
    _hasChange = true;
    return fmt::format("{}{}{}\n", columns, std::string(gap, ' '), shownPath(notification));
}

std::string NotificationPrinter::completion(const HSVNNotification& notification)
{
    const bool isExternal = _externalsUnderWay > 0;
    const std::string line = _leavesOutFrame ? "" : completionLine(notification.revision(), isExternal);
    return line + endOfExternal();
}

std::string NotificationPrinter::endOfExternal()
{
    if (_externalsUnderWay == 0) {
        return "";
    }
    --_externalsUnderWay;
    return "\n";
}

std::string NotificationPrinter::completionLine(HSVNRevisionNumber revision, bool isExternal)
{
    const CompletionWords words = completionWords(_operation);
    if (revision == HSVNInvalidRevision) {
        return fmt::format("{} complete.\n", isExternal ? fmt::format("External {}", words.noun) : words.capitalized);
    }
    if (_operation == NotifiedOperation::Export || _operation == NotifiedOperation::CheckOut) {
        return fmt::format("{} {}revision {}.\n", words.verb, isExternal ? "external at " : "", revision);
    }
    if (std::exchange(_hasChange, false)) {
        return fmt::format("Updated {}to revision {}.\n", isExternal ? "external " : "", revision);
    }
    return fmt::format("{} revision {}.\n", isExternal ? "External at" : "At", revision);
}

std::string NotificationPrinter::sending(const std::string& verb, const HSVNNotification& notification) const
{
    const bool isCopy = _operation == NotifiedOperation::CopyToRepository;
    const std::string column = verb + (isCopy ? " copy of" : "");
    if (verb == "Adding" && isBinary(notification)) {
        return fmt::format("{}{}(bin)  {}\n", column, isCopy ? " " : "  ", shownPath(notification));
    }
    return fmt::format("{:<{}}{}\n", column, isCopy ? 22 : 15, shownPath(notification));
}
