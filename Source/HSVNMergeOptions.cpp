#include "HSVNMergeOptions.h"

#include "Internal/ComparisonArguments.h"

HSVNMergeChoices HSVNMergeOptions::choices() const
{
    return {.depth = _depth,
            .ignoreMergeInfo = _ignoreAncestry,
            .diffIgnoreAncestry = _ignoreAncestry,
            .forceDelete = _force,
            .recordOnly = _recordOnly,
            .dryRun = _dryRun,
            .allowMixedRevisions = true,
            .arguments = HSVNComparisonArguments(_whitespaceCompareBehavior, _ignoreEOLStyle)};
}
