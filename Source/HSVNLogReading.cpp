#include "HSVNLogReading.h"

#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <algorithm>

namespace {

std::optional<bool> certainty(svn_tristate_t value)
{
    return value == svn_tristate_unknown ? std::nullopt : std::optional{value == svn_tristate_true};
}

/// Lines before 1.7 end the record of a path before the two certainties.
HSVNChangedPath changeOf(const std::string& path, const svn_log_changed_path2_t& record, bool isWhole)
{
    return {path,
            record.action,
            static_cast<HSVNNodeKind>(record.node_kind),
            HSVNTextOrNil(record.copyfrom_path),
            HSVNRevisionNumberFromSubversion(record.copyfrom_rev),
            isWhole ? certainty(record.text_modified) : std::nullopt,
            isWhole ? certainty(record.props_modified) : std::nullopt};
}

struct LogCall
{
    HSVNOperation& operation;
    const HSVNLogEntryReceiver& receiver;
};

HSVNLogEntry entryOf(const HSVNOperation& operation, const svn_log_entry_t& record)
{
    const bool isAtLeast1_7 = operation.isAtLeast(HSVNVersion{1, 7});
    HSVNLogEntry entry;
    entry.revision = HSVNRevisionNumberFromSubversion(record.revision);
    entry.hasChildren = record.has_children;
    entry.isSubtractiveMerge = isAtLeast1_7 && record.subtractive_merge;
    HSVNForEach<svn_string_t>(operation, record.revprops, [&](std::string name, const svn_string_t* value) {
        entry.properties.emplace(std::move(name), std::string{value->data, value->len});
    });
    if (record.changed_paths2) {
        auto& paths = entry.changedPaths.emplace();
        HSVNForEach<svn_log_changed_path2_t>(operation, record.changed_paths2,
                                             [&](const std::string& path, const svn_log_changed_path2_t* change) {
                                                 paths.push_back(changeOf(path, *change, isAtLeast1_7));
                                             });
        std::sort(paths.begin(), paths.end(),
                  [](const auto& a, const auto& b) { return HSVNIsPathBefore(a.path, b.path); });
    }
    return entry;
}

svn_error_t* receiveEntry(void* baton, svn_log_entry_t* record, apr_pool_t*)
{
    const auto& call = *static_cast<LogCall*>(baton);
    return HSVNGuardCallback(*call.operation.context(), [&]() -> svn_error_t* {
        call.receiver(entryOf(call.operation, *record));
        return nullptr;
    });
}

} // namespace

void HSVNReadLog(const std::vector<std::string>& targets, const HSVNRevisionRef& pegRevision,
                 const HSVNLogReadingOptions& options, const HSVNLogEntryReceiver& receiver,
                 const HSVNContextRef& context)
{
    HSVNAssertParameter(pegRevision != nullptr, "pegRevision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context,
        "HSVNLogReading",
        "readLog:pegRevision:withOptions:receiver:withContext:",
        {{"targets", targets}, {"pegRevision", pegRevision}, {"ranges", options.ranges}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_log);
    const auto peg = pegRevision->SVNRevision();
    LogCall call{operation, receiver};
    operation.check(function(HSVNTextArray(operation, targets), &peg, HSVNRangeArray(operation, options.ranges),
                             options.limit, options.changedPaths, options.stopOnCopy, options.mergedRevisions,
                             options.properties ? HSVNTextArray(operation, *options.properties) : nullptr, receiveEntry,
                             &call, operation.ctx(), operation.pool()));
}
