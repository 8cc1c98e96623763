#include "FaultInjector.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <dlfcn.h>
#include <string_view>
#include <sys/types.h>

// Not <fcntl.h>, <unistd.h> and <sys/stat.h>: they may declare these calls inline.

namespace {

std::atomic<bool> isArmed;
std::atomic<int> count;
std::atomic<int> chosen;
std::atomic<int> renaming;
std::atomic<FaultInjector::Fault> kind;
std::atomic<const char*> failed;

/// Counts a call.
///
/// @return whether it is to fail
bool fails(const char* call, int error)
{
    if (!isArmed) {
        return false;
    }
    const int number = ++count;
    if (std::string_view{call} == "rename") {
        renaming = number;
    }
    const int first = chosen;
    const bool isChosen = number == first || (kind == FaultInjector::Fault::Onwards && first > 0 && number > first);
    if (!isChosen) {
        return false;
    }
    if (kind == FaultInjector::Fault::Kill) {
        std::raise(SIGKILL);
    }
    const char* none = nullptr;
    failed.compare_exchange_strong(none, call);
    errno = error;
    return true;
}

/// The C library's own function of the same signature.
template <class Function>
Function* original(Function* /*own*/, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

constexpr int createsFile = 0100; // O_CREAT

} // namespace

void FaultInjector::arm(Fault fault, int number)
{
    kind = fault;
    chosen = number;
    count = 0;
    failed = nullptr;
    renaming = 0;
    isArmed = true;
}

int FaultInjector::disarm()
{
    isArmed = false;
    return count;
}

int FaultInjector::lastRenaming() { return renaming; }

std::string FaultInjector::failedCall()
{
    const char* const name = failed;
    return name == nullptr ? "" : name;
}

#define HSVN_COUNTED(error, result, name, parameters, arguments)                                                       \
    result name parameters                                                                                             \
    {                                                                                                                  \
        static auto* const function = original(&name, #name);                                                          \
        return fails(#name, error) ? static_cast<result>(-1) : function arguments;                                     \
    }
#define HSVN_COUNTED_OPEN(name)                                                                                        \
    int name(const char* path, int flags, ...)                                                                         \
    {                                                                                                                  \
        std::va_list more;                                                                                             \
        va_start(more, flags);                                                                                         \
        const unsigned mode = (flags & createsFile) != 0 ? va_arg(more, unsigned) : 0;                                 \
        va_end(more);                                                                                                  \
        static auto* const function = original(&name, #name);                                                          \
        return fails(#name, EIO) ? -1 : function(path, flags, mode);                                                   \
    }

#pragma GCC visibility push(default)
extern "C" {
HSVN_COUNTED_OPEN(open)
HSVN_COUNTED_OPEN(open64)
HSVN_COUNTED(ENOSPC, ssize_t, write, (int file, const void* bytes, std::size_t size), (file, bytes, size))
HSVN_COUNTED(ENOSPC, ssize_t, pwrite, (int file, const void* bytes, std::size_t size, off_t at),
             (file, bytes, size, at))
HSVN_COUNTED(ENOSPC, ssize_t, pwrite64, (int file, const void* bytes, std::size_t size, off64_t at),
             (file, bytes, size, at))
HSVN_COUNTED(EIO, int, ftruncate, (int file, off_t size), (file, size))
HSVN_COUNTED(EIO, int, ftruncate64, (int file, off64_t size), (file, size))
// What is killed is a program, not the machine: nothing needs to reach the disk.
int fsync(int /*file*/) { return fails("fsync", EIO) ? -1 : 0; }
int fdatasync(int /*file*/) { return fails("fdatasync", EIO) ? -1 : 0; }
HSVN_COUNTED(EIO, int, rename, (const char* from, const char* to) noexcept, (from, to))
HSVN_COUNTED(EIO, int, unlink, (const char* path), (path))
HSVN_COUNTED(EIO, int, unlinkat, (int folder, const char* path, int flags), (folder, path, flags))
HSVN_COUNTED(EIO, int, rmdir, (const char* path), (path))
HSVN_COUNTED(ENOSPC, int, mkdir, (const char* path, mode_t mode), (path, mode))
}
#pragma GCC visibility pop
