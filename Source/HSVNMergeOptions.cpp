#include "HSVNMergeOptions.h"

HSVNMergeChoices HSVNMergeOptions::choices() const
{
    HSVNMergeChoices choices{.depth = _depth,
                             .ignoreMergeInfo = _ignoreAncestry,
                             .diffIgnoreAncestry = _ignoreAncestry,
                             .forceDelete = _force,
                             .recordOnly = _recordOnly,
                             .dryRun = _dryRun,
                             .allowMixedRevisions = true};
    if (_whitespaceCompareBehavior == 1) {
        choices.arguments.emplace_back("--ignore-space-change");
    } else if (_whitespaceCompareBehavior == 2) {
        choices.arguments.emplace_back("--ignore-all-space");
    }
    if (_ignoreEOLStyle) {
        choices.arguments.emplace_back("--ignore-eol-style");
    }
    return choices;
}
