#include "FuzzInput.h"

namespace {

void requireNoGap(const HSVNDiffHunk& hunk)
{
    HSVNDiffSection last;
    for (const auto& section : hunk.sections()) {
        const bool isFirst = last.original.empty() && last.modified.empty();
        require(isFirst ||
                    (section.original.first == last.original.end() && section.modified.first == last.modified.end()),
                "sections of a hunk follow one another");
        require(section.kind != last.kind || isFirst, "a section ends where the kind changes");
        require(!section.isCommon() || section.original.count == section.modified.count,
                "common lines are on both sides");
        last = section;
    }
    hunk.readLines([](const HSVNPatchLine& line) {
        const auto text = line.text.string();
        require(text.size() == line.text.size(), "a line has its size");
        require(line.isEnded || text.find_last_of("\r\n") != text.size() - 1 || text.empty(),
                "a line without an end has none");
    });
}

void readEverything(const HSVNPatchItem& item)
{
    require(item.hunks().size() <= item.hunkCount(), "no more hunks than were counted");
    require(item.header().size() <= item.text().size(), "the header is part of the item");
    item.readHunks(requireNoGap);
    for (const auto& property : item.properties()) {
        require(!property.name().empty(), "a property has a name");
        for (const auto& hunk : property.hunks()) {
            requireNoGap(hunk);
        }
        property.shownValue(HSVNDiffSide::Original);
        property.shownValue(HSVNDiffSide::Modified);
    }
}

} // namespace

// A byte of choices, and a patch.
HSVN_FUZZ_TARGET
{
    FuzzInput input{data, size};
    const HSVNPatchReadingChoices choices{.ignoreWhitespace = (input.byte() & 1U) != 0};
    const auto text = input.rest();
    const auto patch = HSVNPatch::patchWithText(text);
    std::uint64_t end = 0;
    patch->readItems(
        [&](const HSVNPatchItem& item) {
            require(item.text().offset() >= end, "items follow one another");
            end = item.text().offset() + item.text().size();
            require(end <= text.size(), "an item is part of the patch");
            readEverything(item);
        },
        choices);
    std::string written;
    patch->write([&](std::string_view bytes) { written += bytes; });
    require(written == text, "what is written is what was read");
    patch->writeUnified([](std::string_view) {});
    return 0;
}
