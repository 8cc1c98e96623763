#pragma once

#include "CommandLine/Session.h"
#include "Output/NotificationPrinter.h"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// Settles the conflicts of working-copy items: as --accept says, as Subversion recommends, or by asking.
class ConflictResolution
{
  public:
    /// @param printer  counts the conflicts; outlives the resolution
    ConflictResolution(Session& session, NotificationPrinter& printer);

    /// Settles the conflicts that the printer counted, as far as that is wanted.
    ///
    /// @throws HSVNException, after all were tried, when some could not be settled
    void resolveCounted();
    /// Settles one item's conflicts, as far as that is wanted.
    ///
    /// @throws HSVNException when that failed
    void resolve(const std::string& path);
    /// Whether the user asked to be asked no more.
    bool hasQuit() const { return _hasQuit; }

  private:
    /// How a choice of --accept goes on with one item.
    enum class Next
    {
        Leave,
        Settle,
        Recommend,
        Ask
    };
    /// For lines that tell nothing of conflicts: settles the counted ones where the choice is known beforehand.
    void settleUnseen();
    /// Settles the conflicts of an item and, as deep as the command line says, of what is below it: older ones too.
    void resolveBelow(const std::string& path);
    /// The items with conflicts that were not tried yet, the last one first; they count as tried then.
    std::vector<std::string> untriedPaths();
    Next next(HSVNConflictedItem& item, const std::string& path);
    Next edit(const std::string& path);
    Next launch(HSVNConflictedItem& item, const std::string& path);
    void ask(HSVNConflictedItem& item, const std::string& path);
    void printSummaryOnce();

    Session& _session;
    NotificationPrinter& _printer;
    Accept _accept;
    bool _hasQuit = false;
    bool _hasFailedProgram = false; // a failed editor or tool is not started again
    bool _hasPrintedSummary = false;
    std::set<std::pair<std::string, ConflictKind>> _tried;
};

/// Whether the line tells what conflicts are about, as those from 1.10 on do.
bool tellsOfConflicts(Session& session);

/// The choice that --accept names for every conflict; nil when each has its own.
std::optional<HSVNResolutionChoice> choiceForAll(Accept accept);

/// What follows an operation that may leave conflicts: they are settled, unless the subcommand is quiet.
void settleConflicts(Session& session, NotificationPrinter& printer);
