#include "Internal/PatchSource.h"

#include "HSVNException.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include <sys/stat.h>

namespace {

constexpr std::size_t blockSize = std::size_t{64} * 1024;

void failWithSystemError(std::string_view what)
{
    const int code = errno;
    HSVNException::exceptionWithReason(fmt::format("{}: {}", what, std::generic_category().message(code)), code)
        ->raise();
}

class TextSource : public HSVNPatchSource
{
  public:
    explicit TextSource(std::string text) : _text{std::move(text)} {}

    std::uint64_t size() const override { return _text.size(); }
    std::size_t read(std::uint64_t offset, char* buffer, std::size_t capacity) const override
    {
        return offset < _text.size() ? _text.copy(buffer, capacity, offset) : 0;
    }

  private:
    std::string _text;
};

/// An open file as it was when the source was made.
class FileSource : public HSVNPatchSource
{
  public:
    /// @param descriptor  which it closes
    FileSource(int descriptor, std::string name) : _descriptor{descriptor}, _name{std::move(name)}
    {
        if (::fstat(_descriptor, &_state) != 0) {
            ::close(_descriptor);
            failWithSystemError(fmt::format("Can't read '{}'", _name));
        }
    }
    ~FileSource() override { ::close(_descriptor); }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    std::uint64_t size() const override { return static_cast<std::uint64_t>(_state.st_size); }
    std::size_t read(std::uint64_t offset, char* buffer, std::size_t capacity) const override
    {
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(capacity, size() - std::min(offset, size())));
        std::size_t count = 0;
        while (count < wanted) {
            const auto read = ::pread(_descriptor, buffer + count, wanted - count, static_cast<off_t>(offset + count));
            if (read > 0) {
                count += static_cast<std::size_t>(read);
            } else if (read == 0 || errno != EINTR) {
                break;
            }
        }
        if (count < wanted || hasChanged()) {
            throw HSVNGenericException(fmt::format("'{}' has changed since it was read", _name));
        }
        return count;
    }

  private:
    bool hasChanged() const
    {
        struct stat now
        {
        };
        return ::fstat(_descriptor, &now) != 0 || now.st_size != _state.st_size ||
               now.st_mtim.tv_sec != _state.st_mtim.tv_sec || now.st_mtim.tv_nsec != _state.st_mtim.tv_nsec;
    }

    int _descriptor;
    std::string _name;
    struct stat _state
    {
    };
};

int openedTemporaryFile()
{
    const auto folder = std::filesystem::temp_directory_path();
    const int nameless = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (nameless >= 0) {
        return nameless;
    }
    std::string name = (folder / "hsvn-XXXXXX").string();
    const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (descriptor >= 0) {
        ::unlink(name.c_str());
    }
    return descriptor;
}

/// Copies what can be read but once.
std::unique_ptr<HSVNPatchSpool> copyOf(int descriptor, const std::string& path)
{
    auto spool = std::make_unique<HSVNPatchSpool>();
    std::array<char, 4096> buffer;
    for (;;) {
        const auto count = ::read(descriptor, buffer.data(), buffer.size());
        if (count == 0) {
            break;
        }
        if (count > 0) {
            spool->write({buffer.data(), static_cast<std::size_t>(count)});
        } else if (errno != EINTR) {
            const int code = errno;
            ::close(descriptor);
            errno = code;
            failWithSystemError(fmt::format("Can't read '{}'", path));
        }
    }
    ::close(descriptor);
    return spool;
}

} // namespace

void HSVNPatchSource::read(std::uint64_t offset, std::uint64_t size, const HSVNContentsReceiver& receiver) const
{
    std::string buffer(static_cast<std::size_t>(std::min<std::uint64_t>(size, blockSize)), '\0');
    while (size > 0) {
        const auto count =
            read(offset, buffer.data(), static_cast<std::size_t>(std::min<std::uint64_t>(size, buffer.size())));
        if (count == 0 || !receiver({buffer.data(), count})) {
            return;
        }
        offset += count;
        size -= count;
    }
}

HSVNPatchSourceRef HSVNPatchSourceOfText(std::string text) { return std::make_shared<TextSource>(std::move(text)); }

HSVNPatchFile HSVNOpenPatch(const std::string& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat state
    {
    };
    if (descriptor < 0 || ::fstat(descriptor, &state) != 0) {
        failWithSystemError(fmt::format("Can't open file '{}'", path));
    }
    if (S_ISREG(state.st_mode)) {
        return {std::make_shared<FileSource>(descriptor, path), path};
    }
    auto copy = copyOf(descriptor, path);
    auto source = copy->source();
    auto name = copy->path();
    return {std::move(source), std::move(name), std::move(copy)};
}

HSVNPatchSpool::HSVNPatchSpool() : _descriptor{openedTemporaryFile()}
{
    if (_descriptor < 0) {
        failWithSystemError("Can't create temporary file");
    }
}

HSVNPatchSpool::~HSVNPatchSpool() { ::close(_descriptor); }

void HSVNPatchSpool::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto count = ::write(_descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            failWithSystemError("Can't write temporary file");
        }
    }
}

std::string HSVNPatchSpool::path() const { return fmt::format("/proc/self/fd/{}", _descriptor); }

HSVNPatchSourceRef HSVNPatchSpool::source() const
{
    const int copy = ::fcntl(_descriptor, F_DUPFD_CLOEXEC, 0);
    if (copy < 0) {
        failWithSystemError("Can't read temporary file");
    }
    return std::make_shared<FileSource>(copy, "temporary file");
}
