#pragma once

#include "Internal/PatchBody.h"
#include "Internal/PatchHeader.h"
#include "Internal/PatchLines.h"

#include <cstdint>
#include <optional>
#include <string>

/// What a patch tells of one item; its text stays where it is.
struct HSVNPatchFacts
{
    std::optional<std::string> indexName{}; ///< of the line "Index: NAME"
    HSVNPatchHeader header{};
    bool hasHeader = false;       ///< otherwise the line "Index: NAME" is all that there is
    std::uint64_t offset = 0;     ///< of the item's first line
    std::uint64_t bodyOffset = 0; ///< of what follows the header
    std::uint64_t end = 0;
    std::uint64_t hunkCount = 0; ///< of the text
    bool hasProperties = false;
    bool isBinary = false;
    HSVNPatchRanges firstRanges{}; ///< of the text's first hunk
};

/// Reads a patch item by item, in the unified format or Git's, as Subversion's own reader does, in memory that does not
/// grow with the patch.
///
/// An item begins where Subversion sees one, and with every line "Index: NAME" besides, behind which may be nothing
/// that Subversion reads: a binary file, or an empty one. Lines before 1.7 announce the property changes of an item
/// whose text is the same without such a line.
class HSVNPatchReader : private HSVNPatchBodyReader
{
  public:
    /// @param source  outlives the reader
    HSVNPatchReader(const HSVNPatchSource& source, bool ignoreWhitespace);

    /// The next item.
    ///
    /// @return false when there are no more
    /// @throws HSVNGenericException when the source cannot be read
    bool next(HSVNPatchFacts& facts);

  protected:
    /// Told of every line that Subversion may take for one of a header, in order, some of them twice.
    virtual void readHeaderLine(const HSVNPatchRawLine& /*line*/) {}
    /// Told of everything that is not part of a header.
    virtual void readPart(const HSVNPatchPart& /*part*/, const HSVNPatchFacts& /*facts*/) {}

  private:
    void readHunkLine(const HSVNPatchRawLine& line) override;
    bool takeLine(HSVNPatchRawLine& line, HSVNPatchFacts& facts);
    bool isAnotherItem(const std::string& name, const HSVNPatchFacts& facts) const;
    bool beginItem(const std::string& name, const HSVNPatchRawLine& line, HSVNPatchFacts& facts);
    bool takeIndex(const HSVNPatchRawLine& line, HSVNPatchFacts& facts);
    void takeHeaderLine(const HSVNPatchRawLine& line, HSVNPatchFacts& facts);
    bool takeBareLine(const HSVNPatchRawLine& line, HSVNPatchFacts& facts);
    HSVNPatchPart takePart(const HSVNPatchRawLine& line, HSVNPatchFacts& facts);
    bool hasOpenHeader(const HSVNPatchFacts& facts) const;
    void complete(HSVNPatchFacts& facts, std::uint64_t bodyOffset);

    HSVNPatchLines _itemLines;
    HSVNPatchHeaderReader _headers;
    std::uint64_t _headerOffset = 0; ///< of the header's first line
    bool _isInBody = false;          ///< as Subversion sees it
    bool _isIndexTaken = false;      ///< by the reader of headers, though it begins another item
    bool _isUncertain = false;       ///< whether Subversion may see headers in what are hunks here
};
