#include "Internal/Merge.h"

#include "HSVNNotification.h"
#include "HSVNRevision.h"
#include "Internal/Browsing.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"

namespace {

svn_error_t* callMerge(HSVNOperation& operation, const HSVNMergeSource& first, const HSVNMergeSource& second,
                       const char* target, const HSVNMergeChoices& choices)
{
    if (const auto merge = operation.newest(&HSVNMergeFunctions::client_merge)) {
        const HSVNMergeRecord record{operation, choices};
        return merge(first.target, &first.revision, second.target, &second.revision, target, record.record(),
                     operation.ctx(), operation.pool());
    }
    // The older places merge into several revisions in any case.
    HSVNRefuseTwoAncestries(operation, choices);
    operation.refuse(choices.chooser != nullptr, "chooser");
    const apr_array_header_t* const arguments = HSVNTextArray(operation, choices.arguments);
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return operation->client_merge3(first.target, &first.revision, second.target, &second.revision, target,
                                        HSVNDepthForSubversion(choices.depth), choices.diffIgnoreAncestry,
                                        choices.forceDelete, choices.recordOnly, choices.dryRun, arguments,
                                        operation.ctx(), operation.pool());
    }
    const bool recurse = HSVNRecurseForDepth(choices.depth, HSVNDepthFiles);
    if (choices.recordOnly) {
        throw HSVNInvalidArgumentException("Record only option is not supported on 1.4");
    }
    return operation->client_merge2(first.target, &first.revision, second.target, &second.revision, target, recurse,
                                    choices.diffIgnoreAncestry, choices.forceDelete, choices.dryRun, arguments,
                                    operation.ctx(), operation.pool());
}

} // namespace

HSVNMergeRecord::HSVNMergeRecord(HSVNOperation& operation, const HSVNMergeChoices& choices)
    : _choosing{operation, choices.chooser}, _record{.depth = HSVNDepthForSubversion(choices.depth),
                                                     .ignoreMergeInfo = choices.ignoreMergeInfo,
                                                     .diffIgnoreAncestry = choices.diffIgnoreAncestry,
                                                     .forceDelete = choices.forceDelete,
                                                     .recordOnly = choices.recordOnly,
                                                     .dryRun = choices.dryRun,
                                                     .allowMixedRevisions = choices.allowMixedRevisions,
                                                     .arguments = HSVNFilterArray(operation, choices.arguments),
                                                     .choosing = _choosing.record()}
{
}

void HSVNRefuseTwoAncestries(const HSVNOperation& operation, const HSVNMergeChoices& choices)
{
    operation.refuse(choices.ignoreMergeInfo != choices.diffIgnoreAncestry,
                     choices.ignoreMergeInfo ? "ignoreMergeInfo" : "diffIgnoreAncestry");
}

HSVNMergeSource HSVNMergeSourceOf(HSVNOperation& operation, const HSVNTarget& target, const HSVNRevision& revision)
{
    return {operation.cString(target.text()), HSVNRevisionOfTarget(target, revision)};
}

void HSVNMergeDifference(HSVNOperation& operation, const HSVNMergeSource& first, const HSVNMergeSource& second,
                         const std::string& target, const HSVNMergeChoices& choices)
{
    operation.check(callMerge(operation, first, second, operation.changed(target), choices));
    if (!operation.isAtLeast(HSVNVersion::version1_6())) {
        // Lines before 1.6 do not send it themselves.
        auto completed = HSVNNotification::notificationWithAction(HSVNNotifyActionMergeCompleted);
        completed->setPath(target);
        operation.context()->notify(completed);
    }
}
