#include "HSVNPatchItem.h"

#include "HSVNPlatformException.h"
#include "Internal/PatchReader.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace {

/// Whether what follows a name says that the side has no such file, as Subversion writes it in English.
bool tellsAbsence(std::string_view label)
{
    return label.ends_with("(nonexistent)") || label.ends_with("(revision 0)");
}

std::optional<std::string> nameOf(const std::optional<std::string>& written)
{
    return written == HSVNPatchOfNothing ? std::nullopt : written;
}

HSVNPatchChange changeNamed(std::string_view word)
{
    return word == "Added"     ? HSVNPatchChange::Added
           : word == "Deleted" ? HSVNPatchChange::Deleted
                               : HSVNPatchChange::Modified;
}

/// Adds a line to sections that have no gap.
void append(std::vector<HSVNDiffSection>& sections, HSVNPatchLineKind kind, HSVNDiffSection& next)
{
    next.kind = kind == HSVNPatchLineKind::Common ? HSVNDiffSectionKind::Common : HSVNDiffSectionKind::Changed;
    if (sections.empty() || sections.back().kind != next.kind) {
        sections.push_back(next);
    }
    auto& last = sections.back();
    const int original = kind != HSVNPatchLineKind::Added ? 1 : 0;
    const int modified = kind != HSVNPatchLineKind::Removed ? 1 : 0;
    last.original.count += original;
    last.modified.count += modified;
    next.original.first += original;
    next.modified.first += modified;
}

/// The number of a first line, counted from 0; a side without lines is told by the line before them.
std::int64_t firstLine(std::uint64_t start, std::uint64_t length)
{
    constexpr std::uint64_t last = std::uint64_t{1} << 62; // with room for the lines behind it
    return static_cast<std::int64_t>(std::min(start, last)) - (length > 0 && start > 0 ? 1 : 0);
}

} // namespace

const char* HSVNTextOfPatchChange(HSVNPatchChange change)
{
    switch (change) {
    case HSVNPatchChange::Modified:
        return "modified";
    case HSVNPatchChange::Added:
        return "added";
    case HSVNPatchChange::Deleted:
        return "deleted";
    case HSVNPatchChange::Copied:
        return "copied";
    case HSVNPatchChange::Moved:
        return "moved";
    case HSVNPatchChange::PropertiesOnly:
        return "properties only";
    case HSVNPatchChange::Unknown:
        break;
    }
    return "unknown";
}

HSVNPatchText::HSVNPatchText(std::shared_ptr<const HSVNPatchSource> source, std::uint64_t offset, std::uint64_t size)
    : _source{std::move(source)}, _offset{offset}, _size{size}
{
}

void HSVNPatchText::read(const HSVNContentsReceiver& receiver) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    if (_source) {
        _source->read(_offset, _size, receiver);
    }
}

std::string HSVNPatchText::string() const
{
    std::string text;
    read([&](std::string_view bytes) { text += bytes; });
    return text;
}

HSVNDiffHunk::HSVNDiffHunk(const std::shared_ptr<const HSVNPatchSource>& source, const HSVNPatchPart& part)
    : _source{source}, _text{source, part.offset, part.size}, _originalStart{part.ranges.originalStart},
      _originalLength{part.ranges.originalLength}, _modifiedStart{part.ranges.modifiedStart},
      _modifiedLength{part.ranges.modifiedLength}
{
}

void HSVNDiffHunk::readLines(const HSVNReceiver<const HSVNPatchLine&>& receiver) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNPatchLines lines{*_source, _text.offset(), _text.offset() + _text.size()};
    std::optional<HSVNPatchLine> last; // which the line behind it may say to have no end
    std::uint64_t sizeWithoutEnd = 0;
    for (HSVNPatchRawLine line; lines.next(line);) {
        const char mark = line.text.empty() ? '\0' : line.text.front();
        if (mark == '\\') {
            if (last) {
                last->isEnded = false;
                last->text = {_source, last->text.offset(), sizeWithoutEnd};
            }
            continue;
        }
        if (last && !receiver(*std::exchange(last, std::nullopt))) {
            return;
        }
        const std::uint64_t markSize = mark == ' ' || mark == '-' || mark == '+' ? 1 : 0;
        sizeWithoutEnd = line.size - markSize;
        last = HSVNPatchLine{.kind = mark == '-'   ? HSVNPatchLineKind::Removed
                                     : mark == '+' ? HSVNPatchLineKind::Added
                                                   : HSVNPatchLineKind::Common,
                             .text = {_source, line.offset + markSize, line.end - line.offset - markSize}};
    }
    if (last) {
        receiver(*last);
    }
}

