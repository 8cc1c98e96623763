#include "Internal/TemporaryFile.h"

#include "Internal/FileManager.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

} // namespace

HSVNTemporaryFile::HSVNTemporaryFile()
{
    std::error_code error;
    const auto folder = std::filesystem::temp_directory_path(error);
    _path = (folder / "hsvn-text-XXXXXX").string();
    if (!error) {
        _descriptor = ::mkostemp(_path.data(), O_CLOEXEC); // makes it with the mode 0600
        error = _descriptor < 0 ? lastError() : error;
    }
    if (error) {
        HSVNFileManager::fail(fmt::format("Cannot make a temporary file in '{}': {}", folder.string(), error.message()),
                              error);
    }
}

HSVNTemporaryFile::~HSVNTemporaryFile()
{
    close();
    if (!_path.empty()) {
        ::unlink(_path.c_str());
    }
}

HSVNTemporaryFile::HSVNTemporaryFile(HSVNTemporaryFile&& other) noexcept
    : _path{std::exchange(other._path, {})}, _descriptor{std::exchange(other._descriptor, -1)}
{
}

void HSVNTemporaryFile::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto written = ::write(_descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            const auto error = lastError();
            HSVNFileManager::fail(fmt::format("Cannot write '{}': {}", _path, error.message()), error);
        }
    }
}

void HSVNTemporaryFile::close()
{
    if (_descriptor >= 0) {
        ::close(std::exchange(_descriptor, -1));
    }
}
