#include "HSVNDiffOptions.h"

#include "Internal/ComparisonArguments.h"

HSVNDiffChoices HSVNDiffOptions::choices() const
{
    auto arguments = HSVNComparisonArguments(_whitespaceCompareBehavior, _ignoreEOLStyle);
    if (_showFunctions) {
        arguments.emplace_back("--show-c-function");
    }
    if (_contextLines >= 0 && _contextLines != HSVNDiffOptions{}.contextLines()) {
        arguments.push_back("--context=" + std::to_string(_contextLines));
    }
    return {.depth = _recursive ? HSVNDepthInfinity : HSVNDepthFiles, .arguments = std::move(arguments)};
}
