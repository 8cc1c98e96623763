#include "HSVNContext.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Merge.h"

namespace {

using Ranges = std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>>;

/// Refuses what the functions of older lines do not do.
void refuseForOlderLines(const HSVNOperation& operation, const Ranges* ranges, const HSVNMergeChoices& choices)
{
    if (!operation.isAtLeast({1, 8})) {
        HSVNRefuseTwoAncestries(operation, choices);
    }
    operation.refuse(choices.chooser && !operation.isAtLeast({1, 7}), "chooser");
    if (!operation.isAtLeast(HSVNVersion::version1_5())) {
        operation.refuse(!ranges, "ranges"); // it tracks no merges
        operation.refuse(!HSVNIsDepthOf1_4(choices.depth), "depth");
        operation.refuse(choices.recordOnly, "recordOnly");
    }
}

/// @param ranges  null for all changes that are not merged yet
void mergeRanges(HSVNContext& context, const HSVNTargetInRevision& source, const Ranges* ranges,
                 const HSVNTarget& target, const HSVNMergeChoices& choices)
{
    const auto& peg = source.revision->pegRevision();
    HSVNOperation operation{
        context, "merge", {{"source", source.target.text()}, {"pegRevision", peg}, {"target", target.text()}}};
    const auto function = operation.extension(&HSVNMergeFunctions::client_merge_peg);
    refuseForOlderLines(operation, ranges, choices);
    const auto from = HSVNMergeSourceOf(operation, source.target, *peg);
    const HSVNMergeRecord record{operation, choices};
    operation.check(function(from.target, ranges ? HSVNRangeArray(operation, *ranges) : nullptr, &from.revision,
                             operation.changed(target.text()), record.record(), operation.ctx(), operation.pool()));
}

} // namespace

void HSVNContext::merge(const HSVNTargetInRevision& source, const HSVNTarget& target, const HSVNMergeChoices& choices)
{
    mergeRanges(*this, source, nullptr, target, choices);
}

void HSVNContext::merge(const HSVNTargetInRevision& source, const Ranges& ranges, const HSVNTarget& target,
                        const HSVNMergeChoices& choices)
{
    for (const auto& [start, end] : ranges) {
        HSVNAssertParameter(start != nullptr && end != nullptr, "revision != nil");
    }
    mergeRanges(*this, source, &ranges, target, choices);
}

void HSVNContext::mergeDifference(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                                  const HSVNTarget& target, const HSVNMergeChoices& choices)
{
    const std::pair older{first.target.text(), first.revision->operativeRevision()};
    const std::pair younger{second.target.text(), second.revision->operativeRevision()};
    HSVNOperation operation{
        *this, "mergeDifference", {{"first", older}, {"second", younger}, {"target", target.text()}}};
    HSVNMergeDifference(operation, HSVNMergeSourceOf(operation, first.target, *older.second),
                        HSVNMergeSourceOf(operation, second.target, *younger.second), target.text(), choices);
}

void HSVNContext::reintegrate(const HSVNTargetInRevision& source, const HSVNTarget& target,
                              const HSVNMergeChoices& choices)
{
    const auto& peg = source.revision->pegRevision();
    HSVNOperation operation{
        *this, "reintegrate", {{"source", source.target.text()}, {"pegRevision", peg}, {"target", target.text()}}};
    const auto function = operation.extension(&HSVNMergeFunctions::client_merge_reintegrate);
    operation.refuse(choices.chooser && !operation.isAtLeast({1, 7}), "chooser");
    const auto from = HSVNMergeSourceOf(operation, source.target, *peg);
    const HSVNMergeRecord record{operation, choices};
    operation.check(function(from.target, &from.revision, operation.changed(target.text()), record.record(),
                             operation.ctx(), operation.pool()));
}
