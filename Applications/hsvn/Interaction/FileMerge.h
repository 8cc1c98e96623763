#pragma once

#include "CommandLine/Session.h"

#include <string>
#include <vector>

/// Merges a file with the user, who is shown each conflicting section, theirs and mine side by side.
class FileMerge
{
  public:
    /// @param files  base, mine and theirNew are used
    /// @param path   the merged file, absolute
    FileMerge(Session& session, const HSVNConflictSides& files, std::string path);

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
    Answer askAbout(const HSVNMergeStretch& stretch);

    Session& _session;
    HSVNConflictSides _files;
    std::string _path;
    std::vector<std::string> _mine;   // lines with their ends
    std::vector<std::string> _theirs; // lines with their ends
    std::string _result;
};
