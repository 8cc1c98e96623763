#include "HSVNArray+HSVNNodeExtensions.h"

#include "HSVNPlatformException.h"
#include "HSVNStatus.h"

#include <algorithm>
#include <iterator>

namespace HSVNArray {

namespace {

const HSVNNodeRef& required(const HSVNNodeRef& node)
{
    HSVNAssertParameter(node != nullptr, "node != nil");
    return node;
}

template <class Predicate>
Nodes filtered(const Nodes& nodes, const Predicate& predicate)
{
    Nodes result;
    result.reserve(nodes.size());
    std::ranges::copy_if(nodes, std::back_inserter(result),
                         [&](const HSVNNodeRef& node) { return predicate(required(node)); });
    return result;
}

HSVNStatusKind textStatus(const HSVNNodeRef& node)
{
    return node->status() ? node->status()->textStatus() : HSVNStatusKindNone;
}

HSVNStatusKind repositoryTextStatus(const HSVNNodeRef& node)
{
    return node->status() ? node->status()->repositoryTextStatus() : HSVNStatusKindNone;
}

HSVNSchedule schedule(const HSVNNodeRef& node)
{
    return node->status() ? node->status()->schedule() : HSVNScheduleNormal;
}

} // namespace

std::vector<HSVNPathRef> arrayWithPathsOfNodes(const Nodes& nodes)
{
    std::vector<HSVNPathRef> paths;
    paths.reserve(nodes.size());
    std::ranges::transform(nodes, std::back_inserter(paths),
                           [](const HSVNNodeRef& node) { return required(node)->path(); });
    return paths;
}

Nodes arrayWithNodesWithStatus(const Nodes& nodes, HSVNStatusKind kind)
{
    return filtered(nodes, [&](const HSVNNodeRef& node) { return textStatus(node) == kind; });
}

Nodes arrayWithNodesWithStatus(const Nodes& nodes, HSVNStatusKind kind, HSVNSchedule wanted)
{
    return filtered(nodes,
                    [&](const HSVNNodeRef& node) { return textStatus(node) == kind && schedule(node) == wanted; });
}

Nodes arrayWithNodesWithStatusOtherThan(const Nodes& nodes, HSVNStatusKind kind)
{
    return filtered(nodes, [&](const HSVNNodeRef& node) { return textStatus(node) != kind; });
}

Nodes arrayWithNodesWithRepositoryStatus(const Nodes& nodes, HSVNStatusKind kind)
{
    return filtered(nodes, [&](const HSVNNodeRef& node) { return repositoryTextStatus(node) == kind; });
}

Nodes arrayWithNodesWithRepositoryStatusOtherThan(const Nodes& nodes, HSVNStatusKind kind)
{
    return filtered(nodes, [&](const HSVNNodeRef& node) { return repositoryTextStatus(node) != kind; });
}

Nodes arrayWithOutOfDateNodes(const Nodes& nodes)
{
    return filtered(nodes, [](const HSVNNodeRef& node) {
        return !node->status() || node->status()->outOfDateLastCommitRevision() != HSVNInvalidRevision;
    });
}

Nodes arrayWithDescendentsOfPath(const Nodes& nodes, const HSVNPathRef& path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    return filtered(nodes,
                    [&](const HSVNNodeRef& node) { return node->path() && node->path()->isDescendentOfPath(path); });
}

Nodes arrayWithDescendentsOfPaths(const Nodes& nodes, const std::vector<HSVNPathRef>& paths)
{
    Nodes result;
    result.reserve(nodes.size());
    for (const auto& path : paths) {
        std::ranges::move(arrayWithDescendentsOfPath(nodes, path), std::back_inserter(result));
    }
    return result;
}

HSVNNodeRef nodeWithPath(const Nodes& nodes, const HSVNPathRef& path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    const auto found =
        std::ranges::find_if(nodes, [&](const HSVNNodeRef& node) { return PathEqual{}(required(node)->path(), path); });
    return found != nodes.end() ? *found : nullptr;
}

HSVNNodeRef nodeWithAncestorOfPath(const Nodes& nodes, const HSVNPathRef& path)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    for (HSVNPathRef ancestor = path->parent(); ancestor; ancestor = ancestor->parent()) {
        if (auto node = nodeWithPath(nodes, ancestor)) {
            return node;
        }
    }
    return nullptr;
}

NodesByPath dictionaryOfNodesKeyedByPath(const Nodes& nodes)
{
    NodesByPath dictionary;
    dictionary.reserve(nodes.size());
    for (const auto& node : nodes) {
        dictionary[required(node)->path()] = node;
    }
    return dictionary;
}

} // namespace HSVNArray
