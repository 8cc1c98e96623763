#include "HSVNDiffOptions.h"

#include "Internal/ComparisonArguments.h"

#include <algorithm>

namespace {

// Subversion counts them one by one for each difference, whether the texts have them or not.
constexpr std::int32_t mostContextLines = 1'000'000;

} // namespace

HSVNDiffChoices HSVNDiffOptions::choices() const
{
    auto arguments = HSVNComparisonArguments(_whitespaceCompareBehavior, _ignoreEOLStyle);
    if (_showFunctions) {
        arguments.emplace_back("--show-c-function");
    }
    if (_contextLines >= 0 && _contextLines != HSVNDiffOptions{}.contextLines()) {
        arguments.push_back("--context=" + std::to_string(std::min(_contextLines, mostContextLines)));
    }
    return {.depth = _recursive ? HSVNDepthInfinity : HSVNDepthFiles, .arguments = std::move(arguments)};
}
