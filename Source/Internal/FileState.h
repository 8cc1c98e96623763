#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <sys/stat.h>

/// What tells a file from one that was changed or took its place.
class HSVNFileState
{
  public:
    /// The state of the file at a path, links followed, once whatever changes it from now on is bound to show: the
    /// file system's clock is coarse, so that of a file written just now the next tick is waited for.
    ///
    /// @throws HSVNException with the system's error for a file that cannot be read; HSVNStatusCode::NotFile for what
    ///                       is none
    static HSVNFileState of(const std::string& path);
    /// @throws HSVNException, HSVNStatusCode::DiffSourceModified, unless the open file is the same and unchanged
    void requireSame(int descriptor, const std::string& path) const;
    /// The same of the file that is at the path now.
    void requireSame(const std::string& path) const;

    /// What `requireSame` throws.
    [[noreturn]] static void failChanged(const std::string& path);

  private:
    explicit HSVNFileState(const struct stat& status);
    bool operator==(const HSVNFileState& other) const;

    dev_t _device;
    ino_t _number;
    off_t _size;
    timespec _modified;
    timespec _changed;
};
