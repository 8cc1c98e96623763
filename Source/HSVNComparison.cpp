#include "HSVNComparison.h"

#include "Internal/ContentsStream.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"

namespace {

constexpr const char* className = "HSVNComparison";

using Item = std::pair<std::string, HSVNRevisionRef>;
using Revisions = std::pair<HSVNRevisionRef, HSVNRevisionRef>;

HSVNBundleExtensions::Comparing wishesOf(const HSVNOperation& operation, const HSVNComparisonOptions& options)
{
    return {HSVNDepthForSubversion(options.depth),
            options.ignoreAncestry,
            options.omitAdded,
            options.omitDeleted,
            options.copiesAsAdds,
            options.ignoreContentType,
            options.ignoreProperties,
            options.propertiesOnly,
            options.gitFormat,
            options.arguments ? HSVNTextArray(operation, *options.arguments) : nullptr,
            HSVNFilterArray(operation, options.changelists)};
}

void checkItems(const Item& first, const Item& second, const HSVNContextRef& context)
{
    HSVNAssertParameter(first.second != nullptr && second.second != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
}

void checkRevisions(const HSVNRevisionRef& pegRevision, const Revisions& revisions, const HSVNContextRef& context)
{
    HSVNAssertParameter(pegRevision != nullptr, "pegRevision != nil");
    HSVNAssertParameter(revisions.first != nullptr && revisions.second != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
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

svn_stream_t* streamOrNull(const HSVNContentsStream& stream, const HSVNContentsReceiver& receiver)
{
    return receiver ? static_cast<svn_stream_t*>(stream) : nullptr;
}

struct Summary
{
    HSVNContext& context;
    const HSVNDifferenceReceiver& receiver;
};

svn_error_t* receiveDifference(const svn_client_diff_summarize_t* record, void* baton, apr_pool_t* /*pool*/)
{
    const auto& summary = *static_cast<Summary*>(baton);
    return HSVNGuardCallback(summary.context, [&]() -> svn_error_t* {
        summary.receiver({record->path, statusOf(record->summarize_kind), record->prop_changed != 0,
                          static_cast<HSVNNodeKind>(record->node_kind)});
        return nullptr;
    });
}

} // namespace

void HSVNCompareItems(const Item& first, const Item& second, const HSVNComparisonOptions& options,
                      const HSVNComparisonReceivers& receivers, const HSVNContextRef& context)
{
    checkItems(first, second, context);
    HSVNOperation operation{context,
                            className,
                            "compareItems:withOptions:receivers:withContext:",
                            {{"first", first}, {"second", second}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff);
    const auto firstRecord = first.second->SVNRevision();
    const auto secondRecord = second.second->SVNRevision();
    const auto wishes = wishesOf(operation, options);
    const HSVNContentsStream output{operation, receivers.output};
    const HSVNContentsStream errors{operation, receivers.errors};
    operation.check(function(streamOrNull(output, receivers.output), streamOrNull(errors, receivers.errors),
                             operation.cString(first.first), &firstRecord, operation.cString(second.first),
                             &secondRecord, &wishes, operation.ctx(), operation.pool()));
}

void HSVNCompareRevisions(const std::string& target, const HSVNRevisionRef& pegRevision, const Revisions& revisions,
                          const HSVNComparisonOptions& options, const HSVNComparisonReceivers& receivers,
                          const HSVNContextRef& context)
{
    checkRevisions(pegRevision, revisions, context);
    HSVNOperation operation{context,
                            className,
                            "compareRevisions:ofTarget:withOptions:receivers:withContext:",
                            {{"target", target}, {"pegRevision", pegRevision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff_peg);
    const auto peg = pegRevision->SVNRevision();
    const auto start = revisions.first->SVNRevision();
    const auto end = revisions.second->SVNRevision();
    const auto wishes = wishesOf(operation, options);
    const HSVNContentsStream output{operation, receivers.output};
    const HSVNContentsStream errors{operation, receivers.errors};
    operation.check(function(streamOrNull(output, receivers.output), streamOrNull(errors, receivers.errors),
                             operation.cString(target), &peg, &start, &end, &wishes, operation.ctx(),
                             operation.pool()));
}

void HSVNSummarizeItems(const Item& first, const Item& second, const HSVNComparisonOptions& options,
                        const HSVNDifferenceReceiver& receiver, const HSVNContextRef& context)
{
    checkItems(first, second, context);
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{context,
                            className,
                            "summarizeItems:withOptions:receiver:withContext:",
                            {{"first", first}, {"second", second}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff_summarize);
    const auto firstRecord = first.second->SVNRevision();
    const auto secondRecord = second.second->SVNRevision();
    const auto wishes = wishesOf(operation, options);
    Summary summary{*operation.context(), receiver};
    operation.check(function(operation.cString(first.first), &firstRecord, operation.cString(second.first),
                             &secondRecord, &wishes, receiveDifference, &summary, operation.ctx(), operation.pool()));
}

void HSVNSummarizeRevisions(const std::string& target, const HSVNRevisionRef& pegRevision, const Revisions& revisions,
                            const HSVNComparisonOptions& options, const HSVNDifferenceReceiver& receiver,
                            const HSVNContextRef& context)
{
    checkRevisions(pegRevision, revisions, context);
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{context,
                            className,
                            "summarizeRevisions:ofTarget:withOptions:receiver:withContext:",
                            {{"target", target}, {"pegRevision", pegRevision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_diff_summarize_peg);
    const auto peg = pegRevision->SVNRevision();
    const auto start = revisions.first->SVNRevision();
    const auto end = revisions.second->SVNRevision();
    const auto wishes = wishesOf(operation, options);
    Summary summary{*operation.context(), receiver};
    operation.check(function(operation.cString(target), &peg, &start, &end, &wishes, receiveDifference, &summary,
                             operation.ctx(), operation.pool()));
}
