#include "Output/HunkLine.h"

#include <fmt/format.h>

namespace {

/// "@@ -1,2 +3,4 @@", or with the marks of a property's lines.
std::string rangesOf(const HSVNPatchHunk& hunk, bool isOfProperty)
{
    return fmt::format("{0} -{1},{2} +{3},{4} {0}", isOfProperty ? "##" : "@@", hunk.originalStart, hunk.originalLength,
                       hunk.modifiedStart, hunk.modifiedLength);
}

/// How far from its place it was applied, and how well it fitted; empty for just there and all of it.
std::string deviationOf(const HSVNPatchHunk& hunk)
{
    std::string offset;
    if (hunk.matchedLine > hunk.originalStart) {
        // What a patch adds to an empty file begins at its line 0.
        const bool isFirst = hunk.originalStart == 0 && hunk.matchedLine == 1;
        offset = fmt::format("offset {}", isFirst ? 0 : hunk.matchedLine - hunk.originalStart);
    } else if (hunk.matchedLine < hunk.originalStart) {
        offset = fmt::format("offset -{}", hunk.originalStart - hunk.matchedLine);
    }
    const std::string fuzz = hunk.fuzz != 0 ? fmt::format("fuzz {}", hunk.fuzz) : "";
    return offset + (offset.empty() || fuzz.empty() ? "" : " and ") + fuzz;
}

} // namespace

std::string hunkLine(const HSVNNotification& notification)
{
    if (!notification.hunk()) {
        return "";
    }
    const HSVNPatchHunk& hunk = *notification.hunk();
    const auto& property = notification.propertyName();
    const std::string ranges = rangesOf(hunk, property.has_value());
    std::string line = fmt::format(">         rejected hunk {}", ranges);
    if (notification.action() == HSVNNotifyActionPatchAppliedHunk) {
        const std::string deviation = deviationOf(hunk);
        if (deviation.empty()) {
            return "";
        }
        line = fmt::format(">         applied hunk {} with {}", ranges, deviation);
    } else if (notification.action() == HSVNNotifyActionPatchHunkAlreadyApplied) {
        line = fmt::format(">         hunk {} already applied", ranges);
    }
    return line + (property ? fmt::format(" ({})\n", *property) : "\n");
}
