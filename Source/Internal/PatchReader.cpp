#include "Internal/PatchReader.h"

#include <utility>

namespace {

constexpr std::string_view indexWord = "Index: ";

bool beginsHeader(std::string_view line) { return line.starts_with("--- ") || line.starts_with("diff --git"); }

bool tellsBinary(std::string_view line)
{
    return line.starts_with("Cannot display: file marked as a binary type") || line.starts_with("svn:mime-type = ");
}

/// Values as lines before 1.7 write them.
bool isValue(std::string_view line) { return line.starts_with("   - ") || line.starts_with("   + "); }

bool hasNames(const HSVNPatchHeader& header) { return header.oldName && header.newName; }

} // namespace

HSVNPatchReader::HSVNPatchReader(const HSVNPatchSource& source, bool ignoreWhitespace)
    : HSVNPatchBodyReader{_itemLines, ignoreWhitespace}, _itemLines{source, 0, source.size()}
{
}

bool HSVNPatchReader::next(HSVNPatchFacts& facts)
{
    facts = {.offset = _itemLines.offset()};
    for (HSVNPatchRawLine line; _itemLines.next(line);) {
        readHeaderLine(line);
        if (!takeLine(line, facts)) {
            _itemLines.back(line);
            break;
        }
    }
    if (!facts.hasHeader && hasOpenHeader(facts)) {
        facts.header = _headers.header();
        facts.hasHeader = true;
        facts.offset = facts.indexName ? facts.offset : _headerOffset;
        facts.bodyOffset = _itemLines.offset();
    }
    facts.end = _itemLines.offset();
    return facts.hasHeader || facts.indexName;
}

bool HSVNPatchReader::takeLine(HSVNPatchRawLine& line, HSVNPatchFacts& facts)
{
    if (line.text.starts_with(indexWord)) {
        return takeIndex(line, facts);
    }
    if (const auto name = announcedItem(line); name && isAnotherItem(*name, facts)) {
        return beginItem(*name, line, facts);
    }
    if (_isInBody) {
        const auto part = takePart(line, facts);
        if (part.kind != HSVNPatchPart::Kind::End) {
            return true;
        }
        _isInBody = false;
    }
    if (facts.hasHeader && beginsHeader(line.header())) {
        return false;
    }
    takeHeaderLine(line, facts);
    return true;
}

bool HSVNPatchReader::takeIndex(const HSVNPatchRawLine& line, HSVNPatchFacts& facts)
{
    if (!_isInBody && !std::exchange(_isIndexTaken, true) &&
        _headers.take(line.header()) == HSVNPatchHeaderReader::Answer::CameBefore)
    {
        complete(facts, line.offset);
    }
    const auto name = HSVNPatchName(line.header().substr(indexWord.size()));
    // Lines 1.7 to 1.10 begin a binary file with changed properties twice.
    if (facts.indexName == name && facts.isBinary && !facts.hasHeader && !facts.hasProperties) {
        _isIndexTaken = false;
        return true;
    }
    if (!beginItem(name, line, facts)) {
        return false;
    }
    _isIndexTaken = false;
    return true;
}

bool HSVNPatchReader::isAnotherItem(const std::string& name, const HSVNPatchFacts& facts) const
{
    // Git's headers have other names than the line.
    const auto& header = facts.header;
    return !_headers.hasBegun() && header.operation == HSVNPatchOperation::Unknown && facts.indexName != name &&
           header.oldName != name && header.newName != name;
}

bool HSVNPatchReader::beginItem(const std::string& name, const HSVNPatchRawLine& line, HSVNPatchFacts& facts)
{
    if (facts.hasHeader || facts.indexName || hasOpenHeader(facts)) {
        return false;
    }
    restartProperty();
    facts.indexName = name;
    facts.offset = line.offset;
    facts.bodyOffset = line.end;
    return true;
}

void HSVNPatchReader::takeHeaderLine(const HSVNPatchRawLine& line, HSVNPatchFacts& facts)
{
    const auto text = line.header();
    if (facts.indexName && takeBareLine(line, facts)) {
        return;
    }
    if (!_headers.hasBegun() || text.starts_with("diff --git")) {
        _headerOffset = line.offset;
    }
    switch (_headers.take(text)) {
    case HSVNPatchHeaderReader::Answer::Complete:
        complete(facts, line.end);
        break;
    case HSVNPatchHeaderReader::Answer::CameBefore:
        complete(facts, line.offset);
        _itemLines.back(line);
        break;
    default:
        break;
    }
}

bool HSVNPatchReader::takeBareLine(const HSVNPatchRawLine& line, HSVNPatchFacts& facts)
{
    const auto text = line.header();
    if (_headers.hasBegun() || text.starts_with("@@") || beginsHeader(text)) {
        return false;
    }
    // Subversion reads on for a header, within the property's lines, too.
    _isUncertain = _isUncertain || text.starts_with("## ") || isValue(text);
    const auto kind = takePart(line, facts).kind;
    return kind == HSVNPatchPart::Kind::Hunk || kind == HSVNPatchPart::Kind::Value;
}

HSVNPatchPart HSVNPatchReader::takePart(const HSVNPatchRawLine& line, HSVNPatchFacts& facts)
{
    _isUncertain = _isUncertain || isValue(line.text);
    const auto part = take(line);
    switch (part.kind) {
    case HSVNPatchPart::Kind::Noise:
        facts.isBinary = facts.isBinary || (facts.indexName && tellsBinary(line.header()));
        break;
    case HSVNPatchPart::Kind::Property:
        facts.hasProperties = facts.hasProperties || part.property;
        // Of merge information Subversion reads as many lines as it understands.
        _isUncertain = _isUncertain || part.property == HSVNMergeInformationProperty;
        break;
    case HSVNPatchPart::Kind::Hunk:
        if (!part.isOfProperty && part.size > 0 && facts.hunkCount++ == 0) {
            facts.firstRanges = part.ranges;
        }
        _isInBody = _isInBody && part.size > 0;
        break;
    default:
        break;
    }
    readPart(part, facts);
    return part;
}

void HSVNPatchReader::readHunkLine(const HSVNPatchRawLine& line)
{
    if (_isUncertain) {
        readHeaderLine(line);
    }
}

bool HSVNPatchReader::hasOpenHeader(const HSVNPatchFacts& facts) const
{
    return !_isInBody && _headerOffset >= facts.offset && hasNames(_headers.header());
}

void HSVNPatchReader::complete(HSVNPatchFacts& facts, std::uint64_t bodyOffset)
{
    facts.header = _headers.header();
    facts.hasHeader = true;
    facts.isBinary = facts.isBinary || facts.header.isBinary;
    facts.offset = facts.indexName ? facts.offset : _headerOffset;
    facts.bodyOffset = bodyOffset;
    _isInBody = true;
    _headers.restart();
    restart();
}
