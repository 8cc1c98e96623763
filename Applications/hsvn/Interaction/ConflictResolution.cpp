#include "Interaction/ConflictResolution.h"

#include "CommandLine/Targets.h"
#include "Interaction/ConflictPrompts.h"
#include "Interaction/Editor.h"
#include "Interaction/MergeTool.h"
#include "Output/ErrorOutput.h"
#include "Output/Output.h"
#include "Output/Words.h"

#include <algorithm>
#include <fmt/format.h>
#include <utility>
#include <vector>

namespace {

using Choice = HSVNResolutionChoice;
using Kind = HSVNConflictKind;

/// What is to be done, with what the configuration says where the command line says nothing.
Accept acceptOf(Session& session)
{
    const Options& options = session.options;
    if (options.accept != Accept::Unspecified) {
        return options.accept;
    }
    if (options.nonInteractive) {
        return Accept::Recommended;
    }
    return session.isConfigured("interactive-conflicts", true) ? Accept::Unspecified : Accept::Postpone;
}

Choice choiceOf(Accept accept)
{
    switch (accept) {
    case Accept::Base:
        return Choice::BaseText;
    case Accept::MineConflict:
        return Choice::WorkingTextWhereConflicted;
    case Accept::TheirsConflict:
        return Choice::IncomingTextWhereConflicted;
    case Accept::MineFull:
        return Choice::WorkingText;
    case Accept::TheirsFull:
        return Choice::IncomingText;
    case Accept::Working:
    case Accept::Edit:
    case Accept::Launch:
        return Choice::MergedText;
    case Accept::Postpone:
        return Choice::Postpone;
    case Accept::Unspecified:
    case Accept::Recommended:
        break;
    }
    return Choice::Unspecified;
}

bool leaves(HSVNConflictedItem& item, Kind kind, Choice choice)
{
    const auto options = item.options(kind);
    return std::any_of(options.begin(), options.end(),
                       [choice](const HSVNConflictOption& option) { return option.choice == choice; });
}

bool isBinary(HSVNConflictedItem& item) { return item.mimeType() && isBinaryMIMEType(*item.mimeType()); }

/// A binary file has no merged text: what is there is mine.
Choice choiceFor(HSVNConflictedItem& item, Accept accept)
{
    const bool isWhole = accept == Accept::Working && item.hasTextConflict() && isBinary(item);
    return isWhole ? Choice::WorkingText : choiceOf(accept);
}

/// Mine of a tree conflict is the item where I moved it, or what I moved away from below it.
Choice choiceForTree(HSVNConflictedItem& item, Accept accept)
{
    if (accept == Accept::Working) {
        return Choice::AcceptCurrentState;
    }
    if (accept == Accept::MineConflict) {
        for (const Choice mine : {Choice::UpdateMoveDestination, Choice::UpdateMovedAwayChildren}) {
            if (leaves(item, Kind::Tree, mine)) {
                return mine;
            }
        }
    }
    return choiceOf(accept);
}

void settle(HSVNConflictedItem& item, Accept accept)
{
    const Choice choice = choiceFor(item, accept);
    if (item.hasTextConflict()) {
        item.resolve(Kind::Text, choice);
    }
    if (!item.conflictedProperties().empty()) {
        item.resolve(Kind::Property, choice);
    }
    if (item.hasTreeConflict()) {
        item.resolve(Kind::Tree, choiceForTree(item, accept));
    }
}

} // namespace

ConflictResolution::ConflictResolution(Session& session, NotificationPrinter& printer)
    : _session{session}, _printer{printer}, _accept{acceptOf(session)}
{
}

void ConflictResolution::resolveCounted()
{
    if (_accept == Accept::Postpone) {
        return;
    }
    if (!tellsOfConflicts(_session) && _accept != Accept::Edit && _accept != Accept::Launch) {
        settleUnseen();
        return;
    }
    bool hasFailed = false;
    // To settle one conflict may raise others, of the same item too: they come before those that were there already.
    std::vector<std::string> paths = untriedPaths();
    while (!paths.empty() && !_hasQuit) {
        const std::string path = std::move(paths.back());
        paths.pop_back();
        try {
            resolveBelow(path);
        } catch (const HSVNException& exception) {
            if (exception.status() == Cancelled) {
                throw;
            }
            // To settle a conflict may take the items of others away.
            if (!hasCause(exception, WorkingCopyPathNotFound)) {
                printWarningOfRoot(exception);
                hasFailed = true;
            }
        }
        for (auto& raised : untriedPaths()) {
            paths.push_back(std::move(raised));
        }
    }
    if (hasFailed) {
        fail(ConflictResolverFailure, "Failure occurred resolving one or more conflicts");
    }
}

