#pragma once

#include "Internal/PatchSource.h"

#include <cstdint>
#include <string>
#include <string_view>

/// A line of a patch, which LF, CR or both end. The text is good until the next line is read.
struct HSVNPatchRawLine
{
    std::uint64_t offset = 0;
    std::uint64_t size = 0;  ///< without the line's end
    std::uint64_t end = 0;   ///< where the next one begins
    std::string_view text{}; ///< what it begins with: all of it unless it is longer than any header
    /// The text as Subversion reads it where it looks for headers: up to its first NUL.
    std::string_view header() const { return text.substr(0, text.find('\0')); }
};

/// Reads lines one by one, however long they are, in memory that does not grow with them.
class HSVNPatchLines
{
  public:
    /// How many bytes of a line are kept.
    static constexpr std::size_t keptSize = std::size_t{16} * 1024;

    HSVNPatchLines(const HSVNPatchSource& source, std::uint64_t offset, std::uint64_t end);

    /// The next line.
    ///
    /// @return false behind the last one
    bool next(HSVNPatchRawLine& line);
    /// Has the line that was read last read once more.
    void back(const HSVNPatchRawLine& line) { _offset = line.offset; }
    /// Where the next line begins.
    std::uint64_t offset() const { return _offset; }

  private:
    /// The bytes from an offset on that are in memory; none at the end.
    std::string_view bytesAt(std::uint64_t offset);

    const HSVNPatchSource& _source;
    std::uint64_t _offset;
    std::uint64_t _end;
    std::string _block;
    std::uint64_t _blockOffset = 0;
    std::string _text;
};
