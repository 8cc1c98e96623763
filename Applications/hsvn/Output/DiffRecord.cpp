#include "Output/DiffRecord.h"

#include "Output/PropertyPrinter.h"

#include <fmt/format.h>

namespace {

using Record = nlohmann::ordered_json;

Record linesRecord(const HSVNDiffLines& lines) { return {{"first", lines.first + 1}, {"count", lines.count}}; }

/// A section without its lines.
Record sectionRecord(const HSVNDiffSection& section)
{
    Record record{{"kind", section.isCommon() ? "common" : "changed"},
                  {"original", linesRecord(section.original)},
                  {"modified", linesRecord(section.modified)}};
    for (const char* const key : section.isCommon() ? std::vector{"lines"} : std::vector{"removed", "added"}) {
        record[key] = Record::array();
    }
    return record;
}

void appendSections(Record& sections, const HSVNDiffHunk& hunk)
{
    auto first = sections.size();
    for (const auto& section : hunk.sections()) {
        sections.push_back(sectionRecord(section));
    }
    hunk.readLines([&](const HSVNPatchLine& line) {
        const bool isCommon = line.kind == HSVNPatchLineKind::Common;
        if (isCommon != sections[first].contains("lines")) {
            ++first;
        }
        const char* const key = isCommon ? "lines" : line.kind == HSVNPatchLineKind::Added ? "added" : "removed";
        sections[first][key].push_back(line.text.string());
    });
}

Record propertyRecord(const HSVNPropertyChange& property)
{
    Record record{{"name", property.name()}, {"change", HSVNTextOfPatchChange(property.change())}};
    if (const auto& merges = property.mergeInformation()) {
        record["merges"] = merges->string();
    }
    if (const auto before = property.shownValue(HSVNDiffSide::Original)) {
        record["before"] = propertyValueRecord(*before);
    }
    if (const auto after = property.shownValue(HSVNDiffSide::Modified)) {
        record["after"] = propertyValueRecord(*after);
    }
    return record;
}

} // namespace

nlohmann::ordered_json diffRecord(const HSVNPatchItem& item)
{
    Record record{{"path", item.path()}, {"change", HSVNTextOfPatchChange(item.change())}};
    if (item.copySource()) {
        record["copied-from"] = *item.copySource();
    }
    if (item.copyRevision() != HSVNInvalidRevision) {
        record["copied-from-revision"] = item.copyRevision();
    }
    for (const auto& [key, mode] :
         {std::pair{"mode-before", item.originalMode()}, std::pair{"mode-after", item.modifiedMode()}})
    {
        if (mode) {
            record[key] = fmt::format("{:06o}", *mode);
        }
    }
    record["binary"] = item.isBinary();
    record["sections"] = Record::array();
    item.readHunks([&](const HSVNDiffHunk& hunk) { appendSections(record["sections"], hunk); });
    record["properties"] = Record::array();
    for (const auto& property : item.properties()) {
        record["properties"].push_back(propertyRecord(property));
    }
    return record;
}
