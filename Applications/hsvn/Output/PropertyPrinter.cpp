#include "Output/PropertyPrinter.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/PropertyNames.h"
#include "CommandLine/Targets.h"
#include "CommandLine/TextFiles.h"
#include "Output/Output.h"

#include <fmt/format.h>

namespace {

/// The text up to its first zero byte, every line moved to the right.
std::string indented(const std::string& value)
{
    std::string result = "    ";
    for (const char character : std::string{value.c_str()}) {
        result += character;
        result += character == '\n' ? "    " : "";
    }
    return result + "\n";
}

} // namespace

void printProperties(const HSVNPropertyMap& properties, bool withValues)
{
    for (const auto& [name, value] : properties) {
        Output::write(fmt::format("  {}\n", name));
        if (withValues) {
            printValue(name, indented(isOwnProperty(name) ? withUnixLineEnds(value) : value));
        }
    }
}

void printValue(const std::string& name, const std::string& value)
{
    if (isOwnProperty(name)) {
        Output::write(withUnixLineEnds(value));
    } else {
        Output::writeBytes(value);
    }
}

void addProperties(XML& xml, const char* element, const HSVNPropertyMap& properties, bool withValues)
{
    for (const auto& [name, value] : properties) {
        if (withValues) {
            xml.property(element, name, isOwnProperty(name) ? NativeText::wellFormed(withUnixLineEnds(value)) : value);
        } else {
            xml.empty(element, {{"name", name}});
        }
    }
}

nlohmann::ordered_json propertyValueRecord(const std::string& value)
{
    if (XML::isSafe(value)) {
        return value;
    }
    return {{"encoding", "base64"}, {"value", XML::base64(value)}};
}

nlohmann::ordered_json propertyRecord(const HSVNPropertyMap& properties)
{
    auto record = nlohmann::ordered_json::object();
    for (const auto& [name, value] : properties) {
        record[name] = propertyValueRecord(value);
    }
    return record;
}

RevisionPropertyTarget revisionPropertyTarget(Session& session, const std::vector<std::string>& targets)
{
    if (session.options.showInheritedProperties) {
        fail(ArgumentParsing, "--show-inherited-props can't be used with --revprop");
    }
    const auto& revision = session.options.startRevision();
    const bool isAllowed =
        revision->number() != HSVNInvalidRevision || revision->date() || revision->isEqual(HSVNRevision::HEAD());
    if (!isAllowed) {
        fail(ArgumentParsing, "Must specify the revision as a number, a date or 'HEAD' when operating on a revision "
                              "property");
    }
    if (targets.size() != 1) {
        fail(ArgumentParsing, "Wrong number of targets specified");
    }
    const auto url = session.client()->URLOfTarget(HSVNTarget::verbatim(targets.front()));
    if (!url) {
        fail(UnversionedResource, "Either a URL or versioned item is required");
    }
    return {*url, revision};
}