std::vector<HSVNDiffSection> HSVNDiffHunk::sections() const
{
    std::vector<HSVNDiffSection> sections;
    HSVNDiffSection next;
    next.original.first = firstLine(_originalStart, _originalLength);
    next.modified.first = firstLine(_modifiedStart, _modifiedLength);
    readLines([&](const HSVNPatchLine& line) { append(sections, line.kind, next); });
    return sections;
}

std::optional<std::string> HSVNPropertyChange::shownValue(HSVNDiffSide side) const
{
    const bool isOriginal = side == HSVNDiffSide::Original;
    if (const auto& value = isOriginal ? _originalValue : _modifiedValue) {
        return value->string();
    }
    if (_mergeInformation || _hunks.empty() || (isOriginal && _change == HSVNPatchChange::Added) ||
        (!isOriginal && _change == HSVNPatchChange::Deleted))
    {
        return std::nullopt;
    }
    std::string value;
    const auto other = isOriginal ? HSVNPatchLineKind::Added : HSVNPatchLineKind::Removed;
    for (const auto& hunk : _hunks) {
        hunk.readLines([&](const HSVNPatchLine& line) { value += line.kind == other ? "" : line.text.string(); });
    }
    return value;
}

HSVNPatchItem::HSVNPatchItem(std::shared_ptr<const HSVNPatchSource> source, const HSVNPatchFacts& facts,
                             bool ignoreWhitespace)
    : _source{std::move(source)}, _text{_source, facts.offset, facts.end - facts.offset}, _bodyOffset{facts.bodyOffset},
      _ignoresWhitespace{ignoreWhitespace}, _originalPath{nameOf(facts.header.oldName)},
      _modifiedPath{nameOf(facts.header.newName)}, _hasGitHeader{facts.header.operation != HSVNPatchOperation::Unknown},
      _originalMode{facts.header.oldMode}, _modifiedMode{facts.header.newMode}, _isBinary{facts.isBinary},
      _hunkCount{facts.hunkCount}, _hasProperties{facts.hasProperties}
{
    settleCopySource(facts);
    settleChange(facts);
    const bool isGone = _change == HSVNPatchChange::Deleted && _originalPath;
    _path = facts.indexName.value_or(isGone ? *_originalPath : _modifiedPath.value_or(_originalPath.value_or("")));
}

void HSVNPatchItem::settleCopySource(const HSVNPatchFacts& facts)
{
    if (facts.header.operation != HSVNPatchOperation::Copy && facts.header.operation != HSVNPatchOperation::Move) {
        return;
    }
    _copySource = _originalPath;
    const auto mark = _copySource ? _copySource->rfind('@') : std::string::npos;
    if (facts.header.operation != HSVNPatchOperation::Copy || mark == std::string::npos) {
        return;
    }
    HSVNRevisionNumber revision = HSVNInvalidRevision;
    const char* const end = _copySource->data() + _copySource->size();
    const auto read = std::from_chars(_copySource->data() + mark + 1, end, revision);
    if (read.ec == std::errc{} && read.ptr == end && revision >= 0) {
        _copyRevision = revision;
        _copySource->resize(mark);
        _originalPath = _copySource;
    }
}

