#pragma once

#include <string>
#include <sys/inotify.h>
#include <unistd.h>

/// Counts how often a file is opened while it lives.
class OpenedFile
{
  public:
    explicit OpenedFile(const std::string& path) : _descriptor{inotify_init1(IN_NONBLOCK | IN_CLOEXEC)}
    {
        // Between two openings it is read: equal events would become one.
        inotify_add_watch(_descriptor, path.c_str(), IN_OPEN | IN_ACCESS);
    }
    ~OpenedFile() { close(_descriptor); }
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;

    int times() const
    {
        int count = 0;
        inotify_event event{};
        while (read(_descriptor, &event, sizeof event) == sizeof event) {
            count += (event.mask & IN_OPEN) != 0 ? 1 : 0;
        }
        return count;
    }

  private:
    int _descriptor;
};
