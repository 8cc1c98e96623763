#pragma once

#include "CommandLine/Session.h"

#include <string>
#include <vector>

/// Merges a file with the user, who is shown each conflicting section, theirs and mine side by side.
class FileMerge
{
  public:
    /// @param item  has a text conflict
    /// @param path  the merged file, absolute
    FileMerge(Session& session, HSVNConflictedItem& item, std::string path);

    /// Asks about each section and writes the merged file, unless the user gives up.
    ///
    /// @return whether no conflict is left
    bool run();

  private:
    enum class Answer
    {
        Taken,
        LeftInConflict,
        Aborted
    };
    Answer askAbout(const HSVNDiffSection& section);

    Session& _session;
    HSVNThreeWayDiff _diff;
    std::string _path;
    std::vector<HSVNSectionChoice> _choices;
};
