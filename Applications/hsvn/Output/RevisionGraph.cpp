#include "Output/RevisionGraph.h"

#include "CommandLine/TextFiles.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace {

/// The root by the names that folders customarily have; empty where none has one.
std::string_view customaryRoot(std::string_view path)
{
    for (std::size_t start = 1; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string_view name = path.substr(start, end - start);
        if (name == "trunk") {
            return path.substr(0, end);
        }
        if (name == "branches" || name == "tags") {
            return end == path.size() ? "" : path.substr(0, path.find('/', end + 1));
        }
        start = end + 1;
    }
    return {};
}

bool isTopLevel(std::string_view path) { return path.rfind('/') == 0 && path.size() > 1; }

bool isAddition(const HSVNLogPathChange& change)
{
    return change.action() == HSVNLogActionAdded || change.action() == HSVNLogActionReplaced;
}

/// A revision of a branch.
struct GraphStep
{
    HSVNRevisionNumber revision;
    std::size_t node;
};

/// The revisions of each branch, from the oldest on.
class Histories
{
  public:
    explicit Histories(const Branches& branches) : _branches{branches} {}

    /// Takes the next revision; the nodes that it goes on from.
    std::vector<std::size_t> take(const HSVNLogItem& item, std::size_t node)
    {
        std::vector<std::size_t> parents;
        const auto add = [&](std::optional<std::size_t> parent) {
            if (parent && std::find(parents.begin(), parents.end(), *parent) == parents.end()) {
                parents.push_back(*parent);
            }
        };
        const auto touched = touchedBy(item);
        for (const auto& [root, isMade] : touched) {
            add(isMade ? originOf(item, root) : newest(root, item.revision()));
        }
        for (const auto& [root, isMade] : touched) {
            _steps[root].push_back({item.revision(), node});
        }
        return parents;
    }

    /// The newest revision of a branch up to another one.
    std::optional<std::size_t> newest(const std::string& root, HSVNRevisionNumber last) const
    {
        const auto found = _steps.find(root);
        if (found == _steps.end()) {
            return std::nullopt;
        }
        const auto& steps = found->second;
        const auto next =
            std::upper_bound(steps.begin(), steps.end(), last,
                             [](HSVNRevisionNumber number, const GraphStep& step) { return number < step.revision; });
        return next == steps.begin() ? std::nullopt : std::optional{std::prev(next)->node};
    }

  private:
    /// The branches that a revision changes, and whether it makes them; what belongs to none is a branch of its own
    /// where nothing else is changed.
    std::map<std::string, bool> touchedBy(const HSVNLogItem& item) const
    {
        std::map<std::string, bool> touched;
        for (const auto& change : item.changes()) {
            const std::string root{_branches.rootOf(change->path())};
            touched[root] = touched[root] || (isAddition(*change) && change->path() == root);
        }
        if (touched.size() > 1) {
            touched.erase("");
        }
        return touched;
    }

    /// What a branch that a revision makes is a copy of.
    std::optional<std::size_t> originOf(const HSVNLogItem& item, const std::string& root) const
    {
        const auto change = item.changeForPath(root);
        const auto source = change ? change->copyPath() : std::nullopt;
        return source ? newest(std::string{_branches.rootOf(*source)}, change->copyRevision()) : std::nullopt;
    }

    const Branches& _branches;
    std::map<std::string, std::vector<GraphStep>> _steps;
};

/// Whether it is a directory whose properties may be changed.
bool mayChangeProperties(const HSVNLogPathChange& change)
{
    return change.action() == HSVNLogActionModified && change.kind() != HSVNNodeKindFile &&
           change.propertiesModified().value_or(true);
}

/// The first and the last revision of each range, from the youngest on.
using Ranges = std::vector<std::pair<HSVNRevisionNumber, HSVNRevisionNumber>>;
/// What was merged, by the path that it comes from.
using MergeInformation = std::map<std::string, Ranges>;

/// Reads lines such as "/branches/one:3-7,9*".
MergeInformation readMergeInformation(const std::string& text)
{
    MergeInformation information;
    for (const auto& line : split(text, "\n")) {
        const auto colon = std::min(line.rfind(':'), line.size());
        for (const auto& range : split(line.substr(colon), ":,*")) {
            const auto dash = range.find('-');
            const auto number = [](std::string_view digits) {
                HSVNRevisionNumber value = 0;
                std::from_chars(digits.data(), digits.data() + digits.size(), value);
                return value;
            };
            const std::string_view first = std::string_view{range}.substr(0, dash);
            const std::string_view last = dash == std::string::npos ? first : std::string_view{range}.substr(dash + 1);
            // Subversion takes a path for one of the root's, however it is written.
            auto& ranges = information[(line.starts_with('/') ? "" : "/") + line.substr(0, colon)];
            ranges.emplace(ranges.begin(), number(first), number(last));
        }
    }
    return information;
}

/// The youngest revision of some ranges that earlier ones do not hold.
std::optional<HSVNRevisionNumber> youngestAdded(const Ranges& ranges, const Ranges& earlier)
{
    for (const auto& [first, last] : ranges) {
        HSVNRevisionNumber youngest = last;
        for (const auto& known : earlier) {
            if (known.first <= youngest && youngest <= known.second) {
                youngest = known.first - 1;
            }
        }
        if (youngest >= first) {
            return youngest;
        }
    }
    return std::nullopt;
}

