#pragma once

#include "CommandLine/Session.h"

#include <optional>
#include <string>
#include <vector>

// What asks the user how to settle a conflict. Each answers false when the user wants to be asked no more.

/// One answer that a question leaves.
struct PromptAnswer
{
    std::string code;
    std::string label;
    std::string description;
    std::string acceptWord{};                                        ///< the same as an argument of --accept
    HSVNResolutionChoice choice = HSVNResolutionChoice::Unspecified; ///< what settles the conflict, if it does
};

/// "Select: (p) Postpone, (r) Mark as resolved, ...: ", in lines that fit a terminal.
std::string promptText(const std::vector<PromptAnswer>& answers);
/// A line for each answer, and a last one that explains them.
std::string promptHelp(const std::vector<PromptAnswer>& answers);
/// Asks until the code of one of the answers is given.
///
/// @param all    what may be answered
/// @param shown  what the question names
/// @return the code; "h" for every way to ask for help
std::string askForCode(const std::vector<PromptAnswer>& all, const std::vector<PromptAnswer>& shown);
/// The same, but gives the help itself as often as it is asked for.
std::string askForAnswer(const std::vector<PromptAnswer>& all, const std::vector<PromptAnswer>& shown);
/// Whether an answer leaves the conflict for later: "p", or "q", which leaves all further ones, too.
bool postpones(const std::string& code);
/// The library's choices as answers, those that have a code of their own.
std::vector<PromptAnswer> answersOf(HSVNConflictedItem& item, HSVNConflictKind kind);
/// The answer with a code, null when there is none.
const PromptAnswer* answerWithCode(const std::vector<PromptAnswer>& answers, const std::string& code);

/// The files of a conflict of text; the base of a merge is what its change started from.
HSVNConflictSides filesOf(HSVNConflictedItem& item);

/// Asks about the text of a file.
class TextConflictPrompt
{
  public:
    /// @param path  as the operation reported it
    TextConflictPrompt(Session& session, HSVNConflictedItem& item, const std::string& path);
    bool ask();

  private:
    bool askAboutBinaryFile();
    std::vector<PromptAnswer> shortAnswers() const;
    void act(const std::string& code);
    void showDifference();
    void showConflicts();
    void merge(bool useTool);

    Session& _session;
    HSVNConflictedItem& _item;
    std::string _path; // absolute
    std::string _shown;
    HSVNConflictSides _files;
    std::vector<PromptAnswer> _answers;
    bool _mayBeResolved = false; // once the merged file was looked at
};

/// Asks about one property.
class PropertyConflictPrompt
{
  public:
    PropertyConflictPrompt(Session& session, HSVNConflictedItem& item, const std::string& path, std::string property);
    bool ask();

  private:
    std::vector<PromptAnswer> shortAnswers() const;
    std::string merged() const;
    void edit();

    Session& _session;
    HSVNConflictedItem& _item;
    std::string _shown;
    std::string _property;
    std::vector<PromptAnswer> _answers;
    std::optional<std::string> _edited;
};

/// Asks about an item that was added, deleted or moved.
class TreeConflictPrompt
{
  public:
    TreeConflictPrompt(HSVNConflictedItem& item, const std::string& path);
    bool ask();
    /// Settles the conflict as Subversion recommends, if it does.
    ///
    /// @param isTold  the user hears of it
    bool resolveAsRecommended(bool isTold);

  private:
    std::vector<PromptAnswer> answers();
    std::string description();
    void findMoveTargets();
    void warnOfAmbiguity() const;
    void chooseMoveTarget(HSVNMovePlace place);

    HSVNConflictedItem& _item;
    std::string _shown;
    HSVNResolutionChoice _moveChoice = HSVNResolutionChoice::Unspecified; // the one that leaves its target open
    std::vector<std::string> _repositoryTargets;
    std::vector<std::string> _localTargets;
    bool _hasChosenRepository = false;
    bool _hasChosenLocal = false;
};
