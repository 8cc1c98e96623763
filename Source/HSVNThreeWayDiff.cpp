#include "HSVNThreeWayDiff.h"

#include "HSVNPlatformException.h"
#include "Internal/ComparisonParts.h"
#include "Internal/NodeText.h"

#include <algorithm>
#include <deque>
#include <fmt/format.h>

namespace {

using Kind = HSVNDiffSectionKind;
using Side = HSVNDiffSide;

HSVNComparedText textOfFileOrNothing(const std::optional<HSVNTarget>& file)
{
    return file ? HSVNTextOfFile(*file) : HSVNComparedText::ofBytes({});
}

/// Puts a merged text together until its receiver wants no more.
class Merging
{
  public:
    Merging(HSVNComparison::Parts& parts, const HSVNConflictMarkers& markers, const HSVNContentsReceiver& receiver)
        : _parts{parts}, _markers{markers}, _receiver{receiver}, _markersEnd{parts.text(Side::Mine).firstEnd()}
    {
    }

    /// @return false when the receiver wants no more, as below
    bool put(const HSVNDiffSection& section, const HSVNSectionChoice& choice)
    {
        switch (section.isCommon() ? HSVNMergePart::Automatic : choice.part) {
        case HSVNMergePart::Base:
            return put(section, Side::Base);
        case HSVNMergePart::Mine:
            return put(section, Side::Mine);
        case HSVNMergePart::Theirs:
            return put(section, Side::Theirs);
        case HSVNMergePart::MineThenTheirs:
            return put(section, Side::Mine) && put(section, Side::Theirs);
        case HSVNMergePart::TheirsThenMine:
            return put(section, Side::Theirs) && put(section, Side::Mine);
        case HSVNMergePart::Other:
            return choice.text.empty() || _receiver(choice.text);
        case HSVNMergePart::Automatic:
            break;
        }
        return section.kind == Kind::Conflict ? putConflict(section) : put(section, sideOf(section));
    }

    bool putConflict(const HSVNDiffSection& section, bool isNumbered = false)
    {
        const auto marker = [&](const std::string& text, const HSVNDiffLines& lines) {
            return _receiver((isNumbered ? numbered(text, lines) : text) + _markersEnd);
        };
        return marker(_markers.mine, section.modified) && put(section, Side::Mine) &&
               (!_markers.showsBase || (marker(_markers.base, section.original) && put(section, Side::Base))) &&
               _receiver(_markers.separator + _markersEnd) && put(section, Side::Theirs) &&
               marker(_markers.theirs, section.theirs);
    }

    /// Where the lines of a section that is not in conflict come from.
    static Side sideOf(const HSVNDiffSection& section)
    {
        return section.kind == Kind::ChangedInTheirs ? Side::Theirs : Side::Mine;
    }

  private:
    bool put(const HSVNDiffSection& section, Side side)
    {
        return _parts.text(side).readPieces(section.lines(side), _receiver);
    }
    static std::string numbered(const std::string& marker, const HSVNDiffLines& lines)
    {
        return lines.count == 1 ? fmt::format("{} ({})", marker, lines.first + 1)
                                : fmt::format("{} ({},{})", marker, lines.first + 1, lines.count);
    }

    HSVNComparison::Parts& _parts;
    const HSVNConflictMarkers& _markers;
    const HSVNContentsReceiver& _receiver;
    std::string _markersEnd;
};

/// The lines around conflicts: the last ones before each, and the first ones behind it.
class Context
{
  public:
    explicit Context(const HSVNContentsReceiver& receiver) : _receiver{receiver} {}

