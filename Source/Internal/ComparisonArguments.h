#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What `HSVNDiffOptions` and `HSVNMergeOptions` choose, as Subversion's comparison of files reads it.
///
/// @param whitespaceCompareBehavior  1 ignores changes in the amount of white space, 2 ignores it altogether
inline std::vector<std::string> HSVNComparisonArguments(std::int32_t whitespaceCompareBehavior, bool ignoreEOLStyle)
{
    std::vector<std::string> arguments;
    if (whitespaceCompareBehavior == 1) {
        arguments.emplace_back("--ignore-space-change");
    } else if (whitespaceCompareBehavior == 2) {
        arguments.emplace_back("--ignore-all-space");
    }
    if (ignoreEOLStyle) {
        arguments.emplace_back("--ignore-eol-style");
    }
    return arguments;
}
