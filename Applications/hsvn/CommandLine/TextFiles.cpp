#include "CommandLine/TextFiles.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <limits>
#include <system_error>
#include <unistd.h>

namespace {

[[noreturn]] void failTo(const char* what, const std::string& path)
{
    const int code = errno;
    fail(code, fmt::format("Can't {} '{}': {}", what, path, std::generic_category().message(code)));
}

/// An open file. Standard input is read once, as in Subversion, which closes it: there is nothing in its place then.
class OpenFile
{
  public:
    explicit OpenFile(const std::string& path)
        : _descriptor{path == "-" ? STDIN_FILENO : open(NativeText::fromUTF8(path).c_str(), O_RDONLY | O_CLOEXEC)}
    {
        if (_descriptor < 0) {
            failTo("open file", path.empty() ? "." : path);
        }
    }
    ~OpenFile()
    {
        if (_descriptor == STDIN_FILENO) {
            _descriptor = open("/dev/null", O_WRONLY | O_CLOEXEC);
            dup2(_descriptor, STDIN_FILENO);
        }
        close(_descriptor);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int descriptor() const { return _descriptor; }

  private:
    int _descriptor;
};

} // namespace

std::vector<std::string> split(std::string_view text, std::string_view separators)
{
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    std::vector<std::string> pieces;
    while (!text.empty()) {
        std::string_view piece = text.substr(0, text.find_first_of(separators));
        text.remove_prefix(std::min(piece.size() + 1, text.size()));
        piece.remove_prefix(std::min(piece.find_first_not_of(whiteSpace), piece.size()));
        piece = piece.substr(0, piece.find_last_not_of(whiteSpace) + 1);
        if (!piece.empty()) {
            pieces.emplace_back(piece);
        }
    }
    return pieces;
}

std::int32_t numberOf(const std::string& text)
{
    using Limits = std::numeric_limits<std::int32_t>;
    char* end = nullptr;
    const auto number = std::strtoll(text.c_str(), &end, 10);
    if (end == text.c_str() || *end != '\0') {
        fail(IncorrectParameters, fmt::format("Could not convert '{}' into a number", text));
    }
    if (number < Limits::min() || number > Limits::max()) {
        fail(IncorrectParameters,
             fmt::format("Number '{}' is out of range '[{}, {}]'", text, Limits::min(), Limits::max()));
    }
    return static_cast<std::int32_t>(number);
}

std::string contentsOfFile(const std::string& path)
{
    const OpenFile file{path};
    std::string contents;
    std::array<char, 16384> buffer{};
    for (;;) {
        const ssize_t count = read(file.descriptor(), buffer.data(), buffer.size());
        if (count == 0) {
            return contents;
        }
        if (count < 0 && errno != EINTR) {
            const int code = errno;
            fail(code, fmt::format("Can't read {}: {}", path == "-" ? "stream" : fmt::format("file '{}'", path),
                                   std::generic_category().message(code)));
        }
        contents.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

std::string temporaryFolder()
{
    for (const char* name : {"TMPDIR", "TMP", "TEMP"}) {
        const char* const folder = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody changes the environment
        std::error_code ignored;
        if (folder != nullptr && std::filesystem::is_directory(folder, ignored) && access(folder, W_OK | X_OK) == 0) {
            return NativeText::toUTF8(folder);
        }
    }
    return P_tmpdir;
}

std::vector<std::string> linesOfTargetsFile(const std::string& path)
{
    const std::string contents = NativeText::toUTF8(contentsOfFile(path));
    return split(contents.substr(0, contents.find('\0')), "\n\r"); // where Subversion's text ends
}

std::string withUnixLineEnds(const std::string& text)
{
    std::string result;
    std::string_view kind;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '\r' && text[index] != '\n') {
            result += text[index];
            continue;
        }
        const std::string_view found = text.compare(index, 2, "\r\n") == 0 ? "\r\n" : text[index] == '\r' ? "\r" : "\n";
        if (!kind.empty() && kind != found) {
            fail(InconsistentLineEnds, "Inconsistent line ending style");
        }
        kind = found;
        index += found.size() - 1;
        result += '\n';
    }
    return result;
}

void writeAndClose(int descriptor, std::string_view contents, const std::string& path)
{
    int code = 0;
    while (!contents.empty() && code == 0) {
        const ssize_t count = write(descriptor, contents.data(), contents.size());
        if (count >= 0) {
            contents.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            code = errno;
        }
    }
    if (close(descriptor) != 0 && code == 0) {
        code = errno;
    }
    if (code != 0) {
        errno = code;
        failTo("write to", path);
    }
}

void writeFile(const std::string& path, std::string_view contents)
{
    const int descriptor = open(NativeText::fromUTF8(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        failTo("open file", path);
    }
    writeAndClose(descriptor, contents, path);
}