    /// Takes a line of the merged text.
    ///
    /// @return false when the receiver wants no more, as below
    bool take(std::string_view line)
    {
        if (_behind > 0) {
            --_behind;
            return _receiver(line);
        }
        if (_before.size() == lines) {
            _before.pop_front();
            _isCut = true;
        }
        _before.emplace_back(line);
        return true;
    }
    /// Hands out the lines before a conflict.
    bool beginConflict()
    {
        bool goesOn = !_isCut || _receiver("@@\n");
        for (; goesOn && !_before.empty(); _before.pop_front()) {
            goesOn = _receiver(_before.front());
        }
        _isCut = false;
        _behind = lines;
        return goesOn;
    }

  private:
    static constexpr std::size_t lines = 3;

    const HSVNContentsReceiver& _receiver;
    std::deque<std::string> _before;
    bool _isCut = false;     // whether lines before those were left out
    std::size_t _behind = 0; // how many lines behind the last conflict are still to be shown
};

} // namespace

HSVNThreeWayDiff HSVNThreeWayDiff::ofFiles(const std::optional<HSVNTarget>& base, const HSVNTarget& mine,
                                           const HSVNTarget& theirs, const HSVNContextRef& context,
                                           const HSVNDiffOptionsRef& options)
{
    HSVNRequireComparison(context, options);
    return HSVNThreeWayDiff{Parts::compared(
        staticClassName, "diffOfFiles:", HSVNComparedTexts(textOfFileOrNothing, base, mine, theirs), context, options)};
}

HSVNThreeWayDiff HSVNThreeWayDiff::ofTexts(std::string base, std::string mine, std::string theirs,
                                           const HSVNContextRef& context, const HSVNDiffOptionsRef& options)
{
    HSVNRequireComparison(context, options);
    return HSVNThreeWayDiff{Parts::compared(
        staticClassName, "diffOfTexts:",
        HSVNComparedTexts(HSVNComparedText::ofBytes, std::move(base), std::move(mine), std::move(theirs)), context,
        options)};
}

HSVNThreeWayDiff HSVNThreeWayDiff::ofItems(const HSVNTargetInRevision& base, const HSVNTargetInRevision& mine,
                                           const HSVNTargetInRevision& theirs, const HSVNContextRef& context,
                                           const HSVNDiffOptionsRef& options)
{
    HSVNRequireComparison(context, options);
    const auto textOf = [&context](const HSVNTargetInRevision& item) { return HSVNTextOfItem(item, context); };
    return HSVNThreeWayDiff{Parts::compared(
        staticClassName, "diffOfItems:", HSVNComparedTexts(textOf, base, mine, theirs), context, options)};
}

bool HSVNThreeWayDiff::hasConflicts() const
{
    return std::any_of(sections().begin(), sections().end(),
                       [](const auto& section) { return section.kind == Kind::Conflict; });
}

void HSVNThreeWayDiff::merge(const std::vector<HSVNSectionChoice>& choices, const HSVNConflictMarkers& markers,
                             const HSVNContentsReceiver& receiver) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    Merging merging{parts(), markers, receiver};
    for (std::size_t index = 0; index < sections().size(); ++index) {
        if (!merging.put(sections()[index], index < choices.size() ? choices[index] : HSVNSectionChoice{})) {
            return;
        }
    }
}

std::string HSVNThreeWayDiff::merged(const std::vector<HSVNSectionChoice>& choices,
                                     const HSVNConflictMarkers& markers) const
{
    std::string text;
    merge(choices, markers, [&text](std::string_view piece) { text += piece; });
    return text;
}

void HSVNThreeWayDiff::showConflicts(const HSVNConflictMarkers& markers, const HSVNContentsReceiver& receiver) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    Merging merging{parts(), markers, receiver};
    Context context{receiver};
    bool goesOn = true;
    for (auto section = sections().begin(); goesOn && section != sections().end(); ++section) {
        if (section->kind == Kind::Conflict) {
            goesOn = context.beginConflict() && merging.putConflict(*section, true);
        } else {
            const Side side = Merging::sideOf(*section);
            parts().text(side).readLines(section->lines(side), [&](std::string_view line) {
                goesOn = context.take(line);
                return goesOn;
            });
        }
    }
}
