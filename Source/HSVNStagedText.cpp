#include "HSVNStagedText.h"

#include "HSVNPlatformException.h"
#include "Internal/ChosenSections.h"

#include <algorithm>
#include <cstdint>
#include <fmt/format.h>

namespace {

/// Hands out a text's lines in order; LF, CR or both end one.
class Lines
{
  public:
    explicit Lines(std::string_view text) : _rest{text} {}

    /// The lines up to one; as many as there are.
    std::string_view upTo(std::int64_t line)
    {
        std::size_t size = 0;
        for (; _next < line && size < _rest.size(); ++_next) {
            const auto end = std::min(_rest.find_first_of("\r\n", size), _rest.size() - 1);
            size = end + (_rest.compare(end, 2, "\r\n") == 0 ? 2 : 1);
        }
        const auto taken = _rest.substr(0, size);
        _rest.remove_prefix(size);
        return taken;
    }
    std::string_view rest() const { return _rest; }
    /// The number of the next line.
    std::int64_t next() const { return _next; }

  private:
    std::string_view _rest;
    std::int64_t _next = 0;
};

void require(bool holds, std::string_view what)
{
    if (!holds) {
        throw HSVNInvalidArgumentException(fmt::format("{} that the texts have not", what));
    }
}

/// The pieces of the staged text, in order.
std::vector<std::string_view> stagedPieces(std::string_view original, std::string_view modified,
                                           const std::vector<HSVNDiffSection>& sections,
                                           const std::vector<std::size_t>& chosen)
{
    const auto marks = HSVNChosenSections(chosen, sections.size());
    std::vector<std::string_view> pieces;
    Lines before{original};
    Lines after{modified};
    for (std::size_t place = 0; place < sections.size(); ++place) {
        const auto& section = sections[place];
        const auto name = fmt::format("Section {} has lines", place);
        require(section.original.count >= 0 && section.original.first >= before.next(), name);
        require(section.modified.count >= 0 && section.modified.first >= after.next(), name);
        pieces.push_back(before.upTo(section.original.first));
        after.upTo(section.modified.first);
        require(before.next() == section.original.first && after.next() == section.modified.first, name);
        const auto theirs = before.upTo(section.original.end());
        const auto ours = after.upTo(section.modified.end());
        require(before.next() == section.original.end() && after.next() == section.modified.end(), name);
        pieces.push_back(marks[place] ? ours : theirs);
    }
    pieces.push_back(before.rest());
    return pieces;
}

} // namespace

void HSVNWriteStagedText(std::string_view original, std::string_view modified,
                         const std::vector<HSVNDiffSection>& sections, const std::vector<std::size_t>& chosen,
                         const HSVNContentsReceiver& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    for (const auto piece : stagedPieces(original, modified, sections, chosen)) {
        if (!piece.empty() && !receiver(piece)) {
            return;
        }
    }
}

std::string HSVNStagedText(std::string_view original, std::string_view modified,
                           const std::vector<HSVNDiffSection>& sections, const std::vector<std::size_t>& chosen)
{
    std::string text;
    HSVNWriteStagedText(original, modified, sections, chosen, [&](std::string_view piece) { text += piece; });
    return text;
}
