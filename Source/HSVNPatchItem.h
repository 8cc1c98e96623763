#pragma once

#include "HSVNDiffSection.h"
#include "HSVNExport.h"
#include "HSVNReceiver.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class HSVNPatchSource;
struct HSVNPatchFacts;
struct HSVNPatchPart;

/// What a patch or a tree diff does to an item or a property.
enum class HSVNPatchChange : std::uint8_t
{
    Unknown, ///< the text does not tell: an empty or a binary file in a text without Git's headers
    Modified,
    Added,
    Deleted,
    Copied,
    Moved,
    PropertiesOnly ///< of an item whose text stays as it is
};

/// A change as people read it, such as "modified".
HSVN_EXPORT const char* HSVNTextOfPatchChange(HSVNPatchChange change);

/// A stretch of a patch's bytes, which is read when it is asked for. A value; any thread.
///
/// Reading throws `HSVNGenericException` when the patch's file has changed since it was opened.
class HSVN_EXPORT HSVNPatchText
{
  public:
    /// No bytes.
    HSVNPatchText() = default;
    /// For the library's own use, as the constructors below that take a source.
    HSVNPatchText(std::shared_ptr<const HSVNPatchSource> source, std::uint64_t offset, std::uint64_t size);

    /// How many bytes there are.
    std::uint64_t size() const { return _size; }
    /// Where the first of them is in the patch.
    std::uint64_t offset() const { return _offset; }
    /// Hands the bytes over piece by piece, until the receiver stops.
    ///
    /// @param receiver  not nil ("receiver != nil")
    void read(const HSVNContentsReceiver& receiver) const;
    /// All of them, which takes as much memory.
    std::string string() const;

  private:
    std::shared_ptr<const HSVNPatchSource> _source;
    std::uint64_t _offset = 0;
    std::uint64_t _size = 0;
};

/// Which side of a comparison has a line.
enum class HSVNPatchLineKind : std::uint8_t
{
    Common,
    Removed, ///< the original alone
    Added    ///< the modified text alone
};

/// A line of a hunk. A value; any thread.
struct HSVNPatchLine
{
    HSVNPatchLineKind kind = HSVNPatchLineKind::Common; ///< which side has it
    HSVNPatchText text{};                               ///< without the mark before it, with its end
    bool isEnded = true;                                ///< otherwise the file's last line, without an end in the file
};

/// Lines of a file or of a property's value that differ, with common ones around them. A value; any thread.
class HSVN_EXPORT HSVNDiffHunk
{
  public:
    /// For the library's own use.
    HSVNDiffHunk(const std::shared_ptr<const HSVNPatchSource>& source, const HSVNPatchPart& part);

    /// The first line of the original side, counted from 1 (0 where the side has none), as the text says.
    std::uint64_t originalStart() const { return _originalStart; }
    /// How many lines it has, as the text says.
    std::uint64_t originalLength() const { return _originalLength; }
    /// The same of the modified side.
    std::uint64_t modifiedStart() const { return _modifiedStart; }
    /// How many lines that has.
    std::uint64_t modifiedLength() const { return _modifiedLength; }
    /// The lines as they are in the patch, marks and all.
    const HSVNPatchText& text() const { return _text; }
    /// Hands the lines over one by one, until the receiver stops.
    ///
    /// @param receiver  not nil ("receiver != nil")
    void readLines(const HSVNReceiver<const HSVNPatchLine&>& receiver) const;
    /// The same as sections of a comparison: runs of common and of different lines, without a gap, from the first line
    /// of the hunk to its last.
    std::vector<HSVNDiffSection> sections() const;

  private:
    std::shared_ptr<const HSVNPatchSource> _source;
    HSVNPatchText _text;
    std::uint64_t _originalStart;
    std::uint64_t _originalLength;
    std::uint64_t _modifiedStart;
    std::uint64_t _modifiedLength;
};

/// What becomes of one property of an item. A value; any thread.
class HSVN_EXPORT HSVNPropertyChange
{
  public:
    /// For the library's own use: a change without hunks and values.
    HSVNPropertyChange(std::string name, HSVNPatchChange change) : _name{std::move(name)}, _change{change} {}

