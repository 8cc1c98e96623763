#include "Internal/Difference.h"

#include "Internal/CString.h"
#include "Internal/ExtensionCall.h"

#include <algorithm>
#include <cstring>

namespace {

using Kind = HSVNDiffSectionKind;
using Texts = std::vector<HSVNComparedText>;

/// What the callbacks of a comparison's output are given.
struct Sections
{
    HSVNContext& context;
    std::vector<HSVNDiffSection> found;
};

template <Kind kind>
svn_error_t* keep(void* baton, apr_off_t originalStart, apr_off_t originalLength, apr_off_t modifiedStart,
                  apr_off_t modifiedLength, apr_off_t latestStart, apr_off_t latestLength)
{
    auto& sections = *static_cast<Sections*>(baton);
    return HSVNGuardCallback(sections.context, [&]() -> svn_error_t* {
        if (kind == Kind::Common && !sections.found.empty() && sections.found.back().isCommon()) {
            auto& last = sections.found.back(); // lines 1.7 to 1.8 tell an open last line on its own
            last.original.count += originalLength;
            last.modified.count += modifiedLength;
            last.theirs.count += latestLength;
            return nullptr;
        }
        sections.found.push_back(
            {kind, {originalStart, originalLength}, {modifiedStart, modifiedLength}, {latestStart, latestLength}});
        return nullptr;
    });
}

svn_error_t* keepConflict(void* baton, apr_off_t originalStart, apr_off_t originalLength, apr_off_t modifiedStart,
                          apr_off_t modifiedLength, apr_off_t latestStart, apr_off_t latestLength,
                          svn_diff_t* /*resolved*/)
{
    return keep<Kind::Conflict>(baton, originalStart, originalLength, modifiedStart, modifiedLength, latestStart,
                                latestLength);
}

/// What takes the sections of so many texts.
svn_diff_output_fns_t receiversOf(std::size_t texts)
{
    svn_diff_output_fns_t receivers{};
    receivers.output_common = keep<Kind::Common>;
    receivers.output_diff_modified = texts == 2 ? keep<Kind::Changed> : keep<Kind::ChangedInMine>;
    receivers.output_diff_latest = keep<Kind::ChangedInTheirs>;
    receivers.output_diff_common = keep<Kind::ChangedAlike>;
    receivers.output_conflict = keepConflict;
    return receivers;
}

/// The line's own record of the options. Its size is the line's secret, so there is room for more.
svn_diff_file_options_t* recordOf(HSVNOperation& operation, const std::vector<std::string>& arguments)
{
    constexpr apr_size_t room = 8 * sizeof(svn_diff_file_options_t);
    void* const bytes = operation->apr_palloc(operation.pool(), room);
    std::memset(bytes, 0, room);
    auto* const record = static_cast<svn_diff_file_options_t*>(bytes);
    operation.check(operation->diff_file_options_parse(record, HSVNTextArray(operation, arguments), operation.pool()));
    return record;
}

/// What of the options decides which lines are alike.
std::vector<std::string> argumentsOf(const HSVNDiffOptions& options)
{
    HSVNDiffOptions comparing;
    comparing.setWhitespaceCompareBehavior(options.whitespaceCompareBehavior());
    comparing.setIgnoreEOLStyle(options.ignoreEOLStyle());
    return *comparing.choices().arguments;
}

void requireUnchanged(const Texts& texts)
{
    for (const auto& text : texts) {
        text.requireUnchanged();
    }
}

svn_diff_t* compareFiles(HSVNOperation& operation, Texts& texts, const svn_diff_file_options_t* options)
{
    svn_diff_t* difference = nullptr;
    std::vector<const char*> paths;
    for (auto& text : texts) {
        paths.push_back(operation.cString(text.path()));
    }
    if (texts.size() == 2) {
        operation.check(operation->diff_file_diff_2(&difference, paths[0], paths[1], options, operation.pool()));
    } else {
        operation.call(&HSVNDifferenceFunctions::diff_file_diff3, &difference, paths[0], paths[1], paths[2], options,
                       operation.pool());
    }
    requireUnchanged(texts);
    return difference;
}

/// Null where the texts are not all in memory, or the line cannot compare them there.
svn_diff_t* compareInMemory(HSVNOperation& operation, const Texts& texts, const svn_diff_file_options_t* options)
{
    const auto compare =
        HSVNExtensionOrNull(operation.context()->bundle()->extensions(), &HSVNDifferenceFunctions::diff_texts);
    if (!compare || !std::all_of(texts.begin(), texts.end(), [](const auto& text) { return text.bytes(); })) {
        return nullptr;
    }
    std::vector<svn_string_t> strings;
    for (const auto& text : texts) {
        strings.push_back({text.bytes()->data(), text.bytes()->size()});
    }
    svn_diff_t* difference = nullptr;
    operation.check(compare(&difference, strings.data(), &strings[1], strings.size() > 2 ? &strings[2] : nullptr,
                            options, operation.pool()));
    return difference;
}

} // namespace

std::vector<HSVNDiffSection> HSVNSectionsOf(HSVNOperation& operation, Texts& texts, const HSVNDiffOptions& options)
{
    const bool isOffered =
        operation->diff_file_diff_2 && operation->diff_output && operation->diff_file_output_unified2;
    operation.refuse(!isOffered, "comparison");
    const auto* const record = recordOf(operation, argumentsOf(options));
    svn_diff_t* difference = compareInMemory(operation, texts, record);
    if (!difference) {
        difference = compareFiles(operation, texts, record);
    }
    Sections sections{*operation.context(), {}};
    const auto receivers = receiversOf(texts.size());
    operation.check(operation->diff_output(difference, &sections, &receivers));
    return std::move(sections.found);
}

void HSVNWriteUnified(HSVNOperation& operation, svn_stream_t* out, Texts& texts, const HSVNDiffOptions& options,
                      const HSVNUnifiedForm& form)
{
    const bool needsMore = argumentsOf(options) != *options.choices().arguments;
    const auto writeMore =
        HSVNExtensionOrNull(operation.context()->bundle()->extensions(), &HSVNDifferenceFunctions::diff_output_unified);
    operation.refuse(needsMore && !writeMore, options.showFunctions() ? "showFunctions" : "contextLines");
    requireUnchanged(texts);
    svn_diff_t* const difference = compareFiles(operation, texts, recordOf(operation, argumentsOf(options)));
    const char* const original = operation.cString(texts[0].path());
    const char* const modified = operation.cString(texts[1].path());
    const char* const originalLabel = HSVNCString(form.originalLabel);
    const char* const modifiedLabel = HSVNCString(form.modifiedLabel);
    operation.check(
        needsMore
            ? writeMore(out, difference, original, modified, originalLabel, modifiedLabel, HSVNCString(form.encoding),
                        options.showFunctions(), form.contextLines, operation.ctx(), operation.pool())
            : operation->diff_file_output_unified2(out, difference, original, modified, originalLabel, modifiedLabel,
                                                   HSVNCString(form.encoding), operation.pool()));
    requireUnchanged(texts);
}
