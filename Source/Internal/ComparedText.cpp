#include "Internal/ComparedText.h"

#include "Internal/FileManager.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <fmt/format.h>
#include <limits>
#include <memory>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::int64_t spacing = 256; // lines from one known beginning to the next

enum class End
{
    LF,
    CRLF,
    CR,
    OfText
};

/// Answers the bytes of a text from an offset on: some of them, none at the end. They are good until the next call.
class Reader
{
  public:
    virtual ~Reader() = default;
    virtual std::string_view read(std::int64_t offset) = 0;
};

class MemoryReader : public Reader
{
  public:
    explicit MemoryReader(std::string_view bytes) : _bytes{bytes} {}
    std::string_view read(std::int64_t offset) override { return _bytes.substr(static_cast<std::size_t>(offset)); }

  private:
    std::string_view _bytes;
};

class FileReader : public Reader
{
  public:
    FileReader(const std::string& path, const std::optional<HSVNFileState>& state)
        : _path{path}, _state{state}, _descriptor{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)} // NOLINT
    {
        if (_descriptor < 0 && (errno == ENOENT || errno == ENOTDIR)) {
            HSVNFileState::failChanged(path);
        }
        require(_descriptor >= 0);
    }
    ~FileReader() override
    {
        if (_descriptor >= 0) {
            ::close(_descriptor);
        }
    }
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    std::string_view read(std::int64_t offset) override
    {
        ssize_t count = -1;
        do {
            count = ::pread(_descriptor, _buffer.data(), _buffer.size(), offset);
        } while (count < 0 && errno == EINTR);
        require(count >= 0);
        if (_state) {
            _state->requireSame(_descriptor, _path); // after the bytes are read: they were the same then, too
        }
        return {_buffer.data(), static_cast<std::size_t>(count)};
    }

  private:
    void require(bool isDone) const
    {
        if (!isDone) {
            const std::error_code error{errno, std::generic_category()};
            HSVNFileManager::fail(fmt::format("Can't read file '{}': {}", _path, error.message()), error);
        }
    }

    const std::string& _path;
    const std::optional<HSVNFileState>& _state;
    int _descriptor;
    std::array<char, 65536> _buffer{};
};

std::unique_ptr<Reader> readerOf(const std::optional<std::string>& bytes, const std::string& path,
                                 const std::optional<HSVNFileState>& state)
{
    if (bytes) {
        return std::make_unique<MemoryReader>(*bytes);
    }
    return std::make_unique<FileReader>(path, state);
}

/// Takes a text apart: calls `take(bytes, end)` for parts of lines, where `end` is nil when the line goes on, until
/// that answers false.
template <class Take>
void takeApart(Reader& reader, std::int64_t offset, Take take)
{
    bool isAfterCR = false;
    bool isOpen = false;
    for (auto piece = reader.read(offset); !piece.empty(); piece = reader.read(offset)) {
        offset += std::ssize(piece);
        if (std::exchange(isAfterCR, false)) { // at the end of the piece before
            const bool isPair = piece.front() == '\n';
            if (!take(piece.substr(0, isPair ? 1 : 0), std::optional{isPair ? End::CRLF : End::CR})) {
                return;
            }
            piece.remove_prefix(isPair ? 1 : 0);
        }
        while (!piece.empty()) {
            const auto found =
                std::find_if(piece.begin(), piece.end(), [](char byte) { return byte == '\n' || byte == '\r'; });
            auto length = static_cast<std::size_t>(found - piece.begin());
            std::optional<End> end;
            if (found != piece.end()) {
                const bool isCR = *found == '\r';
                ++length;
                isAfterCR = isCR && length == piece.size();
                if (!isAfterCR) {
                    const bool isPair = isCR && piece[length] == '\n';
                    length += isPair ? 1 : 0;
                    end = isPair ? End::CRLF : isCR ? End::CR : End::LF;
                }
            }
            isOpen = !end;
            if (!take(piece.substr(0, length), end)) {
                return;
            }
            piece.remove_prefix(length);
        }
    }
    if (isAfterCR || isOpen) {
        take(std::string_view{}, std::optional{isAfterCR ? End::CR : End::OfText});
    }
}

/// Lines from the text's first one on, whose end can be counted.
HSVNDiffLines countable(HSVNDiffLines lines)
{
    if (lines.first < 0 && lines.count > 0) {
        lines.count += lines.first;
    }
    lines.first = std::max<std::int64_t>(lines.first, 0);
    lines.count = std::clamp<std::int64_t>(lines.count, 0, std::numeric_limits<std::int64_t>::max() - lines.first);
    return lines;
}

