#include "Interaction/ConflictPrompts.h"

#include "CommandLine/Errors.h"
#include "CommandLine/Targets.h"
#include "Interaction/Terminal.h"
#include "Output/Output.h"

#include <charconv>
#include <fmt/format.h>

namespace {

using Choice = HSVNResolutionChoice;

/// A number from 1 to a limit; asks until one is given.
std::size_t askForNumber(const std::string& question, std::size_t limit)
{
    for (;;) {
        const std::string text = Terminal::ask(question);
        std::size_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc{} || end != text.data() + text.size()) {
            Output::writeError(fmt::format("Could not convert '{}' into a number\n", text));
        } else if (number < 1 || number > limit) {
            Output::writeError(fmt::format("Number '{}' is out of range '[1, {}]'\n", text, limit));
        } else {
            return number;
        }
    }
}

} // namespace

TreeConflictPrompt::TreeConflictPrompt(HSVNConflictedItem& item, const std::string& path)
    : _item{item}, _shown{relativeToCurrentFolder(absolutePath(path))}
{
}

bool TreeConflictPrompt::resolveAsRecommended(bool isTold)
{
    _item.searchDetails();
    if (isTold) {
        Output::writeError(fmt::format("Tree conflict on '{}':\n{}", _shown, description()));
    }
    const Choice choice = _item.recommendedChoice();
    if (choice == Choice::Unspecified) {
        return false;
    }
    if (isTold) {
        for (const auto& option : _item.options(HSVNConflictKind::Tree)) {
            if (option.choice == choice) {
                Output::write(fmt::format("Applying recommended resolution '{}':\n", option.label));
                Output::flush();
            }
        }
    }
    _item.resolve(HSVNConflictKind::Tree, choice);
    return true;
}

bool TreeConflictPrompt::ask()
{
    if (resolveAsRecommended(true)) {
        return true;
    }
    findMoveTargets();
    if (answersOf(_item, HSVNConflictKind::Tree).size() <= 2) {
        Output::writeError(fmt::format("\nSubversion is not smart enough to resolve this tree conflict automatically!\n"
                                       "See '{} help resolve' for more information.\n\n",
                                       programName()));
    }
    for (;;) {
        warnOfAmbiguity();
        const auto all = answers();
        const std::string code = askForCode(all, all);
        if (postpones(code)) {
            return code != "q";
        }
        if (code == "d" || code == "w") {
            chooseMoveTarget(code == "d" ? HSVNMovePlace::Repository : HSVNMovePlace::WorkingCopy);
            continue;
        }
        if (code == "h") {
            Output::writeError("\n" + description() + promptHelp(all));
            continue;
        }
        _item.resolve(HSVNConflictKind::Tree, answerWithCode(all, code)->choice);
        return true;
    }
}

std::string TreeConflictPrompt::description()
{
    const auto [incoming, local] = _item.descriptionOfTreeConflict();
    return fmt::format("{}\n{}\n", incoming, local);
}

std::vector<PromptAnswer> TreeConflictPrompt::answers()
{
    auto all = answersOf(_item, HSVNConflictKind::Tree);
    if (!_repositoryTargets.empty()) {
        all.push_back(
            {"d", "Set repository move destination path", "pick repository move target from list of possible targets"});
    }
    if (!_localTargets.empty()) {
        all.push_back({"w", "Set working copy move destination path",
                       "pick working copy move target from list of possible targets"});
    }
    all.push_back({"h", "Help", "show this help (also '?')"});
    all.push_back({"q", "Quit resolution", "postpone all remaining conflicts"});
    return all;
}

void TreeConflictPrompt::findMoveTargets()
{
    for (const auto& option : _item.options(HSVNConflictKind::Tree)) {
        auto inRepository = _item.moveTargets(option.choice, HSVNMovePlace::Repository);
        auto local = _item.moveTargets(option.choice, HSVNMovePlace::WorkingCopy);
        if (inRepository.size() > 1 || local.size() > 1) {
            _moveChoice = option.choice;
            _repositoryTargets = inRepository.size() > 1 ? std::move(inRepository) : std::vector<std::string>{};
            _localTargets = local.size() > 1 ? std::move(local) : std::vector<std::string>{};
            return;
        }
    }
}

void TreeConflictPrompt::warnOfAmbiguity() const
{
    const bool inRepository = !_repositoryTargets.empty() && !_hasChosenRepository;
    const bool isLocal = !_localTargets.empty() && !_hasChosenLocal;
    if (!inRepository && !isLocal) {
        return;
    }
    Output::write(fmt::format(
        "Ambiguous move destinations exist {}{}{}; try the {}{}{} option{}\n", isLocal ? "in the working copy" : "",
        isLocal && inRepository ? " and " : "", inRepository ? "in the repository" : "", isLocal ? "'w'" : "",
        isLocal && inRepository ? " and " : "", inRepository ? "'d'" : "", isLocal && inRepository ? "s" : ""));
    Output::flush();
}

void TreeConflictPrompt::chooseMoveTarget(HSVNMovePlace place)
{
    const bool inRepository = place == HSVNMovePlace::Repository;
    const auto& targets = inRepository ? _repositoryTargets : _localTargets;
    std::string question = fmt::format("Possible {} destinations for moved-away '{}' are:\n",
                                       inRepository ? "repository" : "working copy", _shown);
    for (std::size_t index = 0; index < targets.size(); ++index) {
        question += fmt::format(" ({}): '{}{}'\n", index + 1, inRepository ? "^/" : "",
                                inRepository ? targets[index] : relativeToCurrentFolder(targets[index]));
    }
    question += inRepository ? "Only one destination can be a move; the others are copies.\n" : "";
    question += "Specify the correct move target path by number: ";
    _item.chooseMoveTarget(_moveChoice, place, askForNumber(question, targets.size()) - 1);
    (inRepository ? _hasChosenRepository : _hasChosenLocal) = true;
}
