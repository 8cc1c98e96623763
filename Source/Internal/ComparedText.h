#pragma once

#include "HSVNComparison.h"
#include "HSVNDiffSection.h"
#include "HSVNReceiver.h"
#include "Internal/FileState.h"
#include "Internal/TemporaryFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One of the texts of a comparison: bytes in memory, or a file, which is read piece by piece when its lines are asked
/// for. Used by one thread at a time.
class HSVNComparedText
{
  public:
    /// A file that belongs to somebody else.
    ///
    /// @throws HSVNException for what cannot be read and what is no file
    static HSVNComparedText ofFile(std::string path);
    /// A file that is kept as long as the text.
    static HSVNComparedText ofFile(HSVNTemporaryFile file);
    static HSVNComparedText ofBytes(std::string bytes);

    /// Nil for a file.
    const std::optional<std::string>& bytes() const { return _bytes; }
    /// Where Subversion can read the text. Bytes are written into a file first.
    const std::string& path();
    /// @throws HSVNException, HSVNStatusCode::DiffSourceModified, for a file that was changed since the object was made
    void requireUnchanged() const;

    /// Hands out lines of the text, one call a line, until the receiver wants no more.
    void readLines(const HSVNDiffLines& wanted, const HSVNContentsReceiver& receiver);
    /// Hands out the same lines as pieces of any size.
    ///
    /// @return false when the receiver wants no more
    bool readPieces(const HSVNDiffLines& wanted, const HSVNContentsReceiver& receiver);
    const HSVNLineEnds& ends();
    /// The end of the first line that has one; "\n" when none has.
    std::string firstEnd();

  private:
    /// Where some lines begin, so that others are found from there.
    struct Index
    {
        std::vector<std::int64_t> starts; // of every line whose number is a multiple of the spacing
        std::int64_t size = 0;            // of the text in bytes
        HSVNLineEnds ends;
    };

    const Index& index();
    std::int64_t offsetOf(std::int64_t line);

    std::optional<std::string> _bytes;
    std::string _path;
    std::optional<HSVNFileState> _state; // of a file that belongs to somebody else
    std::optional<HSVNTemporaryFile> _temporary;
    std::optional<Index> _index;
};
