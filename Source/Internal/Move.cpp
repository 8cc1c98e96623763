#include "Internal/Move.h"

#include "Internal/ExtensionCall.h"

HSVNCommitResult HSVNMove(HSVNRevisionChange& change, const std::vector<std::string>& sources,
                          const std::string& destination, const HSVNMoveChoices& choices, bool force)
{
    auto& operation = change.operation();
    const auto* const from = HSVNChangedArray(operation, sources);
    const char* const to = operation.changed(destination);
    const bool isOf1_4 = !operation.isAtLeast(HSVNVersion::version1_5());
    operation.refuse(isOf1_4 && sources.size() > 1, "several sources");
    operation.refuse(isOf1_4 && choices.makeParents, "makeParents");
    if (isOf1_4) {
        change.refuseProperties();
    }
    if (const auto move = operation.newest(&HSVNCommitFunctions::client_move)) {
        return change.finish(move(from, to, choices.asChild, choices.makeParents, choices.allowMixedRevisions,
                                  change.properties(), HSVNRevisionChange::noted, &change, operation.ctx(),
                                  operation.pool()));
    }
    operation.refuse(sources.size() > 1, "several sources");
    operation.refuse(choices.asChild, "asChild");
    operation.refuse(choices.makeParents, "makeParents");
    change.refuseProperties();
    svn_commit_info_t* info = nullptr;
    svn_error_t* const error = operation->client_move4(&info, APR_ARRAY_IDX(from, 0, const char*), to, force,
                                                       operation.ctx(), operation.pool());
    return change.finish(error, info);
}
