#include "HSVNComparison.h"

#include "HSVNEndOfLine.h"
#include "HSVNPlatformException.h"
#include "Internal/ComparisonParts.h"

#include <algorithm>

std::optional<std::string> HSVNLineEnds::style() const
{
    if (isMixed() || lf + crlf + cr == 0) {
        return std::nullopt;
    }
    return lf > 0 ? HSVNEndOfLineLF : crlf > 0 ? HSVNEndOfLineCRLF : HSVNEndOfLineCR;
}

HSVNComparison::HSVNComparison(std::unique_ptr<Parts> parts) : _parts{std::move(parts)} {}
HSVNComparison::~HSVNComparison() = default;
HSVNComparison::HSVNComparison(HSVNComparison&& other) noexcept = default;
HSVNComparison& HSVNComparison::operator=(HSVNComparison&& other) noexcept = default;

const std::vector<HSVNDiffSection>& HSVNComparison::sections() const& { return parts().sections; }
std::vector<HSVNDiffSection> HSVNComparison::sections() && { return std::move(parts().sections); }

bool HSVNComparison::hasDifferences() const
{
    return std::any_of(sections().begin(), sections().end(), [](const auto& section) { return !section.isCommon(); });
}

void HSVNComparison::readLines(HSVNDiffSide side, const HSVNDiffLines& lines,
                               const HSVNContentsReceiver& receiver) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    parts().text(side).readLines(lines, receiver);
}

std::vector<std::string> HSVNComparison::lines(const HSVNDiffSection& section, HSVNDiffSide side) const
{
    std::vector<std::string> lines;
    readLines(side, section.lines(side), [&lines](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

std::string HSVNComparison::text(const HSVNDiffSection& section, HSVNDiffSide side) const
{
    std::string text;
    parts().text(side).readPieces(section.lines(side), [&text](std::string_view piece) { text += piece; });
    return text;
}

HSVNChangedWords HSVNComparison::words(const HSVNDiffSection& section, HSVNDiffSide original,
                                       HSVNDiffSide modified) const
{
    return HSVNCompareWords(text(section, original), text(section, modified));
}

const HSVNLineEnds& HSVNComparison::lineEnds(HSVNDiffSide side) const { return parts().text(side).ends(); }
