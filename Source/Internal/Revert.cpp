#include "Internal/Revert.h"

#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RecursionFlag.h"

void HSVNRevert(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNRevertChoices& choices)
{
    const bool isAtLeast1_9 = operation.isAtLeast({1, 9});
    operation.refuse(choices.clearChangelists && !isAtLeast1_9, "clearChangelists");
    operation.refuse(choices.metadataOnly && !isAtLeast1_9, "metadataOnly");
    operation.refuse(!choices.keepAddedItems && !operation.isAtLeast({1, 11}), "keepAddedItems");
    if (const auto revert = operation.newest(&HSVNChangeFunctions::client_revert)) {
        operation.check(revert(targets, HSVNDepthForSubversion(choices.depth),
                               HSVNFilterArray(operation, choices.changelists), choices.clearChangelists,
                               choices.metadataOnly, choices.keepAddedItems, operation.ctx(), operation.pool()));
        return;
    }
    operation.refuse(!choices.changelists.empty(), "changelists");
    operation.refuse(choices.clearChangelists, "clearChangelists");
    operation.refuse(choices.metadataOnly, "metadataOnly");
    operation.refuse(!choices.keepAddedItems, "keepAddedItems");
    operation.check(operation->client_revert(targets, HSVNRecursionFlag(operation, choices.depth), operation.ctx(),
                                             operation.pool()));
}
