#include "Interaction/ConflictPrompts.h"

#include "CommandLine/NativeText.h"
#include "CommandLine/Targets.h"
#include "Interaction/Editor.h"
#include "Interaction/FileMerge.h"
#include "Interaction/MergeTool.h"
#include "Output/ErrorOutput.h"
#include "Output/Output.h"
#include "Output/Words.h"

#include <fmt/format.h>

namespace {

bool isBinary(const std::optional<std::string>& mimeType) { return mimeType && isBinaryMIMEType(*mimeType); }

HSVNDiffOptionsRef ignoringLineEnds()
{
    auto options = HSVNDiffOptions::defaults();
    options->setIgnoreEOLStyle(true);
    return options;
}

const PromptAnswer quitAnswer{"q", "Quit resolution", "postpone all remaining conflicts"};

} // namespace

HSVNConflictSides filesOf(HSVNConflictedItem& item)
{
    HSVNConflictSides files = item.files();
    if (!files.base) {
        files.base = files.theirOld;
    }
    return files;
}

TextConflictPrompt::TextConflictPrompt(Session& session, HSVNConflictedItem& item, const std::string& path)
    : _session{session}, _item{item}, _path{absolutePath(path)}, _shown{relativeToCurrentFolder(_path)},
      _files{filesOf(item)}, _answers{answersOf(item, HSVNConflictKind::Text)}
{
    _answers.push_back(quitAnswer);
}

bool TextConflictPrompt::ask()
{
    if (isBinary(_item.mimeType())) {
        return askAboutBinaryFile();
    }
    for (const PromptAnswer& answer :
         std::vector<PromptAnswer>{{"e", "Edit file", "change merged file in an editor", "edit"},
                                   {"df", "Show diff", "show all changes made to merged file"},
                                   {"dc", "", "show all conflicts (ignoring merged version)"},
                                   {"m", "Merge", "use merge tool to resolve conflict"},
                                   {"l", "", "launch external merge tool to resolve conflict", "launch"},
                                   {"i", "", "use built-in merge tool to resolve conflict"},
                                   {"s", "Show all options", "show this list (also 'h', '?')"}})
    {
        _answers.push_back(answer);
    }
    Output::writeError(fmt::format("Merge conflict discovered in file '{}'.\n", _shown));
    for (;;) {
        const std::string code = askForAnswer(_answers, shortAnswers());
        if (postpones(code)) {
            return code != "q";
        }
        if (code == "r" && !_mayBeResolved) {
            Output::writeError("Invalid option; use diff/edit/merge/launch before choosing 'mark resolved'.\n\n");
            continue;
        }
        const PromptAnswer& answer = *answerWithCode(_answers, code);
        if (answer.choice != HSVNResolutionChoice::Unspecified) {
            _item.resolve(HSVNConflictKind::Text, answer.choice);
            return true;
        }
        act(code);
    }
}

bool TextConflictPrompt::askAboutBinaryFile()
{
    Output::writeError(fmt::format("Merge conflict discovered in binary file '{}'.\n", _shown));
    for (auto& answer : _answers) {
        // Of a file that is not merged, what the working copy has is mine.
        if (answer.choice == HSVNResolutionChoice::MergedText) {
            answer.code = "mf";
            answer.acceptWord = "mine-full";
        }
    }
    std::vector<PromptAnswer> shown;
    for (const char* const code : {"p", "mf", "tf"}) {
        if (const PromptAnswer* const answer = answerWithCode(_answers, code)) {
            shown.push_back(*answer);
        }
    }
    const std::string code = askForAnswer(_answers, shown);
    if (postpones(code)) {
        return code != "q";
    }
    _item.resolve(HSVNConflictKind::Text, answerWithCode(_answers, code)->choice);
    return true;
}

std::vector<PromptAnswer> TextConflictPrompt::shortAnswers() const
{
    std::vector<PromptAnswer> shown;
    for (const char* const code : {"p", "df", "e", "m", "r", "s"}) {
        if (std::string{code} != "r" || _mayBeResolved) {
            shown.push_back(*answerWithCode(_answers, code));
        }
    }
    return shown;
}

void TextConflictPrompt::act(const std::string& code)
{
    try {
        if (code == "df") {
            showDifference();
        } else if (code == "dc") {
            showConflicts();
        } else if (code == "e") {
            Editor::editFile(_session, _path);
            _mayBeResolved = true;
        } else {
            merge(code == "l" || (code == "m" && hasMergeTool(_session)));
        }
    } catch (const HSVNException& exception) {
        reportFailedProgram(exception);
    }
}

void TextConflictPrompt::showDifference()
{
    // A merge changes my file, an update the file that came in.
    const bool isMerge = _item.operation() == HSVNConflictOperation::Merge;
    const std::string original = (isMerge ? _files.mine : _files.theirNew).value_or("");
    HSVNDiff::ofFiles(HSVNTarget::verbatim(original), HSVNTarget::verbatim(_path), _session.client(),
                      ignoringLineEnds())
        .writeUnified(relativeToCurrentFolder(original) + (isMerge ? "\t- MINE" : "\t- THEIRS"), _shown + "\t- MERGED",
                      Output::writeBytes, NativeText::localeEncoding());
    Output::flush();
    _mayBeResolved = true;
}

void TextConflictPrompt::showConflicts()
{
    _item.textComparison(ignoringLineEnds())
        .showConflicts({.mine = "<<<<<<< MINE (select with 'mc')",
                        .base = "||||||| ORIGINAL",
                        .theirs = ">>>>>>> THEIRS (select with 'tc')"},
                       Output::writeBytes);
    Output::flush();
    _mayBeResolved = true;
}

void TextConflictPrompt::merge(bool useTool)
{
    if (useTool) {
        launchMergeTool(_session, _files, _path);
        _mayBeResolved = true;
    } else if (FileMerge{_session, _item, _path}.run()) {
        _mayBeResolved = true;
    }
}
