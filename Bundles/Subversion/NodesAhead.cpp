#include "NodesAhead.h"

#ifdef HSVN_FAST_STATUS

#include "BlockedSignals.h"

#include <utility>

namespace HSVNAdapter {
namespace {

/// Once so many nodes have been read that nobody has asked for, the thread rests,
constexpr std::size_t largestNodeLead = 8192;
/// and goes on when so few are left.
constexpr std::size_t smallestNodeLead = largestNodeLead / 2;
/// So many nodes of a folder are handed over before the rest is read.
constexpr std::size_t largestPortion = 512;

} // namespace

NodesAhead::NodesAhead(const WorkingCopyDatabase& database, std::string folder)
    : _root{database.root()}, _file{database.file()}, _first{std::move(folder)}
{
    const BlockedSignals blocked;
    _thread = std::thread{[this] { run(); }};
}

NodesAhead::~NodesAhead()
{
    {
        const std::lock_guard guard{_lock};
        _isStopping = true;
    }
    _changed.notify_all();
    _thread.join();
}

std::optional<NodesAhead::Portion> NodesAhead::take(const std::string& folder)
{
    std::unique_lock guard{_lock};
    const auto isRead = [&] {
        const auto found = _read.find(folder);
        return _isFinished || (_hasRead && _last > folder) || (found != _read.end() && !found->second.portions.empty());
    };
    if (!isRead()) {
        _wanted = &folder;
        _changed.notify_all();
        _changed.wait(guard, isRead);
        _wanted = nullptr;
    }
    const auto found = _read.find(folder);
    if (found == _read.end() || found->second.portions.empty()) {
        return std::nullopt;
    }
    auto& portions = found->second.portions;
    Portion portion{std::move(portions.front()), found->second.isWhole && portions.size() == 1};
    portions.pop_front();
    if (portion.isLast) {
        _read.erase(found);
    }
    _nodesRead -= portion.nodes.size();
    if (_nodesRead <= smallestNodeLead) {
        _changed.notify_all();
    }
    return portion;
}

void NodesAhead::run()
{
    try {
        if (const auto database = WorkingCopyDatabase::openFile(_root, _file)) {
            if (_first.empty()) {
                database->expectAllNodes();
            }
            std::optional<std::string> next = _first;
            while (next && rest()) {
                next = database->readFolders(_first, *next, largestPortion,
                                             [this](const std::string& folder, UnchangedNodes&& nodes, bool isLast) {
                                                 return keep(folder, std::move(nodes), isLast);
                                             });
            }
        }
    } catch (const std::exception&) {
        // Out of memory: the walk reads for itself what is not here.
    }
    finish();
}

bool NodesAhead::rest()
{
    std::unique_lock guard{_lock};
    _changed.wait(guard, [this] { return _isStopping || _wanted != nullptr || _nodesRead <= smallestNodeLead; });
    return !_isStopping;
}

bool NodesAhead::keep(const std::string& folder, UnchangedNodes&& nodes, bool isLast)
{
    const std::lock_guard guard{_lock};
    _nodesRead += nodes.size();
    auto& read = _read[folder];
    read.portions.push_back(std::move(nodes));
    read.isWhole = isLast;
    _last = folder;
    _hasRead = true;
    if (_wanted != nullptr && _last >= *_wanted) {
        _changed.notify_all();
    }
    return !_isStopping && (_wanted != nullptr || _nodesRead < largestNodeLead);
}

void NodesAhead::finish()
{
    const std::lock_guard guard{_lock};
    _isFinished = true;
    _changed.notify_all();
}

} // namespace HSVNAdapter

#endif
