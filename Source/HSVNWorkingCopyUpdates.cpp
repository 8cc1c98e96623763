#include "HSVNWorkingCopyUpdates.h"

#include "Internal/Browsing.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"

namespace {

constexpr const char* className = "HSVNWorkingCopyUpdates";

HSVNBundleExtensions::Updating wishesOf(const HSVNItemUpdateOptions& options)
{
    return {HSVNDepthForSubversion(options.depth),
            options.depthIsSticky,
            !options.processExternals,
            options.allowObstructions,
            options.addsAsModification,
            options.makeParents,
            options.ignoreAncestry};
}

struct MergeCall
{
    HSVNContext& context;
    const HSVNMergeConflictChooser& chooser;
};

svn_error_t* choose(void* baton, int* choice, const char* path, int kind)
{
    const auto& call = *static_cast<MergeCall*>(baton);
    return HSVNGuardCallback(call.context, [&]() -> svn_error_t* {
        *choice = static_cast<int>(call.chooser(path, static_cast<HSVNConflictKind>(kind)));
        return nullptr;
    });
}

/// @param call  outlives the record
HSVNBundleExtensions::Merging wishesOf(const HSVNOperation& operation, const HSVNItemMergeOptions& options,
                                       MergeCall& call)
{
    return {HSVNDepthForSubversion(options.depth),
            options.ignoreMergeInfo,
            options.diffIgnoreAncestry,
            options.forceDelete,
            options.recordOnly,
            options.dryRun,
            options.allowMixedRevisions,
            HSVNFilterArray(operation, options.arguments),
            options.chooser ? choose : nullptr,
            &call};
}

} // namespace

std::vector<HSVNRevisionNumber> HSVNUpdateItems(const std::vector<std::string>& targets,
                                                const HSVNRevisionRef& revision, const HSVNItemUpdateOptions& options,
                                                const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "updateItems:toRevision:withOptions:withContext:",
                            {{"targets", targets}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_update);
    const auto record = revision->SVNRevision();
    const auto wishes = wishesOf(options);
    apr_array_header_t* results = nullptr;
    operation.check(
        function(&results, HSVNChangedArray(operation, targets), &record, &wishes, operation.ctx(), operation.pool()));
    std::vector<HSVNRevisionNumber> revisions;
    for (int index = 0; results && index < results->nelts; ++index) {
        revisions.push_back(HSVNRevisionNumberFromSubversion(APR_ARRAY_IDX(results, index, svn_revnum_t)));
    }
    return revisions;
}

HSVNRevisionNumber HSVNCheckOutItem(const std::string& url, const std::string& path,
                                    const HSVNRevisionSpecRef& revision, const HSVNItemUpdateOptions& options,
                                    const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "checkOutItem:path:revision:withOptions:withContext:",
                            {{"url", url}, {"path", path}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_checkout);
    const HSVNRevisionRecords revisions{*revision};
    const auto wishes = wishesOf(options);
    svn_revnum_t result = HSVNInvalidRevision;
    operation.check(function(&result, operation.cString(url), operation.changed(path), &revisions.peg,
                             &revisions.operative, &wishes, operation.ctx(), operation.pool()));
    return HSVNRevisionNumberFromSubversion(result);
}

HSVNRevisionNumber HSVNSwitchItem(const std::string& path, const std::string& url, const HSVNRevisionSpecRef& revision,
                                  const HSVNItemUpdateOptions& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "switchItem:toURL:revision:withOptions:withContext:",
                            {{"path", path}, {"url", url}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_switch);
    const HSVNRevisionRecords revisions{*revision};
    const auto wishes = wishesOf(options);
    svn_revnum_t result = HSVNInvalidRevision;
    operation.check(function(&result, operation.changed(path), operation.cString(url), &revisions.peg,
                             &revisions.operative, &wishes, operation.ctx(), operation.pool()));
    return HSVNRevisionNumberFromSubversion(result);
}

HSVNRevisionNumber HSVNExportItem(const std::string& from, const std::string& to, const HSVNRevisionSpecRef& revision,
                                  const HSVNItemExportOptions& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "exportItem:to:revision:withOptions:withContext:",
                            {{"from", from}, {"to", to}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_export);
    const HSVNRevisionRecords revisions{*revision};
    const HSVNBundleExtensions::Exporting wishes{
        HSVNDepthForSubversion(options.depth), options.overwrite, !options.processExternals, !options.expandKeywords,
        options.nativeEndOfLine ? operation.cString(*options.nativeEndOfLine) : nullptr};
    svn_revnum_t result = HSVNInvalidRevision;
    operation.check(function(&result, operation.cString(from), operation.changed(to), &revisions.peg,
                             &revisions.operative, &wishes, operation.ctx(), operation.pool()));
    return HSVNRevisionNumberFromSubversion(result);
}

void HSVNMergeTrees(const std::pair<std::string, HSVNRevisionRef>& first,
                    const std::pair<std::string, HSVNRevisionRef>& second, const std::string& target,
                    const HSVNItemMergeOptions& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(first.second != nullptr && second.second != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "mergeTrees:target:withOptions:withContext:",
                            {{"first", first}, {"second", second}, {"target", target}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_merge);
    const auto firstRecord = first.second->SVNRevision();
    const auto secondRecord = second.second->SVNRevision();
    MergeCall call{*context, options.chooser};
    const auto wishes = wishesOf(operation, options, call);
    operation.check(function(operation.cString(first.first), &firstRecord, operation.cString(second.first),
                             &secondRecord, operation.changed(target), &wishes, operation.ctx(), operation.pool()));
}

void HSVNMergeChanges(const std::string& source, const HSVNRevisionRef& pegRevision,
                      const std::optional<std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>>>& ranges,
                      const std::string& target, const HSVNItemMergeOptions& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(pegRevision != nullptr, "pegRevision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context,
        className,
        "mergeChanges:pegRevision:ranges:target:withOptions:withContext:",
        {{"source", source}, {"pegRevision", pegRevision}, {"target", target}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_merge_peg);
    const auto peg = pegRevision->SVNRevision();
    MergeCall call{*context, options.chooser};
    const auto wishes = wishesOf(operation, options, call);
    operation.check(function(operation.cString(source), ranges ? HSVNRangeArray(operation, *ranges) : nullptr, &peg,
                             operation.changed(target), &wishes, operation.ctx(), operation.pool()));
}

void HSVNReintegrate(const std::string& source, const HSVNRevisionRef& pegRevision, const std::string& target,
                     const HSVNItemMergeOptions& options, const HSVNContextRef& context)
{
    HSVNAssertParameter(pegRevision != nullptr, "pegRevision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context,
        className,
        "reintegrate:pegRevision:target:withOptions:withContext:",
        {{"source", source}, {"pegRevision", pegRevision}, {"target", target}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_merge_reintegrate);
    const auto peg = pegRevision->SVNRevision();
    MergeCall call{*context, options.chooser};
    const auto wishes = wishesOf(operation, options, call);
    operation.check(function(operation.cString(source), &peg, operation.changed(target), &wishes, operation.ctx(),
                             operation.pool()));
}
