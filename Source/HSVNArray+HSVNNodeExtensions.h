#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNNode.h"
#include "HSVNPath.h"
#include "HSVNStatusKind.h"

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

/// Filters and lookups in arrays of nodes. Each leaves the array unchanged and keeps its order; nodes must not be nil
/// ("node != nil"). Kinds are compared exactly, not as sets; a node without a status record counts as kind none.
namespace HSVNArray {

/// Hashes paths by value; nil has a hash too.
struct PathHash
{
    /// The hash of `string`; 0 for nil.
    std::size_t operator()(const HSVNPathRef& path) const { return path ? path->hash() : 0; }
};
/// Compares paths by value; nil equals nil.
struct PathEqual
{
    /// Whether both are nil or their texts are equal.
    bool operator()(const HSVNPathRef& a, const HSVNPathRef& b) const { return a && b ? *a == *b : a == b; }
};

/// Files and folders, none nil.
using Nodes = std::vector<HSVNNodeRef>;
/// Nodes by the value of their path.
using NodesByPath = std::unordered_map<HSVNPathRef, HSVNNodeRef, PathHash, PathEqual>;

/// The path of every node.
HSVN_EXPORT std::vector<HSVNPathRef> arrayWithPathsOfNodes(const Nodes& nodes);
/// The nodes whose text status is that kind.
HSVN_EXPORT Nodes arrayWithNodesWithStatus(const Nodes& nodes, HSVNStatusKind kind);
/// The nodes whose text status is that kind and whose schedule is that schedule.
HSVN_EXPORT Nodes arrayWithNodesWithStatus(const Nodes& nodes, HSVNStatusKind kind, HSVNSchedule schedule);
/// The nodes whose text status is another kind.
HSVN_EXPORT Nodes arrayWithNodesWithStatusOtherThan(const Nodes& nodes, HSVNStatusKind kind);
/// The nodes whose text status in the repository is that kind.
HSVN_EXPORT Nodes arrayWithNodesWithRepositoryStatus(const Nodes& nodes, HSVNStatusKind kind);
/// The nodes whose text status in the repository is another kind.
HSVN_EXPORT Nodes arrayWithNodesWithRepositoryStatusOtherThan(const Nodes& nodes, HSVNStatusKind kind);
/// The nodes that the repository has a later revision of, and those without a status record.
HSVN_EXPORT Nodes arrayWithOutOfDateNodes(const Nodes& nodes);
/// The nodes below a path.
///
/// @param path  not nil ("path != nil")
HSVN_EXPORT Nodes arrayWithDescendentsOfPath(const Nodes& nodes, const HSVNPathRef& path);
/// For each path in turn the nodes below it; a node below two of the paths is in it twice.
HSVN_EXPORT Nodes arrayWithDescendentsOfPaths(const Nodes& nodes, const std::vector<HSVNPathRef>& paths);
/// The first node with an equal path; nil when there is none.
///
/// @param path  not nil ("path != nil")
HSVN_EXPORT HSVNNodeRef nodeWithPath(const Nodes& nodes, const HSVNPathRef& path);
/// The node of the nearest ancestor of a path, the path itself not among them; nil when there is none.
///
/// @param path  not nil ("path != nil")
HSVN_EXPORT HSVNNodeRef nodeWithAncestorOfPath(const Nodes& nodes, const HSVNPathRef& path);
/// Every node by its path; of nodes with equal paths the last.
HSVN_EXPORT NodesByPath dictionaryOfNodesKeyedByPath(const Nodes& nodes);

} // namespace HSVNArray
