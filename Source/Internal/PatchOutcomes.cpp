#include "Internal/PatchOutcomes.h"

#include <utility>

namespace {

HSVNHunkOutcome outcomeOf(const svn_wc_notify_t& record)
{
    if (record.action == svn_wc_notify_patch_rejected_hunk) {
        return HSVNHunkOutcome::Rejected;
    }
    if (record.action == svn_wc_notify_patch_hunk_already_applied) {
        return HSVNHunkOutcome::AlreadyThere;
    }
    if (record.hunk_fuzz > 0) {
        return HSVNHunkOutcome::AppliedWithFuzz;
    }
    // What a patch adds to an empty file begins at its line 0.
    const bool isInPlace = record.hunk_matched_line == record.hunk_original_start ||
                           (record.hunk_original_start == 0 && record.hunk_matched_line == 1);
    return isInPlace ? HSVNHunkOutcome::Applied : HSVNHunkOutcome::AppliedAtOffset;
}

HSVNPatchedHunk patchedHunkOf(const svn_wc_notify_t& record)
{
    HSVNPatchedHunk hunk{.outcome = outcomeOf(record),
                         .hunk = {.originalStart = record.hunk_original_start,
                                  .originalLength = record.hunk_original_length,
                                  .modifiedStart = record.hunk_modified_start,
                                  .modifiedLength = record.hunk_modified_length,
                                  .matchedLine = record.hunk_matched_line,
                                  .fuzz = record.hunk_fuzz}};
    if (record.prop_name) {
        hunk.propertyName = record.prop_name;
    }
    return hunk;
}

} // namespace

const char* HSVNTextOfHunkOutcome(HSVNHunkOutcome outcome)
{
    switch (outcome) {
    case HSVNHunkOutcome::Applied:
        return "applied";
    case HSVNHunkOutcome::AppliedAtOffset:
        return "applied at an offset";
    case HSVNHunkOutcome::AppliedWithFuzz:
        return "applied with fuzz";
    case HSVNHunkOutcome::Rejected:
        return "rejected";
    case HSVNHunkOutcome::AlreadyThere:
        break;
    }
    return "already there";
}

HSVNPatchOutcomes::HSVNPatchOutcomes(HSVNOperation& operation)
    : _operation{operation}, _function{operation.ctx()->notify_func2}, _baton{operation.ctx()->notify_baton2}
{
    operation.ctx()->notify_func2 = notify;
    operation.ctx()->notify_baton2 = this;
}

HSVNPatchOutcomes::~HSVNPatchOutcomes()
{
    _operation.ctx()->notify_func2 = _function;
    _operation.ctx()->notify_baton2 = _baton;
}

void HSVNPatchOutcomes::notify(void* baton, const svn_wc_notify_t* record, apr_pool_t* pool)
{
    auto& outcomes = *static_cast<HSVNPatchOutcomes*>(baton);
    HSVNGuardVoidCallback(*outcomes._operation.context(), [&] { outcomes.record(*record); });
    if (outcomes._function) {
        outcomes._function(outcomes._baton, record, pool);
    }
}

void HSVNPatchOutcomes::record(const svn_wc_notify_t& record)
{
    switch (record.action) {
    case svn_wc_notify_patch_applied_hunk:
    case svn_wc_notify_patch_rejected_hunk:
    case svn_wc_notify_patch_hunk_already_applied:
        if (!_items.empty()) {
            _items.back().hunks.push_back(patchedHunkOf(record));
        }
        break;
    default:
        _items.push_back({.path = record.path,
                          .action = record.action,
                          .nodeKind = record.kind,
                          .contentState = record.content_state,
                          .propertyState = record.prop_state});
        break;
    }
}
