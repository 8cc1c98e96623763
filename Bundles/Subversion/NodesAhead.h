#pragma once

#include "SubversionLine.h"

#ifdef HSVN_FAST_STATUS

#include "WorkingCopyDatabase.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>

namespace HSVNAdapter {

/// Reads the unchanged nodes below a folder on a thread of its own, ahead of a walk that asks for them a folder at a
/// time.
///
/// The thread has its own connection to the database, touches nothing of Subversion's and blocks all signals. It rests
/// while much has been read that nobody has asked for; a resting thread keeps no writer from the database.
class NodesAhead
{
  public:
    /// @param database  one that could be opened; the thread opens it again
    /// @param folder    path below the root that the walk begins at
    NodesAhead(const WorkingCopyDatabase& database, std::string folder);
    ~NodesAhead();
    NodesAhead(const NodesAhead&) = delete;
    NodesAhead& operator=(const NodesAhead&) = delete;

    const std::string& root() const { return _root; }
    struct Portion
    {
        UnchangedNodes nodes;
        bool isLast;
    };
    /// The folder's next nodes, in ascending order; waits for the thread. None for a folder that it has not read, and
    /// after the last.
    std::optional<Portion> take(const std::string& folder);

  private:
    struct Folder
    {
        std::deque<UnchangedNodes> portions;
        bool isWhole = false;
    };

    void run();
    /// Answers whether to go on reading.
    bool keep(const std::string& folder, UnchangedNodes&& nodes, bool isLast);
    /// Answers whether to read further.
    bool rest();
    void finish();

    const std::string _root;
    const std::string _file;
    const std::string _first;

    std::mutex _lock;
    std::condition_variable _changed;
    // What follows is guarded by the lock.
    std::unordered_map<std::string, Folder> _read;
    std::size_t _nodesRead = 0; ///< in `_read`
    std::string _last;          ///< the folder read last; the thread goes in the order of the paths' bytes
    bool _hasRead = false;
    const std::string* _wanted = nullptr; ///< the folder that is waited for
    bool _isStopping = false;
    bool _isFinished = false;

    std::thread _thread;
};

} // namespace HSVNAdapter

#endif
