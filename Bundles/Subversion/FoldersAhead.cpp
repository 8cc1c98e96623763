#include "FoldersAhead.h"

#ifdef HSVN_STANDS_IN_FRONT

#include "BlockedSignals.h"
#include "DatabaseConnections.h"
#include "RelativePaths.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

namespace HSVNAdapter {
namespace {

/// Once so many items have been read that nobody has asked for, the threads rest,
constexpr std::size_t largestLead = 8192;
/// and go on when so few are left.
constexpr std::size_t smallestLead = largestLead / 2;

// The folders that have items in the database, between two texts.
constexpr const char* folderSizesQuery =
    "SELECT DISTINCT parent_relpath FROM nodes WHERE wc_id = 1 AND parent_relpath >= ?1"
    " AND parent_relpath < ?2";

/// A walk goes through a folder's items by the bytes of their names, and into each before it goes on: a slash comes
/// before any byte.
bool isWalkedBefore(std::string_view one, std::string_view other)
{
    const auto place = [](char byte) { return byte == '/' ? 0 : static_cast<unsigned char>(byte); };
    return std::lexicographical_compare(one.begin(), one.end(), other.begin(), other.end(),
                                        [&](char left, char right) { return place(left) < place(right); });
}

std::string_view below(std::string_view folder, std::string_view path)
{
    path.remove_prefix(std::min(folder.size(), path.size()));
    return path.starts_with('/') ? path.substr(1) : path;
}

} // namespace

FoldersAhead::FoldersAhead(WalkedPlace place, unsigned readers) : _place{std::move(place)} { start(readers); }

void FoldersAhead::start(unsigned readers)
{
    const BlockedSignals blocked;
    _threads.reserve(readers);
    _beingRead.reserve(readers + 1U); // nothing fails between a claim and its delivery
    try {
        for (unsigned reader = 0; reader < readers; ++reader) {
            _threads.emplace_back([this, reader] { run(reader == 0); });
        }
    } catch (const std::exception&) {
        // No thread, or no further one, to be had.
    }
}

FoldersAhead::~FoldersAhead()
{
    {
        const std::lock_guard guard{_lock};
        _isStopping = true;
    }
    _hasRoom.notify_all();
    for (auto& thread : _threads) {
        thread.join();
    }
}

// MARK: The walk's thread

std::optional<FolderContents> FoldersAhead::take(std::string_view path)
{
    std::unique_lock guard{_lock};
    const auto index = indexOf(path);
    if (!index) {
        return std::nullopt;
    }
    dropUpTo(*index);
    _walked = *index + 1;
    if (*index >= _next) {
        _next = _walked;
        return std::nullopt;
    }
    while (isBeingRead(*index)) {
        // Meanwhile it reads what comes next.
        if (const auto claimed = claimNext()) {
            guard.unlock();
            deliver(claimed->index, read(*claimed));
            guard.lock();
        } else {
            _wasDelivered.wait(guard);
        }
    }
    auto found = _read.extract(*index);
    if (found.empty()) {
        return std::nullopt;
    }
    auto& read = found.mapped();
    _itemsAhead -= read.contents ? read.contents->size() : 0;
    if (_itemsAhead <= smallestLead) {
        _hasRoom.notify_all();
    }
    const bool isOfNow = read.changes && read.changes == countChanges();
    return isOfNow ? std::move(read.contents) : std::nullopt;
}

std::optional<std::size_t> FoldersAhead::indexOf(std::string_view path) const
{
    const bool isHere =
        path.starts_with(_place.target) && (path.size() == _place.target.size() || path[_place.target.size()] == '/');
    const auto folder = below(_place.target, path);
    if (!isHere || !_isListed || _walked == _folders.size()) {
        return std::nullopt;
    }
    // Nearly always the one after the last.
    auto found = _folders.begin() + static_cast<std::ptrdiff_t>(_walked);
    if (*found != folder) {
        found = std::lower_bound(found, _folders.end(), folder, isWalkedBefore);
    }
    return found != _folders.end() && *found == folder
               ? std::optional{static_cast<std::size_t>(found - _folders.begin())}
               : std::nullopt;
}

bool FoldersAhead::hasRoom(std::size_t lead) const { return _isListed && _itemsAhead <= lead; }

bool FoldersAhead::isBeingRead(std::size_t index) const
{
    return std::find(_beingRead.begin(), _beingRead.end(), index) != _beingRead.end();
}

std::optional<FoldersAhead::Claim> FoldersAhead::claimNext()
{
    if (_isStopping || !hasRoom(largestLead) || _next == _folders.size()) {
        return std::nullopt;
    }
    const Claim claim{_next++, countChanges()};
    _beingRead.push_back(claim.index);
    return claim;
}

void FoldersAhead::dropUpTo(std::size_t index)
{
    while (!_read.empty() && _read.begin()->first < index) {
        const auto& contents = _read.begin()->second.contents;
        _itemsAhead -= contents ? contents->size() : 0;
        _read.erase(_read.begin());
    }
}

std::optional<std::uint32_t> FoldersAhead::countChanges() const
{
    // Every change of the database raises the number in its header.
    constexpr sqlite3_int64 place = 24;
    std::array<unsigned char, 4> bytes{};
    sqlite3_file* file = nullptr;
    const bool isRead = _database &&
                        sqlite3_file_control(_database.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file) == SQLITE_OK &&
                        file != nullptr && file->pMethods != nullptr &&
                        file->pMethods->xRead(file, bytes.data(), static_cast<int>(bytes.size()), place) == SQLITE_OK;
    std::uint32_t changes = 0;
    for (const auto byte : bytes) {
        changes = changes << 8U | byte;
    }
    return isRead ? std::optional{changes} : std::nullopt;
}

// MARK: The other threads

void FoldersAhead::run(bool isFirst)
{
    if (isFirst) {
        list();
    }
    while (const auto claimed = claim()) {
        deliver(claimed->index, read(*claimed));
    }
}

void FoldersAhead::list()
{
    std::vector<std::string> folders;
    try {
        folders = readList();
    } catch (const std::exception&) {
        folders.clear(); // out of memory: nothing is read ahead
    }
    const std::lock_guard guard{_lock};
    _folders = std::move(folders);
    _isListed = true;
    _hasRoom.notify_all();
}

std::vector<std::string> FoldersAhead::readList()
{
    std::vector<std::string> folders;
    _database = openDatabase(_place.database);
    if (!_database) {
        return folders;
    }
    sqlite3_busy_timeout(_database.get(), 0); // who writes now may go on for long
    const std::string top{below(_place.root, _place.target)};
    const std::string first = top.empty() ? top : top + '/'; // the top itself is read before the list is there
    const std::string end = top + '0';                       // which comes after a slash
    const auto rows = prepareStatement(_database.get(), folderSizesQuery);
    if (rows) {
        sqlite3_bind_text(rows.get(), 1, first.data(), static_cast<int>(first.size()), SQLITE_STATIC);
        if (top.empty()) {
            sqlite3_bind_zeroblob(rows.get(), 2, 0); // which comes after any text
        } else {
            sqlite3_bind_text(rows.get(), 2, end.data(), static_cast<int>(end.size()), SQLITE_STATIC);
        }
    }
    while (rows && !_isStopping && sqlite3_step(rows.get()) == SQLITE_ROW) {
        const auto folder = textInColumn(rows.get(), 0);
        if (isRelativePath(folder)) { // anyone may have written it
            folders.emplace_back(below(top, folder));
        }
    }
    std::sort(folders.begin(), folders.end(), isWalkedBefore);
    return folders;
}

std::optional<FoldersAhead::Claim> FoldersAhead::claim()
{
    std::unique_lock guard{_lock};
    if (!hasRoom(largestLead)) {
        _hasRoom.wait(guard, [this] { return _isStopping || hasRoom(smallestLead); });
    }
    return claimNext();
}

FoldersAhead::Read FoldersAhead::read(const Claim& claim) const
{
    try {
        const auto& folder = _folders[claim.index];
        if (_place.isNativeUTF8 || isASCII(folder)) {
            return {FolderContents::read(folder.empty() ? _place.nativeTarget : _place.nativeTarget + '/' + folder,
                                         _isStopping),
                    claim.changes};
        }
    } catch (const std::exception&) {
        // Out of memory: the walk reads it.
    }
    return {};
}

void FoldersAhead::deliver(std::size_t index, Read&& read)
{
    const std::lock_guard guard{_lock};
    std::erase(_beingRead, index);
    // The walk may have left it behind, or wait for it.
    if (read.contents && index + 1 >= _walked) {
        try {
            const auto items = read.contents->size();
            _read.emplace(index, std::move(read));
            _itemsAhead += items;
        } catch (const std::exception&) {
            // Out of memory: the walk reads it.
        }
    }
    _wasDelivered.notify_all();
}

} // namespace HSVNAdapter

#endif
