#include "Internal/PatchLines.h"

#include <algorithm>

HSVNPatchLines::HSVNPatchLines(const HSVNPatchSource& source, std::uint64_t offset, std::uint64_t end)
    : _source{source}, _offset{offset}, _end{std::min(end, source.size())}
{
}

bool HSVNPatchLines::next(HSVNPatchRawLine& line)
{
    line = {.offset = _offset, .end = _offset};
    _text.clear();
    for (auto bytes = bytesAt(line.end); !bytes.empty(); bytes = bytesAt(line.end)) {
        const auto length = std::min(bytes.find_first_of("\r\n"), bytes.size());
        _text.append(bytes.substr(0, std::min(length, keptSize - _text.size())));
        line.end += length;
        if (length < bytes.size()) {
            line.size = line.end - line.offset;
            ++line.end;
            if (bytes[length] == '\r' && bytesAt(line.end).starts_with('\n')) {
                ++line.end;
            }
            line.text = _text;
            _offset = line.end;
            return true;
        }
    }
    line.size = line.end - line.offset;
    line.text = _text;
    _offset = line.end;
    return line.size > 0;
}

std::string_view HSVNPatchLines::bytesAt(std::uint64_t offset)
{
    constexpr std::size_t blockSize = std::size_t{64} * 1024;
    if (offset >= _end) {
        return {};
    }
    if (offset < _blockOffset || offset >= _blockOffset + _block.size()) {
        _block.resize(static_cast<std::size_t>(std::min<std::uint64_t>(blockSize, _end - offset)));
        _block.resize(_source.read(offset, _block.data(), _block.size()));
        _blockOffset = offset;
    }
    std::string_view bytes{_block};
    bytes.remove_prefix(static_cast<std::size_t>(offset - _blockOffset));
    return bytes.substr(0, static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), _end - offset)));
}
