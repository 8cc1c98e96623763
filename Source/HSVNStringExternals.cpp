#include "HSVNStringExternals.h"

#include "HSVNBundleLoader.h"
#include "HSVNException.h"
#include "HSVNRevision.h"
#include "Internal/Pool.h"

#include <algorithm>
#include <chrono>
#include <fmt/chrono.h>
#include <fmt/format.h>
#include <string_view>

namespace {

HSVNRevisionRef revisionOf(const svn_opt_revision_t& revision)
{
    return HSVNRevision::revisionFromSVNRevision(&revision);
}

bool isWritten(const HSVNRevision& revision)
{
    return !revision.isEqual(HSVNRevision::UNSPECIFIED()) && !revision.isEqual(HSVNRevision::HEAD());
}

/// A revision as Subversion's parser reads it: a number, a name, or a date in braces.
std::string revisionText(const HSVNRevision& revision)
{
    if (const auto date = revision.date()) {
        const std::chrono::sys_time<std::chrono::microseconds> time{
            std::chrono::microseconds{date->microsecondsSince1970()}};
        return fmt::format("{{{:%Y-%m-%dT%H:%M:%S}Z}}", std::chrono::floor<std::chrono::seconds>(time));
    }
    return revision.description();
}

/// The text itself when Subversion reads it as one word, else quoted.
std::string quotedWhereNeeded(const std::string& text)
{
    if (!text.empty() && text.front() != '#' && text.find_first_of(" \t\"'\\") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char byte : text) {
        if (byte == '"' || byte == '\\') {
            quoted += '\\';
        }
        quoted += byte;
    }
    return quoted + '"';
}

/// The URL with its peg revision, as the format of 1.5 has it. There an "@" in the last name needs another one after
/// it, lest it be read as a peg revision.
std::string peggedSource(const HSVNExternalDefinition& definition)
{
    const std::string& source = definition.sourceDirectory();
    const HSVNRevision& peg = *definition.sourceRevision()->pegRevision();
    if (isWritten(peg)) {
        return source + '@' + revisionText(peg);
    }
    return source.find('@', source.rfind('/') + 1) == std::string::npos ? source : source + '@';
}

std::string operativeOption(const HSVNExternalDefinition& definition)
{
    const HSVNRevision& operative = *definition.sourceRevision()->operativeRevision();
    return isWritten(operative) ? "-r" + revisionText(operative) : "";
}

} // namespace

std::vector<HSVNExternalDefinitionRef> HSVNString::externalDefinitionListValue(const std::string& text)
{
    const HSVNBundleScope bundle{HSVNBundleLoader::sharedInstance().newestBundle()};
    const HSVNPool pool;
    apr_array_header_t* items = nullptr;
    svn_error_t* error =
        HSVNCurrentEntryPoints().wc_parse_externals_description3(&items, "", text.c_str(), FALSE, pool);
    if (error) {
        HSVNException::exceptionWithError(error)->raise();
    }
    std::vector<HSVNExternalDefinitionRef> definitions;
    for (int index = 0; items && index < items->nelts; ++index) {
        const auto* item = APR_ARRAY_IDX(items, index, const svn_wc_external_item2_t*);
        definitions.push_back(std::make_shared<HSVNExternalDefinition>(
            item->url,
            HSVNRevisionSpec::revisionWithRevision(revisionOf(item->revision), revisionOf(item->peg_revision)),
            item->target_dir));
    }
    return definitions;
}

std::string HSVNString::stringFromExternalDefinitionList(const std::vector<HSVNExternalDefinitionRef>& definitions)
{
    return textTableFromExternalDefinitions(definitions, formatVersionForExternalDefinitions(definitions))
        ->stringValue();
}

std::string HSVNString::exactStringFromExternalDefinitionList(const std::vector<HSVNExternalDefinitionRef>& definitions)
{
    const bool isFoundElsewhere = std::ranges::any_of(definitions, [](const auto& definition) {
        HSVNAssertParameter(definition != nullptr, "definition != nil");
        const auto& revision = *definition->sourceRevision();
        return isWritten(*revision.operativeRevision()) &&
               !revision.pegRevision()->isEqual(revision.operativeRevision());
    });
    const auto format = isFoundElsewhere ? HSVNVersion::version1_5() : formatVersionForExternalDefinitions(definitions);
    return textTableFromExternalDefinitions(definitions, format)->stringValue();
}

HSVNVersion HSVNString::formatVersionForExternalDefinition(const HSVNExternalDefinitionRef& definition)
{
    HSVNAssertParameter(definition != nullptr, "definition != nil");
    const std::string& source = definition->sourceDirectory();
    if (!source.empty() && std::string_view{"./^"}.find(source.front()) != std::string_view::npos) {
        return HSVNVersion::version1_5();
    }
    const auto& revision = *definition->sourceRevision();
    const bool isOperative = revision.pegRevision()->isEqual(revision.operativeRevision());
    return isOperative || !isWritten(*revision.pegRevision()) ? HSVNVersion::version1_4() : HSVNVersion::version1_5();
}

HSVNVersion HSVNString::formatVersionForExternalDefinitions(const std::vector<HSVNExternalDefinitionRef>& definitions)
{
    HSVNVersion format = HSVNVersion::version1_4();
    for (const auto& definition : definitions) {
        format = std::max(format, formatVersionForExternalDefinition(definition));
    }
    return format;
}

std::shared_ptr<HSVNTextTable>
HSVNString::textTableFromExternalDefinitions(const std::vector<HSVNExternalDefinitionRef>& definitions,
                                             const HSVNVersion& format)
{
    auto table = HSVNTextTable::tableWithColumns(3);
    if (format.isLessThan(HSVNVersion::version1_5())) {
        table->setAlignment(HSVNTextAlignmentRight, 1);
    }
    for (const auto& definition : definitions) {
        addExternalDefinition(definition, table, format);
    }
    return table;
}

void HSVNString::addExternalDefinition(const HSVNExternalDefinitionRef& definition,
                                       const std::shared_ptr<HSVNTextTable>& table, const HSVNVersion& format)
{
    HSVNAssertParameter(definition != nullptr, "definition != nil");
    HSVNAssertParameter(table != nullptr, "table != nil");
    const std::size_t row = table->rowCount();
    const std::string target = quotedWhereNeeded(definition->targetDirectory());
    if (format.isLessThan(HSVNVersion::version1_5())) {
        table->setString(target, row, 0);
        table->setString(operativeOption(*definition), row, 1);
        table->setString(quotedWhereNeeded(definition->sourceDirectory()), row, 2);
        return;
    }
    table->setString(operativeOption(*definition), row, 0);
    table->setString(quotedWhereNeeded(peggedSource(*definition)), row, 1);
    table->setString(target, row, 2);
}
