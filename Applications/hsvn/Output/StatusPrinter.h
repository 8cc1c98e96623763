#pragma once

#include "CommandLine/Session.h"
#include "Output/ConflictStatistics.h"

#include <array>
#include <nlohmann/json.hpp>
#include <string>

/// Prints the lines, XML entries and JSON records of `status`.
class StatusPrinter
{
  public:
    explicit StatusPrinter(Session& session) : _session{session} {}

    /// The target that the following items belong to.
    void setTarget(const std::string& target);
    void printLine(const HSVNItemStatus& status);
    void printXML(const HSVNItemStatus& status);
    nlohmann::ordered_json record(const HSVNItemStatus& status) const;
    /// How many conflicts there were, by kind; nothing without any.
    void printConflictSummary() const;

  private:
    std::string detailedColumns(const HSVNItemStatus& status) const;
    std::string moveLines(const HSVNItemStatus& status) const;
    std::string treeConflictLine(const HSVNItemStatus& status);
    void countConflicts(const HSVNItemStatus& status);
    /// The other end of a move: as the target's items are shown, or the way there from the target.
    std::string shown(const std::string& absolute) const;

    Session& _session;
    std::string _target;
    std::string _absoluteTarget;
    std::array<ConflictCount, 3> _conflicts; // by kind
};
