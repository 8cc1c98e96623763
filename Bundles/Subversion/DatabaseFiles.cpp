#include "DatabaseFiles.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// SQLite follows links from the files that it keeps beside a database: it empties what a link called like its journal
// leads to. A journal may also end with the name of another file, for transactions of several databases, which
// Subversion never makes: when SQLite takes such a journal back, it removes that file, wherever it is.

namespace HSVNAdapter {
namespace {

/// The kind of what is there, links not followed; 0 for nothing.
mode_t kindOf(const std::string& path)
{
    struct stat attributes
    {
    };
    return ::lstat(path.c_str(), &attributes) == 0 ? attributes.st_mode & S_IFMT : 0;
}

bool namesAnotherFile(const std::string& journal)
{
    using Mark = std::array<unsigned char, 8>;
    static constexpr Mark endOfName{0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd7};
    const int descriptor = ::open(journal.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) {
        return false;
    }
    Mark last{};
    const off_t place = ::lseek(descriptor, -off_t{last.size()}, SEEK_END);
    const bool isRead = place >= 0 && ::pread(descriptor, last.data(), last.size(), place) == ssize_t{last.size()};
    ::close(descriptor);
    return isRead && last == endOfName;
}

} // namespace

bool leadsElsewhere(const std::string& database)
{
    for (const char* const ending : {"", "-journal", "-wal", "-shm"}) {
        const mode_t kind = kindOf(database + ending);
        if (kind != 0 && kind != S_IFREG) {
            return true;
        }
    }
    const std::string area = database.substr(0, database.rfind('/'));
    return kindOf(area + "/pristine") == S_IFLNK || kindOf(area + "/tmp") == S_IFLNK ||
           namesAnotherFile(database + "-journal");
}

} // namespace HSVNAdapter

#endif