    /// The property's name.
    const std::string& name() const { return _name; }
    /// Added, Deleted or Modified.
    HSVNPatchChange change() const { return _change; }
    /// How the value's lines differ; none of merge information that is told in words, and of texts of lines before 1.7,
    /// which show both values.
    const std::vector<HSVNDiffHunk>& hunks() const { return _hunks; }
    /// What the text shows of the value on one side: all of it for a property that is added or deleted and in texts of
    /// lines before 1.7, else the lines around the differences. Nil where the property is not there, and for merge
    /// information that is told in words.
    std::optional<std::string> shownValue(HSVNDiffSide side) const;
    /// Changes of merge information, such as "   Merged /trunk:r2-3", a line each; else nil.
    const std::optional<HSVNPatchText>& mergeInformation() const { return _mergeInformation; }

  private:
    friend class HSVNPatchItem;

    std::string _name;
    HSVNPatchChange _change;
    std::vector<HSVNDiffHunk> _hunks;
    std::optional<HSVNPatchText> _originalValue;
    std::optional<HSVNPatchText> _modifiedValue;
    std::optional<HSVNPatchText> _mergeInformation;
};

/// One item of a patch or a tree diff. What it holds is read from the patch when it is asked for, so that an item is
/// small whatever the patch makes of it. A value; any thread.
///
/// Names are the bytes of the text, with "/" between components and without "." and empty ones; nothing keeps a patch
/// from naming what lies outside of a directory.
class HSVN_EXPORT HSVNPatchItem
{
  public:
    /// For the library's own use.
    HSVNPatchItem(std::shared_ptr<const HSVNPatchSource> source, const HSVNPatchFacts& facts, bool ignoreWhitespace);

    /// The item as the text names it first: in what Subversion writes of a local target, that target's path or one
    /// below it, of a URL a path below that; else the name on the side that has it, without Git's "a/" and "b/".
    const std::string& path() const { return _path; }
    /// The name on the original side; Git's headers have it below the repository's root. Nil where the side has none.
    const std::optional<std::string>& originalPath() const { return _originalPath; }
    /// The same on the modified side.
    const std::optional<std::string>& modifiedPath() const { return _modifiedPath; }
    /// What is done to the item.
    HSVNPatchChange change() const { return _change; }
    /// What a copied or moved item was made from, below the repository's root; else nil, as always in texts without
    /// Git's headers.
    const std::optional<std::string>& copySource() const { return _copySource; }
    /// The revision of a copy's source, `HSVNInvalidRevision` where the text has none.
    HSVNRevisionNumber copyRevision() const { return _copyRevision; }
    /// Whether there are Git's headers.
    bool hasGitHeader() const { return _hasGitHeader; }
    /// The file's mode on the original side, such as 0100755, where Git's headers tell one.
    const std::optional<std::uint32_t>& originalMode() const { return _originalMode; }
    /// The same on the modified side.
    const std::optional<std::uint32_t>& modifiedMode() const { return _modifiedMode; }
    /// Whether it is a file of a binary type, which has no hunks.
    bool isBinary() const { return _isBinary; }
    /// How many hunks the file has.
    std::uint64_t hunkCount() const { return _hunkCount; }
    /// Whether `properties` has any.
    bool hasProperties() const { return _hasProperties; }

    /// Hands the hunks of the file over one by one, until the receiver stops.
    ///
    /// @param receiver  not nil ("receiver != nil")
    void readHunks(const HSVNReceiver<const HSVNDiffHunk&>& receiver) const;
    /// The same, all hunks at once.
    std::vector<HSVNDiffHunk> hunks() const;
    /// The sections of all hunks, in order.
    std::vector<HSVNDiffSection> sections() const;
    /// What becomes of the properties, in the text's order.
    std::vector<HSVNPropertyChange> properties() const;
    /// All of the item's text, as it is in the patch.
    const HSVNPatchText& text() const { return _text; }
    /// The lines before what `readHunks` and `properties` read.
    HSVNPatchText header() const;

  private:
    template <class Receive>
    void readParts(Receive receive) const;
    void settleChange(const HSVNPatchFacts& facts);
    void settleCopySource(const HSVNPatchFacts& facts);

    std::shared_ptr<const HSVNPatchSource> _source;
    HSVNPatchText _text;
    std::uint64_t _bodyOffset;
    bool _ignoresWhitespace;
    std::string _path;
    std::optional<std::string> _originalPath;
    std::optional<std::string> _modifiedPath;
    HSVNPatchChange _change = HSVNPatchChange::Unknown;
    std::optional<std::string> _copySource;
    HSVNRevisionNumber _copyRevision = HSVNInvalidRevision;
    bool _hasGitHeader;
    std::optional<std::uint32_t> _originalMode;
    std::optional<std::uint32_t> _modifiedMode;
    bool _isBinary;
    std::uint64_t _hunkCount;
    bool _hasProperties;
};
