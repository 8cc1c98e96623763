#include "Interaction/ConflictPrompts.h"

#include "Interaction/Terminal.h"
#include "Output/Output.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace {

using Choice = HSVNResolutionChoice;

/// How the prompt calls a choice.
struct ChoiceCode
{
    Choice choice;
    const char* code;
    const char* acceptWord;
};

constexpr std::array fileCodes{ChoiceCode{Choice::Postpone, "p", "postpone"},
                               ChoiceCode{Choice::IncomingText, "tf", "theirs-full"},
                               ChoiceCode{Choice::WorkingText, "mf", "mine-full"},
                               ChoiceCode{Choice::IncomingTextWhereConflicted, "tc", "theirs-conflict"},
                               ChoiceCode{Choice::WorkingTextWhereConflicted, "mc", "mine-conflict"},
                               ChoiceCode{Choice::MergedText, "r", "working"}};

constexpr std::array treeCodes{ChoiceCode{Choice::Postpone, "p", "postpone"},
                               ChoiceCode{Choice::AcceptCurrentState, "r", "working"},
                               ChoiceCode{Choice::UpdateMoveDestination, "u", ""},
                               ChoiceCode{Choice::UpdateMovedAwayChildren, "u", ""},
                               ChoiceCode{Choice::IncomingAddIgnore, "i", ""},
                               ChoiceCode{Choice::IncomingAddedFileTextMerge, "m", ""},
                               ChoiceCode{Choice::IncomingAddedFileReplaceAndMerge, "M", ""},
                               ChoiceCode{Choice::IncomingAddedFolderMerge, "m", ""},
                               ChoiceCode{Choice::IncomingAddedFolderReplace, "R", ""},
                               ChoiceCode{Choice::IncomingAddedFolderReplaceAndMerge, "M", ""},
                               ChoiceCode{Choice::IncomingDeleteIgnore, "i", ""},
                               ChoiceCode{Choice::IncomingDeleteAccept, "a", ""},
                               ChoiceCode{Choice::IncomingMoveFileTextMerge, "m", ""},
                               ChoiceCode{Choice::IncomingMoveFolderMerge, "m", ""},
                               ChoiceCode{Choice::LocalMoveFileTextMerge, "m", ""},
                               ChoiceCode{Choice::LocalMoveFolderMerge, "m", ""},
                               ChoiceCode{Choice::SiblingMoveFileTextMerge, "m", ""},
                               ChoiceCode{Choice::SiblingMoveFolderMerge, "m", ""},
                               ChoiceCode{Choice::BothMovedFileMerge, "m", ""},
                               ChoiceCode{Choice::BothMovedFileMoveMerge, "M", ""},
                               ChoiceCode{Choice::BothMovedFolderMerge, "m", ""},
                               ChoiceCode{Choice::BothMovedFolderMoveMerge, "M", ""}};

template <class Codes>
const ChoiceCode* codeOf(const Codes& codes, Choice choice)
{
    const auto found =
        std::find_if(codes.begin(), codes.end(), [choice](const ChoiceCode& code) { return code.choice == choice; });
    return found == codes.end() ? nullptr : found;
}

} // namespace

std::string promptText(const std::vector<PromptAnswer>& answers)
{
    constexpr std::size_t margin = 7;
    constexpr std::size_t most = 70; // commas aside
    std::string text = "Select:";
    std::size_t width = margin;
    for (const auto& answer : answers) {
        const std::string piece = fmt::format(" ({}) {}", answer.code, answer.label);
        if (width + piece.size() > most) {
            text += "\n" + std::string(margin, ' ');
            width = margin;
        }
        text += piece + (&answer == &answers.back() ? ": " : ",");
        width += piece.size();
    }
    return text;
}

std::string promptHelp(const std::vector<PromptAnswer>& answers)
{
    std::string text = "\n";
    for (const auto& answer : answers) {
        text += fmt::format("  {:<4} - {}{}\n", fmt::format("({})", answer.code), answer.description,
                            answer.acceptWord.empty() ? "" : fmt::format("  [{}]", answer.acceptWord));
    }
    return text + "Words in square brackets are the corresponding --accept option arguments.\n\n";
}

const PromptAnswer* answerWithCode(const std::vector<PromptAnswer>& answers, const std::string& code)
{
    const auto found =
        std::find_if(answers.begin(), answers.end(), [&](const PromptAnswer& answer) { return answer.code == code; });
    return found == answers.end() ? nullptr : &*found;
}

std::string askForCode(const std::vector<PromptAnswer>& all, const std::vector<PromptAnswer>& shown)
{
    for (;;) {
        std::string code = Terminal::ask(promptText(shown));
        const bool isKnown = answerWithCode(all, code) != nullptr;
        if (code == "?" || code == "h" || (code == "s" && isKnown)) {
            return "h";
        }
        if (isKnown) {
            return code;
        }
        Output::writeError("Unrecognized option.\n\n");
    }
}

std::string askForAnswer(const std::vector<PromptAnswer>& all, const std::vector<PromptAnswer>& shown)
{
    std::string code = askForCode(all, shown);
    while (code == "h") {
        Output::writeError(promptHelp(all));
        code = askForCode(all, shown);
    }
    return code;
}

bool postpones(const std::string& code) { return code == "p" || code == "q"; }

std::vector<PromptAnswer> answersOf(HSVNConflictedItem& item, HSVNConflictKind kind)
{
    std::vector<PromptAnswer> answers;
    for (const auto& option : item.options(kind)) {
        const ChoiceCode* const code =
            kind == HSVNConflictKind::Tree ? codeOf(treeCodes, option.choice) : codeOf(fileCodes, option.choice);
        if (code) {
            answers.push_back({code->code, option.label, option.description, code->acceptWord, option.choice});
        }
    }
    return answers;
}
