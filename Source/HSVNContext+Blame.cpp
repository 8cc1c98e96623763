#include "HSVNBlamedLine.h"
#include "HSVNContext.h"
#include "Internal/Browsing.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

namespace {

struct Reading : HSVNItemsCall<const HSVNBlamedLine&>
{
    svn_revnum_t first = HSVNInvalidRevision; // of the range, known before the first line
    svn_revnum_t last = HSVNInvalidRevision;
};

std::optional<HSVNLineChange> changeOf(const HSVNOperation& operation, svn_revnum_t revision, apr_hash_t* properties)
{
    if (revision < 0) {
        return std::nullopt;
    }
    HSVNLineChange change;
    change.revision = HSVNRevisionNumberFromSubversion(revision);
    HSVNForEach<svn_string_t>(operation, properties, [&](const std::string& name, const svn_string_t* value) {
        change.properties.emplace(name, std::string{value->data, value->len});
    });
    return change;
}

svn_error_t* receiveLine(void* baton, apr_int64_t number, svn_revnum_t revision, apr_hash_t* properties,
                         svn_revnum_t mergedRevision, apr_hash_t* mergedProperties, const char* mergedPath,
                         const svn_string_t* text, svn_boolean_t isLocal, apr_pool_t* /*pool*/)
{
    const auto& reading = *static_cast<Reading*>(baton);
    return reading.handOver([&] {
        HSVNBlamedLine line;
        line.number = number;
        line.text.assign(text->data, text->len);
        line.change = changeOf(reading.operation, revision, properties);
        line.isLocalChange = isLocal;
        line.mergedChange = changeOf(reading.operation, mergedRevision, mergedProperties);
        line.mergedPath = HSVNTextOrNil(mergedPath);
        line.youngestRevision = HSVNRevisionNumberFromSubversion(std::max(reading.first, reading.last));
        return line;
    });
}

} // namespace

void HSVNContext::blame(const HSVNTargetInRevision& target, const std::pair<HSVNRevisionRef, HSVNRevisionRef>& range,
                        const HSVNBlameChoices& choices, const HSVNReceiver<const HSVNBlamedLine&>& receiver)
{
    HSVNAssertParameter((range.first == nullptr) == (range.second == nullptr), "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{
        *this,
        "blame",
        {{"target", target.target.text()}, {"pegRevision", target.revision->pegRevision()}, {"range", range}}};
    const auto function = operation.extension(&HSVNReadingFunctions::client_blame);
    operation.refuse(choices.mergedRevisions && !operation.isAtLeast(HSVNVersion::version1_5()), "mergedRevisions");
    const auto peg = target.revision->pegRevision()->SVNRevision();
    const auto start = (range.first ? range.first : HSVNRevision::revisionWithNumber(1))->SVNRevision();
    const auto end = range.second ? range.second->SVNRevision()
                                  : HSVNRevisionOfTarget(target.target, *target.revision->keyRevision());
    Reading reading{{operation, receiver}};
    operation.check(function(&reading.first, &reading.last, operation.cString(target.target.text()), &peg, &start, &end,
                             HSVNTextArray(operation, choices.arguments), choices.ignoreContentType,
                             choices.mergedRevisions, receiveLine, &reading, operation.ctx(), operation.pool()));
}

std::vector<HSVNBlamedLine> HSVNContext::blame(const HSVNTargetInRevision& target,
                                               const std::pair<HSVNRevisionRef, HSVNRevisionRef>& range,
                                               const HSVNBlameChoices& choices)
{
    return HSVNCollected<HSVNBlamedLine>([&](const auto& receiver) { blame(target, range, choices, receiver); });
}

void HSVNContext::checkBlameArguments(const std::vector<std::string>& arguments)
{
    HSVNOperation operation{*this, "checkBlameArguments", {{"arguments", arguments}}};
    svn_diff_file_options_t parsed{};
    operation.check(operation->diff_file_options_parse(&parsed, HSVNTextArray(operation, arguments), operation.pool()));
}
