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

    /// A branch of whose revisions some may be merges that the log does not tell: a server leaves those out that are in
    /// the history of the log's own target.
    struct OpenQuestion
    {
        std::string root;
        HSVNRevisionNumber oldest;
        HSVNRevisionNumber youngest;
    };

    /// Takes the next item of a log that tells changed paths and merged revisions; a revision that comes again is told
    /// once.
    void add(const HSVNLogItemRef& item);
    std::vector<OpenQuestion> openQuestions() const;
    /// Takes the next item of a log of such a branch that tells merged revisions.
    void answer(const HSVNLogItem& item);
    /// The nodes of the items taken, from the oldest on.
    ///
    /// @param isShown  which items are wanted; instead of one that is not, nodes go on from what that one goes on from
    std::vector<Node> nodes(const std::function<bool(const HSVNLogItem&)>& isShown) const;

  private:
    using Places = std::map<HSVNRevisionNumber, std::size_t>;

    Branches branches() const;
    std::vector<Node> allNodes() const;
    void addMerged(Node& node, const std::vector<Node>& nodes, const Places& places) const;

    std::map<HSVNRevisionNumber, HSVNLogItemRef> _items;
    std::map<HSVNRevisionNumber, std::set<HSVNRevisionNumber>> _merged; ///< by the revision that merged them
    std::vector<HSVNRevisionNumber> _mergedBy; ///< the revisions whose merged ones come, the outermost first
};
