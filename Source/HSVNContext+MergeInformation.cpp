#include "HSVNContext.h"
#include "HSVNMergingSummary.h"
#include "HSVNRevision.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Log.h"
#include "Internal/RevisionNumber.h"

namespace {

using RevisionsCall = HSVNItemsCall<const HSVNLogItemRef&>;

svn_error_t* receiveRevision(void* baton, svn_log_entry_t* record, apr_pool_t* pool)
{
    auto& call = *static_cast<RevisionsCall*>(baton);
    return call.handOver([&] { return HSVNLogItemOfEntry(call.operation, *record, pool); });
}

svn_opt_revision_t recordOf(const HSVNRevisionRef& revision)
{
    return (revision ? revision : HSVNRevision::UNSPECIFIED())->SVNRevision();
}

} // namespace

HSVNMergingSummary HSVNContext::mergingSummary(const HSVNTargetInRevision& source, const HSVNTargetInRevision& target)
{
    HSVNOperation operation{
        *this, "mergingSummary", {{"source", source.target.text()}, {"target", target.target.text()}}};
    const auto sourceRevision = source.revision->pegRevision()->SVNRevision();
    const auto targetRevision = target.revision->pegRevision()->SVNRevision();
    HSVNMergeFunctions::MergingSummary found{};
    operation.call(&HSVNMergeFunctions::client_merging_summary, &found, operation.cString(source.target.text()),
                   &sourceRevision, operation.cString(target.target.text()), &targetRevision, operation.ctx(),
                   operation.pool());
    const auto place = [](const char* url, svn_revnum_t revision) {
        return HSVNPlaceInRevision{url, HSVNRevisionNumberFromSubversion(revision)};
    };
    return {.ancestor = place(found.ancestorURL, found.ancestorRevision),
            .base = place(found.baseURL, found.baseRevision),
            .source = place(found.sourceURL, found.sourceRevision),
            .target = place(found.targetURL, found.targetRevision),
            .repositoryRoot = found.repositoryRoot,
            .reintegrates = found.reintegrates != 0};
}

void HSVNContext::mergedRevisions(const HSVNTargetInRevision& source, const HSVNTargetInRevision& target,
                                  const HSVNMergedRevisionsChoices& choices,
                                  const HSVNReceiver<const HSVNLogItemRef&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{
        *this, "mergedRevisions", {{"source", source.target.text()}, {"target", target.target.text()}}};
    const auto sourceRevision = source.revision->pegRevision()->SVNRevision();
    const auto targetRevision = target.revision->pegRevision()->SVNRevision();
    const auto start = recordOf(choices.range.first);
    const auto end = recordOf(choices.range.second);
    RevisionsCall call{operation, receiver};
    operation.call(&HSVNMergeFunctions::client_mergeinfo_log, !choices.eligible,
                   operation.cString(target.target.text()), &targetRevision, operation.cString(source.target.text()),
                   &sourceRevision, &start, &end, choices.changedPaths, HSVNDepthForSubversion(choices.depth),
                   choices.properties ? HSVNTextArray(operation, *choices.properties) : nullptr, receiveRevision, &call,
                   operation.ctx(), operation.pool());
}

std::vector<HSVNLogItemRef> HSVNContext::mergedRevisions(const HSVNTargetInRevision& source,
                                                         const HSVNTargetInRevision& target,
                                                         const HSVNMergedRevisionsChoices& choices)
{
    return HSVNCollected<HSVNLogItemRef>(
        [&](const auto& receiver) { mergedRevisions(source, target, choices, receiver); });
}
