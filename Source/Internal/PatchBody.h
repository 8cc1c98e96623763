#pragma once

#include "Internal/PatchLines.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The property whose changes may be told in words.
inline constexpr std::string_view HSVNMergeInformationProperty = "svn:mergeinfo";

/// The lines that a hunk says it is about, counted from 1, as they are written.
struct HSVNPatchRanges
{
    std::uint64_t originalStart = 0;
    std::uint64_t originalLength = 0;
    std::uint64_t modifiedStart = 0;
    std::uint64_t modifiedLength = 0;
};

/// The ranges of a hunk's first line, such as "@@ -1,3 +1,4 @@"; nil for any other line.
///
/// @param mark  "@@", or "##" of a property's hunk
std::optional<HSVNPatchRanges> HSVNRangesOfHunk(std::string_view line, std::string_view mark);

/// The name in a line such as "Added: NAME"; nil for what Subversion takes for no property's name.
std::optional<std::string> HSVNPatchPropertyName(std::string_view written);

/// What follows an item's header, piece by piece.
struct HSVNPatchPart
{
    enum class Kind : std::uint8_t
    {
        End,      ///< the body ends before the line
        Noise,    ///< a line that is none of the others
        Property, ///< "Added: NAME" and its like: what follows is about this property
        Hunk,     ///< the lines of a hunk; none of a hunk that is empty, behind which Subversion ends the body
        Value     ///< a property's value as lines before 1.7 write it, which Subversion reads no more
    };
    Kind kind = Kind::Noise;
    /// The word of a property's line, such as "Added"; "Name" of the oldest lines.
    std::string_view word{};
    /// Nil for a name that is none.
    std::optional<std::string> property{};
    bool isOfProperty = false;       ///< of a hunk
    bool isMergeInformation = false; ///< of a hunk: in words, not as lines of the value
    bool lacksName = false; ///< of a property's hunk: no line before says which property's, as Subversion reads
    bool hasImpossibleLines = false; ///< of a hunk: lines of a side that begins at line 0, and so has none
    bool isOriginal = false;         ///< of a value: the one of before
    HSVNPatchRanges ranges{};
    std::uint64_t offset = 0; ///< of a hunk's lines, or of a value
    std::uint64_t size = 0;
};

/// Reads what follows headers. How far a hunk goes is decided by Subversion's rules: by its ranges as long as its lines
/// are there, and beyond them where lines go on that can be nothing else.
class HSVNPatchBodyReader
{
  public:
    /// @param ignoreWhitespace  a context's lines may lack the blank before them
    HSVNPatchBodyReader(HSVNPatchLines& lines, bool ignoreWhitespace)
        : _lines{lines}, _ignoresWhitespace{ignoreWhitespace}
    {
    }
    virtual ~HSVNPatchBodyReader() = default;
    HSVNPatchBodyReader(const HSVNPatchBodyReader&) = delete;
    HSVNPatchBodyReader& operator=(const HSVNPatchBodyReader&) = delete;

    /// What a line, which has just been read, begins. The lines of a hunk or a value are read, too.
    HSVNPatchPart take(const HSVNPatchRawLine& line);
    /// The item that a line, which has just been read, announces property changes of, with a rule below it; nil for any
    /// other line.
    std::optional<std::string> announcedItem(HSVNPatchRawLine& line);
    /// Begins the body of another item.
    void restart() { _property = _name = _hunkName = std::nullopt; }
    /// Begins the text of another item within what Subversion takes for one body.
    void restartProperty() { _property.reset(); }

  protected:
    /// Told of every line of a hunk.
    virtual void readHunkLine(const HSVNPatchRawLine& /*line*/) {}

  private:
    /// The lines of one side of a hunk.
    struct Side
    {
        std::uint64_t left = 0; ///< as the hunk says
        std::uint64_t count = 0;

        void take()
        {
            left -= left > 0 ? 1 : 0;
            ++count;
        }
    };

    HSVNPatchPart takeHunk(const HSVNPatchRanges& ranges, bool isOfProperty);
    HSVNPatchPart takeProperty(std::string_view word, std::string_view name);
    HSVNPatchPart takeValue(const HSVNPatchRawLine& line);
    void noteName(HSVNPatchPart& hunk);
    bool isAnnouncementNext();
    bool takeHunkLine(std::string_view line);

    HSVNPatchLines& _lines;
    bool _ignoresWhitespace;
    std::optional<std::string> _property;
    // What Subversion takes for the property's name: the one since the hunk before, else that hunk's.
    std::optional<std::string> _name;
    std::optional<std::string> _hunkName;
    Side _original;
    Side _modified;
};

/// Whether a line of merge information in words, such as "   Merged /trunk:r2-3".
bool HSVNIsMergeInformation(std::string_view line);
