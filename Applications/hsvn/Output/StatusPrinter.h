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
    void printLine(const HSVNNode& node);
    void printXML(const HSVNNode& node);
    nlohmann::ordered_json record(const HSVNNode& node) const;
    /// How many conflicts there were, by kind; nothing without any.
    void printConflictSummary() const;

  private:
    std::string detailedColumns(const HSVNNode& node) const;
    std::string moveLines(const HSVNStatus& status) const;
    std::string treeConflictLine(const HSVNNode& node);
    void countConflicts(const HSVNStatus& status);
    std::string shown(const HSVNNode& node) const { return shown(node.path()->string()); }
    /// A path as the target's items are shown, or the way there from the target: the other end of a move.
    std::string shown(const std::string& absolute) const;

    Session& _session;
    std::string _target;
    std::string _absoluteTarget;
    std::array<ConflictCount, 3> _conflicts; // by kind
};
