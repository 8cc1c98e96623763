#include "Internal/Add.h"

#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RecursionFlag.h"

void HSVNAdd(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNAddChoices& choices)
{
    if (const auto add = operation.newest(&HSVNChangeFunctions::client_add)) {
        const svn_depth_t depth = HSVNDepthForSubversion(choices.depth);
        HSVNForEachText(targets, [&](const char* target) {
            operation.check(add(target, depth, choices.force, !choices.matchIgnorePatterns,
                                !choices.automaticProperties, choices.makeParents, operation.ctx(), operation.pool()));
        });
        return;
    }
    operation.refuse(!choices.automaticProperties, "automaticProperties");
    operation.refuse(choices.makeParents, "makeParents");
    const bool recurse = HSVNRecursionFlag(operation, choices.depth);
    HSVNForEachText(targets, [&](const char* target) {
        operation.check(operation->client_add3(target, recurse, choices.force, !choices.matchIgnorePatterns,
                                               operation.ctx(), operation.pool()));
    });
}
