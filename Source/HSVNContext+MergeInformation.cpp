#include "HSVNContext.h"
#include "HSVNMergingSummary.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"

HSVNMergingSummary HSVNContext::mergingSummary(const HSVNTargetInRevision& source, const HSVNTargetInRevision& target)
{
    HSVNOperation operation{
        *this, "mergingSummary", {{"source", source.target.text()}, {"target", target.target.text()}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_merging_summary);
    const auto sourceRevision = source.revision->pegRevision()->SVNRevision();
    const auto targetRevision = target.revision->pegRevision()->SVNRevision();
    HSVNBundleExtensions::MergingSummary found{};
    operation.check(function(&found, operation.cString(source.target.text()), &sourceRevision,
                             operation.cString(target.target.text()), &targetRevision, operation.ctx(),
                             operation.pool()));
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
