#pragma once

#include <HSVN/HSVN.h>
#include <array>
#include <set>
#include <string>
#include <utility>

using ConflictKind = HSVNConflictKind;

/// What an operation left in conflict, what of it was resolved meanwhile, and what it skipped.
class ConflictStatistics
{
  public:
    /// Adds an item in conflict; one that is there already counts once.
    void add(const std::string& path, ConflictKind kind);
    /// Takes an item out again that was resolved; one that was never added is none.
    void resolve(const std::string& path, ConflictKind kind);
    void addSkipped() { ++_skipped; }

    bool hasConflicts() const;
    bool hasResolved() const;
    /// The items in conflict and the kinds of their conflicts, in alphabetical order.
    std::set<std::pair<std::string, ConflictKind>> items() const;
    /// "Summary of conflicts:" and its lines; empty when there is nothing to tell.
    std::string summary() const;

  private:
    struct Count
    {
        std::set<std::string> paths;
        std::size_t resolved = 0;
    };
    std::array<Count, 3> _counts; // by kind
    int _skipped = 0;
};

/// How many conflicts of a kind are left, and how many were settled meanwhile.
struct ConflictCount
{
    std::size_t remaining = 0;
    std::size_t resolved = 0;
};

/// The summary of counts by kind, and of how many paths were skipped.
std::string conflictSummary(const std::array<ConflictCount, 3>& counts, int skipped = 0);
