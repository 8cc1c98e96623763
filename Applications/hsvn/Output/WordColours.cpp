#include "Output/WordColours.h"

#include "Output/Display.h"
#include "Output/Output.h"

#include <HSVN/HSVN.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

namespace {

/// More than this of changed lines one after the other is not compared word by word.
constexpr std::size_t largestChange = std::size_t{1} << 20;

/// "3,4", or "3" for one line.
std::optional<std::uint64_t> lengthOf(std::string_view range)
{
    const auto comma = range.find(',');
    if (comma == std::string_view::npos) {
        return 1;
    }
    range.remove_prefix(comma + 1);
    std::uint64_t length = 0;
    const auto read = std::from_chars(range.data(), range.data() + range.size(), length);
    return read.ec == std::errc{} ? std::optional{length} : std::nullopt;
}

/// The numbers of lines in "@@ -1,3 +1,4 @@", or the same of a property.
std::optional<std::pair<std::uint64_t, std::uint64_t>> lengthsOfHunk(std::string_view line)
{
    if (!line.starts_with("@@ -") && !line.starts_with("## -")) {
        return std::nullopt;
    }
    const auto second = line.find(" +");
    const auto end = second == std::string_view::npos ? second : line.find(' ', second + 2);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const auto original = lengthOf(line.substr(4, second - 4));
    const auto modified = lengthOf(line.substr(second + 2, end - second - 2));
    return original && modified ? std::optional{std::pair{*original, *modified}} : std::nullopt;
}

/// Lines without the marks before them.
std::string unmarked(std::string_view lines)
{
    std::string text;
    while (!lines.empty()) {
        const auto end = std::min(lines.find('\n'), lines.size() - 1) + 1;
        text += lines.substr(1, end - 1);
        lines.remove_prefix(end);
    }
    return text;
}

/// Bytes of the next character; an ill-formed sequence is one.
std::size_t sizeOfCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc0 ? 2 : 1;
    for (std::size_t index = 1; index < size; ++index) {
        if (index >= text.size() || (static_cast<unsigned char>(text[index]) & 0xc0U) != 0x80U) {
            return index;
        }
    }
    return size;
}

/// Writes lines with characters of some ranges, which are counted without the marks, in a colour.
class ColouredLines
{
  public:
    ColouredLines(const std::vector<HSVNWordRange>& ranges, Display::Colour colour)
        : _range{ranges.begin()}, _end{ranges.end()}, _colour{colour}
    {
    }

    void write(std::string_view lines)
    {
        for (bool isMark = true; !lines.empty();) {
            const auto character = lines.substr(0, isMark ? 1 : sizeOfCharacter(lines));
            const bool isEnd = !isMark && (character == "\n" || character == "\r");
            append(character, !isMark && isNextInRange() && !isEnd);
            isMark = !isMark && character == "\n";
            lines.remove_prefix(character.size());
        }
        append({}, false);
        Output::writeBytes(std::exchange(_text, {}));
    }

  private:
    bool isNextInRange()
    {
        for (; _range != _end && _number >= _range->first + _range->count; ++_range) {
        }
        return _range != _end && _number++ >= _range->first;
    }

    /// Adds a character to what has the colour, or to what has none and stands before it or behind it.
    void append(std::string_view character, bool isColoured)
    {
        if (!isColoured && !_coloured.empty()) {
            Output::writeBytes(std::exchange(_text, {}));
            Display::writeColoured(std::exchange(_coloured, {}), _colour);
        }
        (isColoured ? _coloured : _text) += character;
    }

    std::vector<HSVNWordRange>::const_iterator _range;
    std::vector<HSVNWordRange>::const_iterator _end;
    Display::Colour _colour;
    std::size_t _number = 0;
    std::string _text;
    std::string _coloured;
};

} // namespace

void WordColours::take(std::string_view bytes)
{
    for (auto end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        _rest += bytes.substr(0, end + 1);
        takeLine(std::exchange(_rest, {}));
        bytes.remove_prefix(end + 1);
    }
    _rest += bytes;
}

void WordColours::finish()
{
    writeChange();
    Output::writeBytes(std::exchange(_rest, {}));
    Output::flush();
}

void WordColours::takeLine(std::string_view line)
{
    if (takeHunkLine(line)) {
        return;
    }
    writeChange();
    if (const auto lengths = lengthsOfHunk(line)) {
        std::tie(_originalLeft, _modifiedLeft) = *lengths;
    } else if (!line.starts_with('\\')) {
        _originalLeft -= _originalLeft > 0 ? 1 : 0;
        _modifiedLeft -= _modifiedLeft > 0 ? 1 : 0;
    }
    Output::writeBytes(line);
}

bool WordColours::takeHunkLine(std::string_view line)
{
    if (_original.size() + _modified.size() > largestChange) {
        writeChange();
    }
    if (line.starts_with('-') && _originalLeft > 0) {
        if (!_modified.empty()) {
            writeChange();
        }
        _original += line;
        --_originalLeft;
        return true;
    }
    if (line.starts_with('+') && _modifiedLeft > 0) {
        _modified += line;
        --_modifiedLeft;
        return true;
    }
    if (line.starts_with('\\') && !_original.empty() && _modified.empty()) {
        _markers = line;
        return true;
    }
    return false;
}

void WordColours::writeChange()
{
    if (_original.empty() && _modified.empty()) {
        return;
    }
    const bool isCompared =
        !_original.empty() && !_modified.empty() && _original.size() + _modified.size() <= largestChange;
    const auto words = isCompared ? HSVNCompareWords(unmarked(_original), unmarked(_modified)) : HSVNChangedWords{};
    ColouredLines{words.original, Display::Colour::Removed}.write(std::exchange(_original, {}));
    Output::writeBytes(std::exchange(_markers, {}));
    ColouredLines{words.modified, Display::Colour::Added}.write(std::exchange(_modified, {}));
}
