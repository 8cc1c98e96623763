#include "Internal/Import.h"

#include "Internal/DepthTranslation.h"

HSVNCommitResult HSVNImport(HSVNRevisionChange& change, const std::string& path, const std::string& url,
                            const HSVNImportChoices& choices)
{
    auto& operation = change.operation();
    const char* const source = operation.changed(path);
    const char* const target = operation.cString(url);
    operation.refuse(!choices.automaticProperties && !operation.isAtLeast({1, 8}), "automaticProperties");
    if (const auto importTree = operation.newest(&HSVNCommitFunctions::client_import)) {
        return change.finish(importTree(source, target, HSVNDepthForSubversion(choices.depth),
                                        !choices.matchIgnorePatterns, !choices.automaticProperties,
                                        choices.ignoreUnknownKinds, change.properties(), HSVNRevisionChange::noted,
                                        &change, operation.ctx(), operation.pool()));
    }
    operation.refuse(!choices.automaticProperties, "automaticProperties");
    operation.refuse(choices.ignoreUnknownKinds, "ignoreUnknownKinds");
    change.refuseProperties();
    svn_commit_info_t* info = nullptr;
    svn_error_t* const error =
        operation->client_import2(&info, source, target, !HSVNRecurseForDepth(choices.depth, HSVNDepthFiles),
                                  !choices.matchIgnorePatterns, operation.ctx(), operation.pool());
    return change.finish(error, info);
}
