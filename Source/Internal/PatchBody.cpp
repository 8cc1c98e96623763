#include "Internal/PatchBody.h"

#include "HSVNPropertyNames.h"
#include "Internal/PatchHeader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";
// The last one is that of lines before 1.6, which Subversion reads no more.
constexpr std::array<std::string_view, 4> propertyWords{"Added", "Deleted", "Modified", "Name"};

/// A decimal number as the C library reads one.
std::optional<std::uint64_t> numberIn(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::int64_t number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc{} || read.ptr != text.data() + text.size() || text.starts_with('-') ||
        (isNegative && number != 0))
    {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(number);
}

/// "3,4", or "3" for one line.
bool readRange(std::string_view text, std::uint64_t& start, std::uint64_t& length)
{
    const auto comma = text.find(',');
    const auto first = numberIn(text.substr(0, comma));
    const auto second = comma == std::string_view::npos ? 1 : numberIn(text.substr(comma + 1));
    start = first.value_or(0);
    length = second.value_or(0);
    return first && second;
}

/// What stands before the next blank behind a mark; nil when either is missing.
std::optional<std::string_view> takeMarked(std::string_view& line, char mark)
{
    const auto end = line.find(' ');
    if (!line.starts_with(mark) || end == std::string_view::npos) {
        return std::nullopt;
    }
    const auto taken = line.substr(1, end - 1);
    line.remove_prefix(end + 1);
    return taken;
}

/// "3", "3-5" or either with a star behind it.
bool isRevisionRange(std::string_view text)
{
    text.remove_suffix(text.ends_with('*') ? 1 : 0);
    const auto dash = text.find('-');
    const auto first = numberIn(text.substr(0, dash));
    const auto last = dash == std::string_view::npos ? std::nullopt : numberIn(text.substr(dash + 1));
    return first && (dash == std::string_view::npos || (last && *first < *last));
}

bool isValueOfBefore(std::string_view line) { return line.starts_with("   - "); }
bool isValueOfAfter(std::string_view line) { return line.starts_with("   + "); }

std::string_view propertyWordOf(std::string_view line)
{
    for (const auto word : propertyWords) {
        if (line.starts_with(word) && line.substr(word.size()).starts_with(": ")) {
            return word;
        }
    }
    return {};
}

bool beginsItem(std::string_view line)
{
    return line.starts_with("--- ") || line.starts_with("diff --git ") || line.starts_with("Index: ");
}

} // namespace

std::optional<HSVNPatchRanges> HSVNRangesOfHunk(std::string_view line, std::string_view mark)
{
    if (!line.starts_with(mark) || !line.substr(mark.size()).starts_with(' ')) {
        return std::nullopt;
    }
    line.remove_prefix(mark.size() + 1);
    const auto original = takeMarked(line, '-');
    const auto modified = original ? takeMarked(line, '+') : std::nullopt;
    HSVNPatchRanges ranges;
    if (!modified || !line.starts_with(mark) || !readRange(*original, ranges.originalStart, ranges.originalLength) ||
        !readRange(*modified, ranges.modifiedStart, ranges.modifiedLength))
    {
        return std::nullopt;
    }
    return ranges;
}

std::optional<std::string> HSVNPatchPropertyName(std::string_view written)
{
    if (!HSVNIsPropertyName(written)) {
        written.remove_prefix(std::min(written.find_first_not_of(blanks), written.size()));
        written = written.substr(0, written.find_last_not_of(blanks) + 1);
    }
    return HSVNIsPropertyName(written) ? std::optional{std::string{written}} : std::nullopt;
}

bool HSVNIsMergeInformation(std::string_view line)
{
    const auto slash = line.find('/');
    const auto colon = line.rfind(':');
    if (slash == std::string_view::npos || colon == std::string_view::npos || slash > colon ||
        !line.substr(colon + 1).starts_with('r'))
    {
        return false;
    }
    auto ranges = line.substr(colon + 2);
    ranges = ranges.substr(0, ranges.find_first_of(blanks));
    for (bool isLast = false; !isLast;) {
        const auto comma = ranges.find(',');
        isLast = comma == std::string_view::npos;
        if (!isRevisionRange(ranges.substr(0, comma))) {
            return false;
        }
        ranges.remove_prefix(isLast ? 0 : comma + 1);
    }
    return true;
}

HSVNPatchPart HSVNPatchBodyReader::take(const HSVNPatchRawLine& line)
{
    const auto text = line.header();
    if (const auto ranges = HSVNRangesOfHunk(text, "@@")) {
        return takeHunk(*ranges, false);
    }
    if (const auto ranges = HSVNRangesOfHunk(text, "##")) {
        return takeHunk(*ranges, true);
    }
    if (const auto word = propertyWordOf(text); !word.empty()) {
        return takeProperty(word, text.substr(word.size() + 2));
    }
    if (beginsItem(text)) {
        return {.kind = HSVNPatchPart::Kind::End};
    }
    return _property && (isValueOfBefore(text) || isValueOfAfter(text)) ? takeValue(line) : HSVNPatchPart{};
}

