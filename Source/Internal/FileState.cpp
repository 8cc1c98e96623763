#include "Internal/FileState.h"

#include "HSVNException.h"
#include "HSVNStatusCodes.h"
#include "Internal/FileManager.h"

#include <cerrno>
#include <chrono>
#include <fmt/format.h>
#include <system_error>
#include <thread>
#include <tuple>

namespace {

using std::chrono::nanoseconds;

nanoseconds sinceEpoch(const timespec& time) { return std::chrono::seconds{time.tv_sec} + nanoseconds{time.tv_nsec}; }

/// The clock that file systems stamp with.
nanoseconds stampingClock()
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return sinceEpoch(now);
}

/// Waits until a change would be stamped with another time. A time far ahead, of another machine's clock, is left
/// alone.
void waitBeyond(nanoseconds time)
{
    constexpr auto longestTick = std::chrono::milliseconds{20};
    for (auto now = stampingClock(); now <= time && time - now < longestTick; now = stampingClock()) {
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
}

} // namespace

HSVNFileState::HSVNFileState(const struct stat& status)
    : _device{status.st_dev}, _number{status.st_ino}, _size{status.st_size}, _modified{status.st_mtim},
      _changed{status.st_ctim}
{
}

bool HSVNFileState::operator==(const HSVNFileState& other) const
{
    const auto fields = [](const HSVNFileState& state) {
        return std::tuple{state._device, state._number, state._size, sinceEpoch(state._modified),
                          sinceEpoch(state._changed)};
    };
    return fields(*this) == fields(other);
}

HSVNFileState HSVNFileState::of(const std::string& path)
{
    struct stat status
    {
    };
    if (::stat(path.c_str(), &status) != 0) {
        const std::error_code error{errno, std::generic_category()};
        HSVNFileManager::fail(fmt::format("Can't open file '{}': {}", path, error.message()), error);
    }
    if (!S_ISREG(status.st_mode)) {
        HSVNException::exceptionWithReason(fmt::format("'{}' is not a file", path), HSVNStatusCode::NotFile)->raise();
    }
    waitBeyond(sinceEpoch(status.st_ctim));
    return HSVNFileState{status};
}

void HSVNFileState::requireSame(int descriptor, const std::string& path) const
{
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) != 0 || !(HSVNFileState{status} == *this)) {
        failChanged(path);
    }
}

void HSVNFileState::requireSame(const std::string& path) const
{
    struct stat status
    {
    };
    if (::stat(path.c_str(), &status) != 0 || !(HSVNFileState{status} == *this)) {
        failChanged(path);
    }
}

void HSVNFileState::failChanged(const std::string& path)
{
    const std::string reason = fmt::format("'{}' changed after it was compared", path);
    throw HSVNException(reason, {{HSVNExceptionMessageKey, reason},
                                 {HSVNExceptionStatusKey, std::int64_t{HSVNStatusCode::DiffSourceModified}}});
}
