#include "Interaction/ConflictPrompts.h"

#include "CommandLine/Targets.h"
#include "Interaction/Editor.h"
#include "Output/ErrorOutput.h"
#include "Output/Output.h"

#include <fmt/format.h>
#include <utility>

PropertyConflictPrompt::PropertyConflictPrompt(Session& session, HSVNConflictedItem& item, const std::string& path,
                                               std::string property)
    : _session{session}, _item{item}, _shown{relativeToCurrentFolder(absolutePath(path))},
      _property{std::move(property)}, _answers{answersOf(item, HSVNConflictKind::Property)}
{
    for (const PromptAnswer& answer :
         std::vector<PromptAnswer>{{"q", "Quit resolution", "postpone all remaining conflicts"},
                                   {"dc", "Display conflict", "show conflicts in this property"},
                                   {"e", "Edit property", "change merged property value in an editor", "edit"},
                                   {"h", "Help", "show this help (also '?')"}})
    {
        _answers.push_back(answer);
    }
}

bool PropertyConflictPrompt::ask()
{
    Output::writeError(fmt::format("Conflict for property '{}' discovered on '{}'.\n{}\n", _property, _shown,
                                   _item.descriptionOfPropertyConflict()));
    for (;;) {
        const std::string code = askForAnswer(_answers, shortAnswers());
        if (postpones(code)) {
            return code != "q";
        }
        if (code == "dc") {
            Output::writeBytes(merged());
            Output::flush();
        } else if (code == "e") {
            edit();
        } else if (code == "r" && !_edited) {
            Output::writeError("Invalid option; please edit the property first.\n\n");
        } else {
            _item.resolve(HSVNConflictKind::Property, answerWithCode(_answers, code)->choice, _property,
                          code == "r" ? _edited : std::nullopt);
            return true;
        }
    }
}

std::vector<PromptAnswer> PropertyConflictPrompt::shortAnswers() const
{
    std::vector<PromptAnswer> shown;
    for (const char* const code : {"p", "mf", "tf", "dc", "e", "r", "q", "h"}) {
        const PromptAnswer* const answer = answerWithCode(_answers, code);
        if (answer && (answer->code != "r" || _edited)) {
            shown.push_back(*answer);
        }
    }
    return shown;
}

std::string PropertyConflictPrompt::merged() const
{
    const HSVNConflictSides values = _item.propertyValues(_property);
    const auto& mine = _edited ? _edited : values.mine;
    return HSVNThreeWayDiff::ofTexts(values.theirOld.value_or(""), mine.value_or(""), values.theirNew.value_or(""),
                                     _session.client())
        .merged({}, {.mine = "<<<<<<< MINE", .base = "||||||| ORIGINAL", .theirs = ">>>>>>> THEIRS"});
}

void PropertyConflictPrompt::edit()
{
    try {
        _edited = Editor::editBytes(_session, _edited ? *_edited : merged());
    } catch (const HSVNException& exception) {
        reportFailedProgram(exception);
    }
}
