#pragma once

#include <HSVN/HSVN.h>

#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The branches of a repository, as the changes of its revisions show them: what is called trunk, what lies directly in
/// folders called branches and tags, and what is a copy of another branch as a whole.
class Branches
{
  public:
    /// Learns of the branches that a revision makes. Revisions come from the oldest on.
    void learn(const HSVNLogItem& item);
    /// The root of the branch that a path belongs to, a part of the path; empty for what belongs to none.
    std::string_view rootOf(std::string_view path) const;

  private:
    std::set<std::string, std::less<>> _copies;
};

/// The revisions of a log as a graph: each with those that it goes on from, by its branches, by copies of branches and
/// by merges.
class RevisionGraph
{
  public:
    struct Node
    {
        HSVNLogItemRef item;
        std::vector<std::size_t> parents; ///< indices of older nodes; the first is what the branch goes on from
    };

    /// Takes the next item of a log that tells changed paths and merged revisions; a revision that comes again is told
    /// once.
    void add(const HSVNLogItemRef& item);
    /// Finds out what was merged where the log does not tell it: a server leaves out what is in the history of the
    /// log's own target.
    ///
    /// @param mergeInformation  answers the property "svn:mergeinfo" of a path, a branch's root, in a revision
    void settleMerges(const std::function<std::string(const std::string&, HSVNRevisionNumber)>& mergeInformation);
    /// The nodes of the items taken, from the oldest on.
    ///
    /// @param isShown  which items are wanted; instead of one that is not, nodes go on from what that one goes on from
    std::vector<Node> nodes(const std::function<bool(const HSVNLogItem&)>& isShown) const;

  private:
    Branches branches() const;
    std::vector<Node> allNodes() const;

    std::map<HSVNRevisionNumber, HSVNLogItemRef> _items;
    std::map<HSVNRevisionNumber, std::set<HSVNRevisionNumber>> _merged; ///< by the revision that merged them
    /// The youngest of what a revision merged from each path, where the log does not tell it.
    std::map<HSVNRevisionNumber, std::map<std::string, HSVNRevisionNumber>> _mergedFrom;
    std::vector<HSVNRevisionNumber> _mergedBy; ///< the revisions whose merged ones come, the outermost first
};
