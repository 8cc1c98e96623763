#include "ConflictResolution.h"

#include "ConflictPrompts.h"
#include "Editor.h"
#include "Errors.h"
#include "MergeTool.h"
#include "Output.h"
#include "Targets.h"
#include "Words.h"

#include <algorithm>
#include <fmt/format.h>

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
    if (options.client.nonInteractive) {
        return Accept::Recommended;
    }
    const auto asks = session.client()->optionForName("interactive-conflicts", HSVNConfigCategoryConfig,
                                                      HSVNConfigSectionMiscellany, std::nullopt);
    return asks && isFalseWord(*asks) ? Accept::Postpone : Accept::Unspecified;
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

/// Mine of a tree conflict is the item where I moved it, or what I moved away from below it.
Choice choiceForTree(HSVNConflictedItem& item, Choice choice)
{
    if (choice == Choice::MergedText) {
        return Choice::AcceptCurrentState;
    }
    if (choice == Choice::WorkingTextWhereConflicted) {
        for (const Choice mine : {Choice::UpdateMoveDestination, Choice::UpdateMovedAwayChildren}) {
            if (leaves(item, Kind::Tree, mine)) {
                return mine;
            }
        }
    }
    return choice;
}

void settle(HSVNConflictedItem& item, Choice choice)
{
    if (item.hasTextConflict()) {
        item.resolve(Kind::Text, choice);
    }
    if (!item.conflictedProperties().empty()) {
        item.resolve(Kind::Property, choice);
    }
    if (item.hasTreeConflict()) {
        item.resolve(Kind::Tree, choiceForTree(item, choice));
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
    bool hasFailed = false;
    // To settle one conflict may raise others, of the same item too.
    for (auto path = nextPath(); path && !_hasQuit; path = nextPath()) {
        try {
            resolve(*path);
        } catch (const HSVNException& exception) {
            if (exception.status() == Cancelled) {
                throw;
            }
            printWarning(exception);
            hasFailed = true;
        }
    }
    if (hasFailed) {
        fail(ConflictResolverFailure, "Failure occurred resolving one or more conflicts");
    }
}

std::optional<std::string> ConflictResolution::nextPath()
{
    std::optional<std::string> next;
    for (const auto& item : _printer.conflicts().items()) {
        if ((!next || *next == item.first) && _tried.insert(item).second) {
            next = item.first;
        }
    }
    return next;
}

void ConflictResolution::resolve(const std::string& path)
{
    HSVNConflictedItem item{path, _session.client()};
    switch (next(item, path)) {
    case Next::Leave:
        break;
    case Next::Settle:
        settle(item, choiceOf(_accept));
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
    if (!item.hasTextConflict()) {
        return Next::Ask;
    }
    if (_hasFailedProgram) {
        return Next::Leave;
    }
    try {
        return launchMergeTool(_session, item.files(), absolutePath(path)) ? Next::Settle : Next::Leave;
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
        _hasQuit = TextConflictPrompt{_session, item, path}.ask() == PromptEnd::Quit;
    }
    for (const auto& property : item.conflictedProperties()) {
        _hasQuit = PropertyConflictPrompt{_session, item, path, property}.ask() == PromptEnd::Quit || _hasQuit;
    }
    if (item.hasTreeConflict()) {
        _hasQuit = TreeConflictPrompt{item, path}.ask() == PromptEnd::Quit || _hasQuit;
    }
}

void ConflictResolution::printSummaryOnce()
{
    if (!_hasPrintedSummary) {
        _printer.printConflictSummary();
        _hasPrintedSummary = true;
    }
}

std::optional<HSVNResolutionChoice> choiceForAll(Accept accept)
{
    const bool isEach = accept == Accept::Edit || accept == Accept::Launch || accept == Accept::Postpone;
    const Choice choice = choiceOf(accept);
    return isEach || choice == Choice::Unspecified ? std::nullopt : std::optional{choice};
}

void settleConflicts(Session& session, NotificationPrinter& printer)
{
    if (session.options.quiet) {
        return;
    }
    if (printer.conflicts().hasConflicts()) {
        ConflictResolution{session, printer}.resolveCounted();
    }
    printer.printConflictSummary();
}