void count(HSVNLineEnds& ends, End end)
{
    switch (end) {
    case End::LF:
        ++ends.lf;
        break;
    case End::CRLF:
        ++ends.crlf;
        break;
    case End::CR:
        ++ends.cr;
        break;
    case End::OfText:
        ends.lastLineIsOpen = true;
        break;
    }
}

} // namespace

HSVNComparedText HSVNComparedText::ofFile(std::string path)
{
    HSVNComparedText text;
    text._state = HSVNFileState::of(path);
    text._path = std::move(path);
    return text;
}

HSVNComparedText HSVNComparedText::ofFile(HSVNTemporaryFile file)
{
    HSVNComparedText text;
    text._path = file.path();
    text._temporary.emplace(std::move(file));
    return text;
}

HSVNComparedText HSVNComparedText::ofBytes(std::string bytes)
{
    HSVNComparedText text;
    text._bytes = std::move(bytes);
    return text;
}

const std::string& HSVNComparedText::path()
{
    if (_path.empty()) {
        HSVNTemporaryFile file;
        file.write(*_bytes);
        file.close();
        _path = file.path();
        _temporary.emplace(std::move(file));
    }
    return _path;
}

void HSVNComparedText::requireUnchanged() const
{
    if (_state) {
        _state->requireSame(_path);
    }
}

const HSVNComparedText::Index& HSVNComparedText::index()
{
    if (!_index) {
        Index index;
        index.starts.push_back(0);
        std::int64_t lines = 0;
        takeApart(*readerOf(_bytes, _path, _state), 0, [&](std::string_view bytes, std::optional<End> end) {
            index.size += std::ssize(bytes);
            if (end) {
                count(index.ends, *end);
                if (++lines % spacing == 0) {
                    index.starts.push_back(index.size);
                }
            }
            return true;
        });
        _index = std::move(index);
    }
    return *_index;
}

std::int64_t HSVNComparedText::offsetOf(std::int64_t line)
{
    const auto& known = index().starts;
    const auto nearest = std::clamp<std::int64_t>(line / spacing, 0, std::ssize(known) - 1);
    std::int64_t offset = known[static_cast<std::size_t>(nearest)];
    std::int64_t left = line - nearest * spacing;
    if (left > 0) {
        takeApart(*readerOf(_bytes, _path, _state), offset, [&](std::string_view bytes, std::optional<End> end) {
            offset += std::ssize(bytes);
            left -= end ? 1 : 0;
            return left > 0;
        });
    }
    return offset;
}

void HSVNComparedText::readLines(const HSVNDiffLines& wanted, const HSVNContentsReceiver& receiver)
{
    const auto lines = countable(wanted);
    if (lines.empty()) {
        return;
    }
    std::int64_t left = lines.count;
    std::string begun;
    takeApart(*readerOf(_bytes, _path, _state), offsetOf(lines.first),
              [&](std::string_view bytes, std::optional<End> end) {
                  if (!end || !begun.empty()) {
                      begun += bytes;
                      bytes = begun;
                  }
                  if (!end) {
                      return true;
                  }
                  const bool wantsMore = receiver(bytes);
                  begun.clear();
                  return wantsMore && --left > 0;
              });
}

bool HSVNComparedText::readPieces(const HSVNDiffLines& wanted, const HSVNContentsReceiver& receiver)
{
    const auto lines = countable(wanted);
    if (lines.empty()) {
        return true;
    }
    std::int64_t offset = offsetOf(lines.first);
    const std::int64_t end = offsetOf(lines.end());
    const auto reader = readerOf(_bytes, _path, _state);
    while (offset < end) {
        const auto piece = reader->read(offset).substr(0, static_cast<std::size_t>(end - offset));
        if (piece.empty() || !receiver(piece)) {
            return piece.empty();
        }
        offset += std::ssize(piece);
    }
    return true;
}

const HSVNLineEnds& HSVNComparedText::ends() { return index().ends; }

std::string HSVNComparedText::firstEnd()
{
    std::string end{"\n"};
    takeApart(*readerOf(_bytes, _path, _state), 0, [&](std::string_view, std::optional<End> found) {
        if (found) {
            end = *found == End::CRLF ? "\r\n" : *found == End::CR ? "\r" : "\n";
        }
        return !found;
    });
    return end;
}
