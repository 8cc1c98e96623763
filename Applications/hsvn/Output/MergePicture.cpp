#include "Output/MergePicture.h"

#include "CommandLine/Targets.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace {

/// A part of the picture: eight lines, the upper branch in the third and the lower one in the sixth; what is told of a
/// place stands above or below it.
using Part = std::array<std::string, 8>;

constexpr std::size_t upperLine = 2;
constexpr std::size_t lowerLine = 5;

/// Where the branches part; the line that goes straight on is that of the older one.
Part parting(const HSVNMergingSummary& summary)
{
    const std::string number = fmt::format("  {:<8}  ", summary.ancestor.revision);
    const std::string mark = "  |         ";
    if (summary.ancestor.url == summary.source.url) {
        return {number, mark, "-------| |--", "   \\        ", "    \\       ", "     --| |--"};
    }
    if (summary.ancestor.url == summary.target.url) {
        return {number, mark, "     --| |--", "    /       ", "   /        ", "-------| |--"};
    }
    return {number, mark, "     --| |--", "... /       ", "    \\       ", "     --| |--"};
}

/// The last full merge, if there was one.
Part lastMerge(const HSVNMergingSummary& summary)
{
    const std::string branch = "---------";
    if (summary.base.revision <= summary.ancestor.revision) {
        return {"", "", branch, "", "", branch};
    }
    const std::string number = fmt::format("{:<8} ", summary.base.revision);
    if (summary.reintegrates) {
        return {"", "", branch, "  /      ", " /       ", branch, "|        ", number};
    }
    return {number, "|        ", branch, " \\       ", "  \\      ", branch};
}

Part tips(const HSVNMergingSummary& summary, bool isWorkingCopy)
{
    const std::string mark = "|       ";
    const std::string branch = "-       ";
    return {fmt::format("{:<8}", summary.source.revision),
            mark,
            branch,
            "",
            "",
            branch,
            mark,
            isWorkingCopy ? "WC      " : fmt::format("{:<8}", summary.target.revision)};
}

/// Where in the repository a branch is.
std::string placeOf(const HSVNPlaceInRevision& branch, const HSVNMergingSummary& summary)
{
    const std::string path = HSVNURL::URLWithString(branch.url)->denormalizedRelativePath();
    return std::string{
        pathBelow(path, HSVNURL::URLWithString(summary.repositoryRoot)->denormalizedRelativePath()).value_or("")};
}

} // namespace

std::string mergePicture(const HSVNMergingSummary& summary, bool isWorkingCopy)
{
    const std::array parts{parting(summary), lastMerge(summary), tips(summary, isWorkingCopy)};
    std::string picture = "    youngest common ancestor\n"
                          "    |         last full merge\n"
                          "    |         |        tip of branch\n"
                          "    |         |        |         repository path\n"
                          "\n";
    for (std::size_t line = 0; line < Part{}.size(); ++line) {
        picture += "  ";
        for (const Part& part : parts) {
            const auto widest = std::max_element(part.begin(), part.end(),
                                                 [](const auto& a, const auto& b) { return a.size() < b.size(); });
            picture += fmt::format("{:<{}}", part.at(line), widest->size());
        }
        if (line == upperLine) {
            picture += "  " + placeOf(summary.source, summary);
        } else if (line == lowerLine) {
            picture += "  " + placeOf(summary.target, summary);
        }
        picture += '\n';
    }
    return picture;
}