void HSVNPatchItem::settleChange(const HSVNPatchFacts& facts)
{
    const auto& header = facts.header;
    const auto& ranges = facts.firstRanges;
    const bool isOne = _hunkCount == 1;
    const bool hasText = _hunkCount > 0 || _isBinary;
    switch (header.operation) {
    case HSVNPatchOperation::Add:
        _change = HSVNPatchChange::Added;
        return;
    case HSVNPatchOperation::Delete:
        _change = HSVNPatchChange::Deleted;
        return;
    case HSVNPatchOperation::Copy:
        _change = HSVNPatchChange::Copied;
        return;
    case HSVNPatchOperation::Move:
        _change = HSVNPatchChange::Moved;
        return;
    case HSVNPatchOperation::Modify:
        _change = hasText || !_hasProperties ? HSVNPatchChange::Modified : HSVNPatchChange::PropertiesOnly;
        return;
    case HSVNPatchOperation::Unknown:
        break;
    }
    if (!facts.hasHeader) {
        _change = _hasProperties && !_isBinary ? HSVNPatchChange::PropertiesOnly : HSVNPatchChange::Unknown;
    } else if (!_originalPath || tellsAbsence(header.oldLabel) || (isOne && ranges.originalStart == 0)) {
        _change = HSVNPatchChange::Added;
    } else if (!_modifiedPath || tellsAbsence(header.newLabel) || (isOne && ranges.modifiedStart == 0)) {
        _change = HSVNPatchChange::Deleted;
    } else {
        _change = hasText || !_hasProperties ? HSVNPatchChange::Modified : HSVNPatchChange::PropertiesOnly;
    }
}

template <class Receive>
void HSVNPatchItem::readParts(Receive receive) const
{
    HSVNPatchLines lines{*_source, _bodyOffset, _text.offset() + _text.size()};
    HSVNPatchBodyReader body{lines, _ignoresWhitespace};
    for (HSVNPatchRawLine line; lines.next(line);) {
        const auto part = body.take(line);
        if (part.kind == HSVNPatchPart::Kind::End || !receive(part)) {
            return;
        }
    }
}

void HSVNPatchItem::readHunks(const HSVNReceiver<const HSVNDiffHunk&>& receiver) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    std::uint64_t count = 0;
    readParts([&](const HSVNPatchPart& part) {
        const bool isHunk = part.kind == HSVNPatchPart::Kind::Hunk && !part.isOfProperty && part.size > 0;
        return !isHunk || (count++ < _hunkCount && receiver(HSVNDiffHunk{_source, part}));
    });
}

std::vector<HSVNDiffHunk> HSVNPatchItem::hunks() const
{
    std::vector<HSVNDiffHunk> hunks;
    readHunks([&](const HSVNDiffHunk& hunk) { hunks.push_back(hunk); });
    return hunks;
}

std::vector<HSVNDiffSection> HSVNPatchItem::sections() const
{
    std::vector<HSVNDiffSection> sections;
    readHunks([&](const HSVNDiffHunk& hunk) {
        const auto further = hunk.sections();
        sections.insert(sections.end(), further.begin(), further.end());
    });
    return sections;
}

std::vector<HSVNPropertyChange> HSVNPatchItem::properties() const
{
    std::vector<HSVNPropertyChange> properties;
    readParts([&](const HSVNPatchPart& part) {
        if (part.kind == HSVNPatchPart::Kind::Property && part.property) {
            properties.emplace_back(*part.property, changeNamed(part.word));
        }
        if (properties.empty()) {
            return true;
        }
        auto& last = properties.back();
        const HSVNPatchText text{_source, part.offset, part.size};
        if (part.kind == HSVNPatchPart::Kind::Value) {
            (part.isOriginal ? last._originalValue : last._modifiedValue) = text;
            last._change = last._originalValue && last._modifiedValue ? HSVNPatchChange::Modified
                           : last._originalValue                      ? HSVNPatchChange::Deleted
                                                                      : HSVNPatchChange::Added;
        } else if (part.kind == HSVNPatchPart::Kind::Hunk && part.isMergeInformation) {
            last._mergeInformation = text;
        } else if (part.kind == HSVNPatchPart::Kind::Hunk && part.isOfProperty && part.size > 0) {
            last._hunks.emplace_back(_source, part);
        }
        return true;
    });
    return properties;
}

HSVNPatchText HSVNPatchItem::header() const { return {_source, _text.offset(), _bodyOffset - _text.offset()}; }
