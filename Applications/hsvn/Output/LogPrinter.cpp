#include "Output/LogPrinter.h"

#include "CommandLine/Dates.h"
#include "Output/JSON.h"
#include "Output/Output.h"
#include "Output/PropertyPrinter.h"
#include "Output/Words.h"
#include "Output/XML.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace {

constexpr const char* noAuthor = "(no author)";
constexpr const char* separator = "------------------------------------------------------------------------\n";

std::optional<std::string> propertyOf(const HSVNLogEntry& entry, const char* name)
{
    const auto property = entry.properties.find(name);
    return property == entry.properties.end() ? std::nullopt : std::optional{property->second};
}

/// All but author, date and message.
HSVNPropertyMap furtherProperties(const HSVNLogEntry& entry)
{
    HSVNPropertyMap further = entry.properties;
    for (const char* const name : {"svn:author", "svn:date", "svn:log"}) {
        further.erase(name);
    }
    return further;
}

/// As Subversion's log has it, in which no control character stays as it is: the one that XML could hold is written
/// like those that it cannot.
std::optional<std::string> withoutDeletes(std::optional<std::string> text)
{
    for (std::size_t found = text ? text->find('\x7F') : std::string::npos; found != std::string::npos;
         found = text->find('\x7F', found))
    {
        text->replace(found, 1, "?\\127");
    }
    return text;
}

std::string humanDateOf(const HSVNLogEntry& entry)
{
    const auto text = propertyOf(entry, "svn:date");
    return text && !text->empty() ? humanDate(*text) : "(no date)";
}

void addChangedPath(XML& xml, const HSVNChangedPath& change)
{
    const auto flag = [](const std::optional<bool>& value) { return value.value_or(false) ? "true" : "false"; };
    XML::Attributes attributes{{"action", std::string{change.action}},
                               {"kind", change.kind == HSVNNodeKindUnknown ? "" : wordOf(change.kind)}};
    if (change.copyFromPath) {
        attributes.emplace_back("copyfrom-path", *change.copyFromPath);
        attributes.emplace_back("copyfrom-rev", std::to_string(change.copyFromRevision));
    }
    if (change.textModified) {
        attributes.emplace_back("text-mods", flag(change.textModified));
    }
    if (change.propertiesModified) {
        attributes.emplace_back("prop-mods", flag(change.propertiesModified));
    }
    xml.element("path", std::string_view{change.path}, attributes);
}

} // namespace

void LogPrinter::print(const HSVNLogEntry& entry)
{
    const bool endsMerged = entry.revision == HSVNInvalidRevision;
    if (endsMerged && _options.xml && !_mergedBy.empty()) {
        XML{}.close("logentry").write();
    }
    if (endsMerged) {
        if (!_mergedBy.empty()) {
            _mergedBy.pop_back();
        }
        return;
    }
    // Revision 0 has nothing to tell.
    if ((entry.revision != 0 || propertyOf(entry, "svn:log")) &&
        (_options.search.empty() || _search.finds(textsOf(entry)))) {
        if (_options.json) {
            _records.push_back(record(entry));
        } else if (_options.xml) {
            printXML(entry);
        } else {
            printText(entry);
        }
    }
    if (entry.hasChildren) {
        _mergedBy.push_back(entry.revision);
    }
}

std::vector<std::string> LogPrinter::textsOf(const HSVNLogEntry& entry) const
{
    std::vector<std::string> texts;
    const bool isForPeople = !_options.xml && !_options.json;
    const auto add = [&](const std::optional<std::string>& text) {
        if (text) {
            texts.push_back(*text);
        }
    };
    const auto author = propertyOf(entry, "svn:author");
    add(isForPeople ? author.value_or(noAuthor) : author);
    add(isForPeople ? humanDateOf(entry) : propertyOf(entry, "svn:date"));
    add(propertyOf(entry, "svn:log"));
    for (const auto& change : entry.changedPaths.value_or(std::vector<HSVNChangedPath>{})) {
        add(change.path);
        add(change.copyFromPath);
    }
    return texts;
}

