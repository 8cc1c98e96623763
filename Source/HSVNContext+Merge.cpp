#include "HSVNContext.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Merge.h"

namespace {

using Ranges = std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>>;

/// @param ranges  null for all changes that are not merged yet
void mergeRanges(HSVNContext& context, const HSVNTargetInRevision& source, const Ranges* ranges,
                 const HSVNTarget& target, const HSVNMergeChoices& choices)
{
    const auto& peg = source.revision->pegRevision();
    HSVNOperation operation{
        context, "merge", {{"source", source.target.text()}, {"pegRevision", peg}, {"target", target.text()}}};
    const auto function = operation.extension(&HSVNMergeFunctions::client_merge_peg);
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
