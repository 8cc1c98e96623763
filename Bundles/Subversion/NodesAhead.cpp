#include "NodesAhead.h"

#ifdef HSVN_FAST_STATUS

#include <csignal>
#include <utility>

namespace HSVNAdapter {
namespace {

/// So many nodes are read at most before somebody asks for one of them.
constexpr std::size_t largestLead = 32768;

/// All signals blocked while it lives; a thread made meanwhile keeps them blocked.
class BlockedSignals
{
  public:
    BlockedSignals()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &_before);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

  private:
    sigset_t _before{};
};

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

std::optional<std::vector<UnchangedNode>> NodesAhead::take(const std::string& folder)
{
    std::unique_lock guard{_lock};
    _isWaitedFor = true;
    _changed.notify_all();
    _changed.wait(guard, [&] { return _isFinished || (_hasRead && _last >= folder); });
    _isWaitedFor = false;
    const auto found = _read.find(folder);
    if (found == _read.end()) {
        return std::nullopt;
    }
    auto nodes = std::move(found->second);
    _read.erase(found);
    _nodesRead -= nodes.size();
    _changed.notify_all();
    return nodes;
}

void NodesAhead::run()
{
    try {
        if (const auto database = WorkingCopyDatabase::openFile(_root, _file)) {
            database->readFolders(_first, [this](const std::string& folder, std::vector<UnchangedNode>&& nodes) {
                return keep(folder, std::move(nodes));
            });
        }
    } catch (const std::exception&) {
        // Out of memory: the walk reads for itself what is not here.
    }
    finish();
}

bool NodesAhead::keep(const std::string& folder, std::vector<UnchangedNode>&& nodes)
{
    std::unique_lock guard{_lock};
    _nodesRead += nodes.size();
    _read[folder] = std::move(nodes);
    _last = folder;
    _hasRead = true;
    if (_isWaitedFor) {
        _changed.notify_all();
    }
    _changed.wait(guard, [this] { return _isStopping || _isWaitedFor || _nodesRead < largestLead; });
    return !_isStopping;
}

void NodesAhead::finish()
{
    const std::lock_guard guard{_lock};
    _isFinished = true;
    _changed.notify_all();
}

} // namespace HSVNAdapter

#endif
