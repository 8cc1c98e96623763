#include "HSVNContext.h"
#include "HSVNDifference.h"
#include "Internal/Browsing.h"
#include "Internal/ContentsStream.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"

namespace {

using Revisions = std::pair<HSVNRevisionRef, HSVNRevisionRef>;

HSVNBundleExtensions::Comparing recordOf(const HSVNOperation& operation, const HSVNDiffChoices& choices)
{
    return {.depth = HSVNDepthForSubversion(choices.depth),
            .ignoreAncestry = choices.ignoreAncestry,
            .omitAdded = choices.omitAdded,
            .omitDeleted = choices.omitDeleted,
            .copiesAsAdds = choices.copiesAsAdds,
            .ignoreContentType = choices.ignoreContentType,
            .ignoreProperties = choices.ignoreProperties,
            .propertiesOnly = choices.propertiesOnly,
            .gitFormat = choices.gitFormat,
            .arguments = choices.arguments ? HSVNTextArray(operation, *choices.arguments) : nullptr,
            .changelists = HSVNFilterArray(operation, choices.changelists)};
}

/// An item in two revisions, or two items each in its own, as Subversion takes them.
struct Sides
{
    svn_opt_revision_t first;
    svn_opt_revision_t second;
};

Sides sidesOf(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second)
{
    return {HSVNRevisionOfTarget(first.target, *first.revision->operativeRevision()),
            HSVNRevisionOfTarget(second.target, *second.revision->operativeRevision())};
}

Sides sidesOf(const Revisions& revisions) { return {revisions.first->SVNRevision(), revisions.second->SVNRevision()}; }

void requireRevisions(const Revisions& revisions)
{
    HSVNAssertParameter(revisions.first != nullptr && revisions.second != nullptr, "revision != nil");
}

HSVNStatusKind statusOf(svn_client_diff_summarize_kind_t kind)
{
    switch (kind) {
    case svn_client_diff_summarize_kind_added:
        return HSVNStatusKindAdded;
    case svn_client_diff_summarize_kind_modified:
        return HSVNStatusKindModified;
    case svn_client_diff_summarize_kind_deleted:
        return HSVNStatusKindDeleted;
    case svn_client_diff_summarize_kind_normal:
        break;
    }
    return HSVNStatusKindNone;
}

/// What takes a text; nil stands for the process's own stream.
class Output
{
  public:
    Output(HSVNOperation& operation, const HSVNContentsReceiver& receiver)
        : _stream{operation, receiver}, _isChosen{receiver != nullptr}
    {
    }
    svn_stream_t* streamOrNull() const { return _isChosen ? static_cast<svn_stream_t*>(_stream) : nullptr; }

  private:
    HSVNContentsStream _stream;
    bool _isChosen;
};

struct Summary
{
    HSVNOperation& operation;
    const HSVNReceiver<const HSVNDifference&>& receiver;
};

svn_error_t* receiveDifference(const svn_client_diff_summarize_t* record, void* baton, apr_pool_t* /*pool*/)
{
    const auto& summary = *static_cast<Summary*>(baton);
    return HSVNGuardCallback(*summary.operation.context(), [&] {
        return HSVNHandOver(summary.operation, summary.receiver,
                            HSVNDifference{record->path, statusOf(record->summarize_kind), record->prop_changed != 0,
                                           static_cast<HSVNNodeKind>(record->node_kind)});
    });
}

} // namespace

void HSVNContext::diff(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                       const HSVNDiffChoices& choices, const HSVNContentsReceiver& output,
                       const HSVNContentsReceiver& errors)
{
    HSVNOperation operation{*this, "diff", {{"first", first.target.text()}, {"second", second.target.text()}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff);
    const auto sides = sidesOf(first, second);
    const auto record = recordOf(operation, choices);
    const Output out{operation, output};
    const Output err{operation, errors};
    operation.check(function(out.streamOrNull(), err.streamOrNull(), operation.cString(first.target.text()),
                             &sides.first, operation.cString(second.target.text()), &sides.second, &record,
                             operation.ctx(), operation.pool()));
}

void HSVNContext::diff(const HSVNTargetInRevision& target, const Revisions& revisions, const HSVNDiffChoices& choices,
                       const HSVNContentsReceiver& output, const HSVNContentsReceiver& errors)
{
    requireRevisions(revisions);
    HSVNOperation operation{*this, "diff", {{"target", target.target.text()}, {"revisions", revisions}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff_peg);
    const auto peg = HSVNRevisionOfTarget(target.target, *target.revision->pegRevision());
    const auto sides = sidesOf(revisions);
    const auto record = recordOf(operation, choices);
    const Output out{operation, output};
    const Output err{operation, errors};
    operation.check(function(out.streamOrNull(), err.streamOrNull(), operation.cString(target.target.text()), &peg,
                             &sides.first, &sides.second, &record, operation.ctx(), operation.pool()));
}

void HSVNContext::diffSummary(const HSVNTargetInRevision& first, const HSVNTargetInRevision& second,
                              const HSVNDiffChoices& choices, const HSVNReceiver<const HSVNDifference&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "diffSummary", {{"first", first.target.text()}, {"second", second.target.text()}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff_summarize);
    const auto sides = sidesOf(first, second);
    const auto record = recordOf(operation, choices);
    Summary summary{operation, receiver};
    operation.check(function(operation.cString(first.target.text()), &sides.first,
                             operation.cString(second.target.text()), &sides.second, &record, receiveDifference,
                             &summary, operation.ctx(), operation.pool()));
}

void HSVNContext::diffSummary(const HSVNTargetInRevision& target, const Revisions& revisions,
                              const HSVNDiffChoices& choices, const HSVNReceiver<const HSVNDifference&>& receiver)
{
    requireRevisions(revisions);
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{*this, "diffSummary", {{"target", target.target.text()}, {"revisions", revisions}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff_summarize_peg);
    const auto peg = HSVNRevisionOfTarget(target.target, *target.revision->pegRevision());
    const auto sides = sidesOf(revisions);
    const auto record = recordOf(operation, choices);
    Summary summary{operation, receiver};
    operation.check(function(operation.cString(target.target.text()), &peg, &sides.first, &sides.second, &record,
                             receiveDifference, &summary, operation.ctx(), operation.pool()));
}
