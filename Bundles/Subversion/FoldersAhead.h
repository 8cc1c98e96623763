#pragma once

#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include "FolderContents.h"
#include "SQLiteHandles.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace HSVNAdapter {

/// Where a walk through a working copy begins.
struct WalkedPlace
{
    std::string root;         ///< of the working copy
    std::string database;     ///< its file
    std::string target;       ///< absolute, at or below the root
    std::string nativeTarget; ///< the same as the system has it
    bool isNativeUTF8 = true; ///< whether the system has every other path as Subversion has it
};

/// Reads the folders of a working copy from the disk on threads of its own, ahead of a status walk that asks for them
/// one after the other.
///
/// Two thirds of what a walk takes is the system's, which looks up every item. The walk itself stays where it is, on
/// its caller's thread and in its order: it finds the folders read already, and reads for itself what nobody has begun
/// to read. The database tells which folders it will come to.
///
/// The threads touch nothing of Subversion's, call nobody and block all signals. They rest while much has been read
/// that nobody has asked for. What was read before the database changed is not handed out: an item and its row would
/// be of different times.
class FoldersAhead
{
  public:
    /// Reads nothing where no thread can be made or the database cannot be read.
    FoldersAhead(WalkedPlace place, unsigned readers);
    ~FoldersAhead();
    FoldersAhead(const FoldersAhead&) = delete;
    FoldersAhead& operator=(const FoldersAhead&) = delete;

    /// What the folder of an absolute path holds, once; waits for a thread that reads it. Nothing when the walk has to
    /// read it.
    std::optional<FolderContents> take(std::string_view path);

  private:
    /// What a thread has read.
    struct Read
    {
        std::optional<FolderContents> contents;
        std::optional<std::uint32_t> changes; ///< the database's count before it was read
    };
    /// A folder that a thread is to read.
    struct Claim
    {
        std::size_t index;
        std::optional<std::uint32_t> changes;
    };

    void start(unsigned readers);
    void run(bool isFirst);
    /// Puts the folders that the walk will come to in its order.
    void list();
    std::vector<std::string> readList();
    /// The next folder, once there is room for it; none when nothing is left to be read.
    std::optional<Claim> claim();
    Read read(const Claim& claim) const;
    void deliver(std::size_t index, Read&& read);

    // With the lock held.
    std::optional<std::size_t> indexOf(std::string_view path) const;
    bool hasRoom(std::size_t lead) const;
    bool isBeingRead(std::size_t index) const;
    std::optional<Claim> claimNext();
    void dropUpTo(std::size_t index);
    std::optional<std::uint32_t> countChanges() const;

    const WalkedPlace _place;
    std::atomic<bool> _isStopping = false;

    std::mutex _lock;
    std::condition_variable _wasDelivered;
    std::condition_variable _hasRoom;
    // What follows is guarded by the lock.
    SQLiteDatabase _database; ///< the first thread's until the list is there
    bool _isListed = false;
    std::vector<std::string> _folders; ///< paths below the target, in the walk's order; no longer changed once listed
    std::size_t _next = 0;             ///< the first that nobody has begun to read
    std::size_t _walked = 0;           ///< how many the walk has come to or left behind
    std::map<std::size_t, Read> _read; ///< not yet asked for
    std::size_t _itemsAhead = 0;       ///< in `_read`
    std::vector<std::size_t> _beingRead;

    std::vector<std::thread> _threads;
};

} // namespace HSVNAdapter

#endif