void LogPrinter::finish() const
{
    if (_options.json) {
        writeJSON(_records);
    } else if (!_options.xml && !_options.incremental) {
        Output::write(separator);
    }
}

void LogPrinter::printText(const HSVNLogEntry& entry) const
{
    const std::string message = propertyOf(entry, "svn:log").value_or("");
    std::string text = fmt::format("{}r{} | {} | {}", separator, entry.revision,
                                   propertyOf(entry, "svn:author").value_or(noAuthor), humanDateOf(entry));
    if (!_options.quiet) {
        const auto lines = std::count(message.begin(), message.end(), '\n') + 1;
        text += fmt::format(" | {} {}", lines, lines == 1 ? "line" : "lines");
    }
    text += '\n';
    if (entry.changedPaths) {
        text += "Changed paths:\n";
        for (const auto& change : *entry.changedPaths) {
            const std::string source =
                change.copyFromPath ? fmt::format(" (from {}:{})", *change.copyFromPath, change.copyFromRevision) : "";
            text += fmt::format("   {} {}{}\n", change.action, change.path, source);
        }
    }
    if (!_mergedBy.empty()) {
        text += entry.isSubtractiveMerge ? "Reverse merged via:" : "Merged via:";
        for (const HSVNRevisionNumber revision : _mergedBy) {
            text += fmt::format("{} r{}", text.ends_with(':') ? "" : ",", revision);
        }
        text += '\n';
    }
    Output::write(_options.quiet ? text : text + "\n" + message + "\n");
    if (_follow) {
        _follow(entry.revision);
    }
}

void LogPrinter::printXML(const HSVNLogEntry& entry) const
{
    XML::Attributes attributes{{"revision", std::to_string(entry.revision)}};
    if (!_mergedBy.empty()) {
        attributes.emplace_back("reverse-merge", entry.isSubtractiveMerge ? "true" : "false");
    }
    XML xml;
    xml.open("logentry", attributes).element("author", withoutDeletes(propertyOf(entry, "svn:author")));
    if (const auto date = withoutDeletes(propertyOf(entry, "svn:date")); date != "") {
        xml.element("date", date);
    }
    if (entry.changedPaths) {
        xml.open("paths");
        for (const auto& change : *entry.changedPaths) {
            addChangedPath(xml, change);
        }
        xml.close("paths");
    }
    xml.element("msg", withoutDeletes(propertyOf(entry, "svn:log")));
    if (const auto further = furtherProperties(entry); !further.empty()) {
        xml.open("revprops");
        addProperties(xml, "property", further, true);
        xml.close("revprops");
    }
    if (!entry.hasChildren) {
        xml.close("logentry");
    }
    xml.write();
}

nlohmann::ordered_json LogPrinter::record(const HSVNLogEntry& entry) const
{
    nlohmann::ordered_json result{{"revision", entry.revision}};
    constexpr std::array names{std::pair{"author", "svn:author"}, std::pair{"date", "svn:date"},
                               std::pair{"message", "svn:log"}};
    for (const auto& [name, property] : names) {
        if (const auto value = propertyOf(entry, property)) {
            result[name] = *value;
        }
    }
    if (const auto further = furtherProperties(entry); !further.empty()) {
        result["properties"] = propertyRecord(further);
    }
    for (const auto& change : entry.changedPaths.value_or(std::vector<HSVNChangedPath>{})) {
        nlohmann::ordered_json path{
            {"action", std::string{change.action}}, {"path", change.path}, {"kind", wordOf(change.kind)}};
        if (change.copyFromPath) {
            path["copyFrom"] = {{"path", *change.copyFromPath}, {"revision", change.copyFromRevision}};
        }
        result["paths"].push_back(std::move(path));
    }
    if (!_mergedBy.empty()) {
        result["mergedBy"] = _mergedBy;
    }
    return result;
}