void ConflictResolution::settleUnseen()
{
    const auto choice = choiceForAll(_accept);
    for (const auto& path : untriedPaths()) {
        if (choice) {
            _session.client()->resolve(HSVNTarget::verbatim(path), {.choice = *choice});
        }
    }
}

void ConflictResolution::resolveBelow(const std::string& path)
{
    const HSVNDepth depth = _session.options.depthOr(HSVNDepthInfinity);
    if (depth == HSVNDepthEmpty) {
        resolve(path);
        return;
    }
    for (const auto& found : _session.client()->conflicts(HSVNTarget::verbatim(path), {.depth = depth})) {
        if (!_hasQuit) {
            resolve(relativeToCurrentFolder(found));
        }
    }
}

std::vector<std::string> ConflictResolution::untriedPaths()
{
    std::vector<std::string> paths;
    for (const auto& item : _printer.conflicts().items()) {
        if (_tried.insert(item).second && (paths.empty() || paths.back() != item.first)) {
            paths.push_back(item.first);
        }
    }
    std::reverse(paths.begin(), paths.end());
    return paths;
}

void ConflictResolution::resolve(const std::string& path)
{
    HSVNConflictedItem item{HSVNTarget::verbatim(path), _session.client()};
    switch (next(item, path)) {
    case Next::Leave:
        break;
    case Next::Settle:
        settle(item, _accept);
        break;
    case Next::Recommend:
        if (item.hasTreeConflict()) {
            TreeConflictPrompt{item, path}.resolveAsRecommended(false);
        }
        break;
    case Next::Ask:
        ask(item, path);
        break;
    }
}

ConflictResolution::Next ConflictResolution::next(HSVNConflictedItem& item, const std::string& path)
{
    switch (_accept) {
    case Accept::Postpone:
        return Next::Leave;
    case Accept::Unspecified:
        return Next::Ask;
    case Accept::Recommended:
        return Next::Recommend;
    case Accept::Edit:
        return edit(path);
    case Accept::Launch:
        return launch(item, path);
    default:
        return Next::Settle;
    }
}

ConflictResolution::Next ConflictResolution::edit(const std::string& path)
{
    if (_hasFailedProgram) {
        return Next::Leave;
    }
    try {
        Editor::editFile(_session, absolutePath(path));
    } catch (const HSVNException& exception) {
        reportFailedProgram(exception);
        _hasFailedProgram = true;
    }
    return Next::Settle;
}

ConflictResolution::Next ConflictResolution::launch(HSVNConflictedItem& item, const std::string& path)
{
    if (!item.hasTextConflict() || isBinary(item)) {
        return Next::Ask;
    }
    if (_hasFailedProgram) {
        return Next::Leave;
    }
    try {
        return launchMergeTool(_session, filesOf(item), absolutePath(path)) ? Next::Settle : Next::Leave;
    } catch (const HSVNException& exception) {
        reportFailedProgram(exception);
        _hasFailedProgram = true;
        throw;
    }
}

void ConflictResolution::ask(HSVNConflictedItem& item, const std::string& path)
{
    printSummaryOnce();
    if (item.hasTextConflict()) {
        _hasQuit = !TextConflictPrompt{_session, item, path}.ask();
    }
    for (const auto& property : item.conflictedProperties()) {
        _hasQuit = _hasQuit || !PropertyConflictPrompt{_session, item, path, property}.ask();
    }
    if (item.hasTreeConflict()) {
        _hasQuit = _hasQuit || !TreeConflictPrompt{item, path}.ask();
    }
}

void ConflictResolution::printSummaryOnce()
{
    if (!_hasPrintedSummary) {
        _printer.printConflictSummary();
        _hasPrintedSummary = true;
    }
}

bool tellsOfConflicts(Session& session)
{
    const auto line = session.client()->bundleVersion();
    return !line || !line->isLessThan({1, 10});
}

std::optional<HSVNResolutionChoice> choiceForAll(Accept accept)
{
    const bool isEach = accept == Accept::Edit || accept == Accept::Launch || accept == Accept::Postpone;
    const Choice choice = choiceOf(accept);
    return isEach || choice == Choice::Unspecified ? std::nullopt : std::optional{choice};
}

void settleConflicts(Session& session, NotificationPrinter& printer)
{
    if (!session.options.quiet && printer.conflicts().hasConflicts()) {
        ConflictResolution{session, printer}.resolveCounted();
    }
}
