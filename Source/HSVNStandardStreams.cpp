#include "HSVNStandardStreams.h"

#include "HSVNException.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <istream>
#include <ostream>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

void raiseFileError(const char* attempt, const std::string& path, int status)
{
    HSVNException::exceptionWithReason(
        fmt::format("Can't {} '{}': {}", attempt, path, std::generic_category().message(status)), status)
        ->raise();
}

// A call that a signal interrupted is made again.
template <class Call>
std::int64_t uninterrupted(Call&& call)
{
    for (;;) {
        const std::int64_t count = call();
        if (count >= 0 || errno != EINTR) {
            return count;
        }
    }
}

} // namespace

std::int64_t HSVNStandardInputStream::read(char* buffer, std::size_t maxLength)
{
    _stream.read(buffer, static_cast<std::streamsize>(maxLength));
    return _stream.bad() ? -1 : static_cast<std::int64_t>(_stream.gcount());
}

std::int64_t HSVNStandardOutputStream::write(const char* buffer, std::size_t maxLength)
{
    return _stream.write(buffer, static_cast<std::streamsize>(maxLength)) ? static_cast<std::int64_t>(maxLength) : -1;
}

HSVNMemoryInputStream::HSVNMemoryInputStream(std::string bytes) : _bytes{std::move(bytes)} {}

std::int64_t HSVNMemoryInputStream::read(char* buffer, std::size_t maxLength)
{
    const auto count = _bytes.copy(buffer, maxLength, _position);
    _position += count;
    return static_cast<std::int64_t>(count);
}

std::int64_t HSVNMemoryOutputStream::write(const char* buffer, std::size_t maxLength)
{
    _bytes.append(buffer, maxLength);
    return static_cast<std::int64_t>(maxLength);
}

std::string HSVNMemoryOutputStream::takeBytes() { return std::exchange(_bytes, {}); }

HSVNFileDescriptor::HSVNFileDescriptor(const std::string& path, int flags) : _path{path}
{
    constexpr mode_t readableAndWritable = 0666; // less the process's mask
    _number =
        static_cast<int>(uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, readableAndWritable); }));
    if (_number < 0) {
        raiseFileError("open", path, errno);
    }
}

HSVNFileDescriptor::~HSVNFileDescriptor()
{
    if (_number >= 0) {
        ::close(_number);
    }
}

void HSVNFileDescriptor::close()
{
    // An interrupted close has closed the file all the same.
    if (_number >= 0 && ::close(std::exchange(_number, -1)) != 0 && errno != EINTR) {
        raiseFileError("write", _path, errno);
    }
}

HSVNFileInputStream::HSVNFileInputStream(const std::string& path) : _file{path, O_RDONLY} {}

std::int64_t HSVNFileInputStream::read(char* buffer, std::size_t maxLength)
{
    return uninterrupted([&] { return ::read(_file.number(), buffer, maxLength); });
}

HSVNFileOutputStream::HSVNFileOutputStream(const std::string& path) : _file{path, O_WRONLY | O_CREAT | O_TRUNC} {}

std::int64_t HSVNFileOutputStream::write(const char* buffer, std::size_t maxLength)
{
    return uninterrupted([&] { return ::write(_file.number(), buffer, maxLength); });
}