std::optional<std::string> HSVNPatchBodyReader::announcedItem(HSVNPatchRawLine& line)
{
    constexpr std::string_view announcement = "Property changes on: ";
    if (!line.text.starts_with(announcement)) {
        return std::nullopt;
    }
    auto name = HSVNPatchName(line.header().substr(announcement.size()));
    HSVNPatchRawLine rule;
    const bool hasRule = _lines.next(rule) && rule.text.starts_with("____");
    _lines.back(line);
    _lines.next(line); // its text is good again
    return hasRule ? std::optional{std::move(name)} : std::nullopt;
}

bool HSVNPatchBodyReader::isAnnouncementNext()
{
    HSVNPatchRawLine line;
    const bool isNext = _lines.next(line) && announcedItem(line);
    _lines.back(line);
    return isNext;
}

HSVNPatchPart HSVNPatchBodyReader::takeProperty(std::string_view word, std::string_view name)
{
    _property = HSVNPatchPropertyName(name);
    if (word != propertyWords.back()) {
        _name = _property;
    }
    return {.kind = HSVNPatchPart::Kind::Property, .word = word, .property = _property};
}

HSVNPatchPart HSVNPatchBodyReader::takeHunk(const HSVNPatchRanges& ranges, bool isOfProperty)
{
    HSVNPatchPart part{.kind = HSVNPatchPart::Kind::Hunk, .isOfProperty = isOfProperty, .ranges = ranges};
    part.offset = _lines.offset();
    part.property = isOfProperty ? _property : std::nullopt;
    _original = {.left = ranges.originalLength};
    _modified = {.left = ranges.modifiedLength};
    const bool mayTellMerges = isOfProperty && _name == HSVNMergeInformationProperty;
    bool endsWithPair = false;
    for (HSVNPatchRawLine line; _lines.next(line);) {
        const bool isMerge = mayTellMerges && HSVNIsMergeInformation(line.header());
        if (!line.text.starts_with('\\') && !isMerge && (part.isMergeInformation || !takeHunkLine(line.text))) {
            _lines.back(line);
            break;
        }
        part.isMergeInformation = part.isMergeInformation || isMerge;
        endsWithPair = line.end - line.offset - line.size == 2;
        readHunkLine(line);
    }
    part.size = _lines.offset() - part.offset;
    if (endsWithPair && isAnnouncementNext()) {
        --part.size; // Subversion puts an empty line before it: the last line ends with CR, and the LF is that line's
    }
    part.hasImpossibleLines =
        (ranges.originalStart == 0 && _original.count > 0) || (ranges.modifiedStart == 0 && _modified.count > 0);
    noteName(part);
    return part;
}

void HSVNPatchBodyReader::noteName(HSVNPatchPart& hunk)
{
    // An empty one counts in some of Subversion's ways of reading.
    hunk.lacksName = hunk.isOfProperty && !_name && !_hunkName;
    if (hunk.size > 0) {
        _hunkName = !hunk.isOfProperty ? std::nullopt : _name ? _name : _hunkName;
        _name.reset();
    }
}

bool HSVNPatchBodyReader::takeHunkLine(std::string_view line)
{
    const char mark = line.empty() ? '\0' : line.front();
    const bool isUnmarked = line.empty() || (_ignoresWhitespace && mark != '-' && mark != '+');
    if (mark == ' ' || (_original.left > 0 && _modified.left > 0 && isUnmarked)) {
        _original.take();
        _modified.take();
        return true;
    }
    // Beyond the ranges, "--" and "++" begin the header of the next item.
    if (mark == '-' && (_original.left > 0 || !line.substr(1).starts_with('-'))) {
        _original.take();
        return true;
    }
    if (mark == '+' && (_modified.left > 0 || !line.substr(1).starts_with('+'))) {
        _modified.take();
        return true;
    }
    return false;
}

HSVNPatchPart HSVNPatchBodyReader::takeValue(const HSVNPatchRawLine& line)
{
    constexpr std::uint64_t markSize = 5;
    HSVNPatchPart part{.kind = HSVNPatchPart::Kind::Value, .property = _property};
    part.isOriginal = isValueOfBefore(line.text);
    part.offset = line.offset + markSize;
    std::uint64_t end = line.offset + line.size;
    for (HSVNPatchRawLine next; _lines.next(next);) {
        const auto text = next.header();
        if (isValueOfAfter(text) || !propertyWordOf(text).empty() || beginsItem(text) || HSVNRangesOfHunk(text, "@@") ||
            HSVNRangesOfHunk(text, "##") || announcedItem(next))
        {
            _lines.back(next);
            break;
        }
        // The line end behind the value, and an empty line behind the last one, are the text's own.
        end = next.size > 0 ? next.offset + next.size : end;
    }
    part.size = end - part.offset;
    return part;
}
