#include "HSVNConflictedItem.h"
#include "Internal/CString.h"
#include "Internal/ContentsStream.h"
#include "Internal/ExtensionCall.h"

namespace {

constexpr const char* className = "HSVNConflictComparison";

using Texts = HSVNBundleExtensions::ConflictSides<const char*>;

Texts filesOf(const HSVNOperation& operation, const HSVNConflictSides& files)
{
    HSVNAssertParameter(files.mine && files.theirNew, "files != nil");
    return {files.base ? operation.cString(*files.base) : nullptr, operation.cString(*files.mine), nullptr,
            operation.cString(*files.theirNew)};
}

Texts labelsOf(const HSVNSideLabels& labels)
{
    return {HSVNCString(labels.base), HSVNCString(labels.mine), nullptr, HSVNCString(labels.theirs)};
}

} // namespace

void HSVNCompareFiles(const std::string& original, const std::string& modified, const std::string& originalLabel,
                      const std::string& modifiedLabel, const HSVNContentsReceiver& receiver,
                      const HSVNContextRef& context)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "compareFiles:receiver:",
                            {{"original", original}, {"modified", modified}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::diff_files);
    const HSVNContentsStream stream{operation, receiver};
    operation.check(function(stream, operation.cString(original), operation.cString(modified),
                             HSVNCString(originalLabel), HSVNCString(modifiedLabel), operation.ctx(),
                             operation.pool()));
}

void HSVNShowConflicts(const HSVNConflictSides& files, const HSVNSideLabels& labels,
                       const HSVNContentsReceiver& receiver, const HSVNContextRef& context)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "showConflicts:receiver:",
                            {{"mine", files.mine}, {"theirs", files.theirNew}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::diff_conflicts);
    const HSVNContentsStream stream{operation, receiver};
    const Texts texts = filesOf(operation, files);
    const Texts names = labelsOf(labels);
    operation.check(function(stream, &texts, &names, operation.ctx(), operation.pool()));
}

std::string HSVNMergeValues(const HSVNConflictSides& values, const HSVNSideLabels& labels,
                            const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{
        context, className, "mergeValues:", {{"mine", values.mine}, {"theirs", values.theirNew}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::diff_values);
    const auto valueOf = [](const std::optional<std::string>& value) {
        return value ? svn_string_t{value->data(), value->size()} : svn_string_t{"", 0};
    };
    const svn_string_t base = valueOf(values.base);
    const svn_string_t mine = valueOf(values.mine);
    const svn_string_t theirs = valueOf(values.theirNew);
    const HSVNBundleExtensions::ConflictSides<const svn_string_t*> sides{&base, &mine, nullptr, &theirs};
    const Texts names = labelsOf(labels);
    std::string merged;
    const HSVNContentsReceiver append = [&](std::string_view bytes) { merged += bytes; };
    const HSVNContentsStream stream{operation, append};
    operation.check(function(stream, &sides, &names, operation.ctx(), operation.pool()));
    return merged;
}

std::vector<HSVNMergeStretch> HSVNMergeStretches(const HSVNConflictSides& files, const HSVNContextRef& context)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            className,
                            "mergeStretches:",
                            {{"mine", files.mine}, {"theirs", files.theirNew}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::diff_stretches);
    const Texts texts = filesOf(operation, files);
    apr_array_header_t* found = nullptr;
    operation.check(function(&found, &texts, operation.ctx(), operation.pool()));
    std::vector<HSVNMergeStretch> stretches;
    for (int index = 0; index < found->nelts; ++index) {
        const auto& record = APR_ARRAY_IDX(found, index, HSVNBundleExtensions::MergeStretch);
        const auto linesOf = [&](std::size_t side) {
            return HSVNMergeStretch::Lines{record.start[side], record.length[side]};
        };
        stretches.push_back({record.isConflict != 0, linesOf(0), linesOf(1), linesOf(2)});
    }
    return stretches;
}