/// Has a node go on from what its revision merged, too, as far as that is not known from its other parents.
///
/// @param merged  places, the youngest first
void addMerged(RevisionGraph::Node& node, const std::set<std::size_t, std::greater<>>& merged,
               const std::vector<RevisionGraph::Node>& nodes)
{
    if (merged.empty()) {
        return;
    }
    std::set<std::size_t> known;
    const auto learn = [&](std::vector<std::size_t> ways) {
        while (!ways.empty()) {
            const std::size_t place = ways.back();
            ways.pop_back();
            if (place >= *merged.rbegin() && known.insert(place).second) {
                ways.insert(ways.end(), nodes[place].parents.begin(), nodes[place].parents.end());
            }
        }
    };
    learn(node.parents);
    for (const std::size_t place : merged) {
        if (known.count(place) == 0) {
            node.parents.push_back(place);
            learn({place});
        }
    }
}

} // namespace

void Branches::learn(const HSVNLogItem& item)
{
    for (const auto& change : item.sortedChanges()) {
        const auto source = change->copyPath();
        if (!source || !isAddition(*change) || change->kind() == HSVNNodeKindFile) {
            continue;
        }
        const bool areTopLevel = isTopLevel(*source) && isTopLevel(change->path());
        if (areTopLevel) {
            _copies.emplace(*source);
        }
        if (areTopLevel || rootOf(*source) == *source) {
            _copies.emplace(change->path());
        }
    }
}

std::string_view Branches::rootOf(std::string_view path) const
{
    const std::string_view customary = customaryRoot(path);
    for (std::string_view folder = path; folder.size() > customary.size();) {
        if (_copies.find(folder) != _copies.end()) {
            return folder;
        }
        folder = folder.substr(0, folder.rfind('/'));
    }
    return customary;
}

void RevisionGraph::add(const HSVNLogItemRef& item)
{
    if (item->isEndOfChildren()) {
        if (!_mergedBy.empty()) {
            _mergedBy.pop_back();
        }
        return;
    }
    if (!_mergedBy.empty() && !item->isSubtractiveMerge()) {
        _merged[_mergedBy.back()].insert(item->revision());
    }
    if (item->hasChildren()) {
        _mergedBy.push_back(item->revision());
    }
    _items.emplace(item->revision(), item);
}

Branches RevisionGraph::branches() const
{
    Branches branches;
    for (const auto& [revision, item] : _items) {
        branches.learn(*item);
    }
    return branches;
}

void RevisionGraph::settleMerges(
    const std::function<std::string(const std::string&, HSVNRevisionNumber)>& mergeInformation)
{
    const Branches branches = this->branches();
    std::map<std::string, MergeInformation> known; // as of the last revision that changed it
    for (const auto& [revision, item] : _items) {
        for (const auto& change : item->changes()) {
            const std::string path = change->path();
            if (branches.rootOf(path) != path) {
                continue;
            }
            if (isAddition(*change)) {
                known.erase(path);
            } else if (mayChangeProperties(*change) && _merged.count(revision) == 0) {
                const auto [before, isNew] = known.try_emplace(path);
                if (isNew) {
                    before->second = readMergeInformation(mergeInformation(path, revision - 1));
                }
                auto after = readMergeInformation(mergeInformation(path, revision));
                for (const auto& [source, ranges] : after) {
                    if (const auto youngest = youngestAdded(ranges, before->second[source])) {
                        _mergedFrom[revision][source] = *youngest;
                    }
                }
                before->second = std::move(after);
            }
        }
    }
}

std::vector<RevisionGraph::Node> RevisionGraph::allNodes() const
{
    const Branches branches = this->branches();
    Histories histories{branches};
    std::map<HSVNRevisionNumber, std::size_t> places;
    std::vector<Node> nodes;
    for (const auto& [revision, item] : _items) {
        Node node{item, histories.take(*item, nodes.size())};
        std::set<std::size_t, std::greater<>> merged;
        if (const auto told = _merged.find(revision); told != _merged.end()) {
            for (const HSVNRevisionNumber each : told->second) {
                if (const auto place = places.find(each); place != places.end()) {
                    merged.insert(place->second);
                }
            }
        }
        if (const auto found = _mergedFrom.find(revision); found != _mergedFrom.end()) {
            for (const auto& [source, youngest] : found->second) {
                if (const auto place = histories.newest(std::string{branches.rootOf(source)}, youngest)) {
                    merged.insert(*place);
                }
            }
        }
        addMerged(node, merged, nodes);
        places.emplace(revision, nodes.size());
        nodes.push_back(std::move(node));
    }
    return nodes;
}

std::vector<RevisionGraph::Node> RevisionGraph::nodes(const std::function<bool(const HSVNLogItem&)>& isShown) const
{
    std::vector<Node> shown;
    std::vector<std::vector<std::size_t>> places; // of every node: the shown ones that stand for it
    for (Node& node : allNodes()) {
        std::vector<std::size_t> parents;
        for (const std::size_t parent : node.parents) {
            for (const std::size_t place : places[parent]) {
                if (std::find(parents.begin(), parents.end(), place) == parents.end()) {
                    parents.push_back(place);
                }
            }
        }
        if (isShown(*node.item)) {
            places.push_back({shown.size()});
            shown.push_back({std::move(node.item), std::move(parents)});
        } else {
            places.push_back(std::move(parents));
        }
    }
    return shown;
}
