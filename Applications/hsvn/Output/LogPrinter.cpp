#include "Output/LogPrinter.h"

#include "CommandLine/Dates.h"
#include "Output/Display.h"
#include "Output/Output.h"
#include "Output/PropertyPrinter.h"
#include "Output/Words.h"
#include "Output/XML.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace {

constexpr const char* noAuthor = "(no author)";

std::optional<std::string> propertyOf(const HSVNLogItem& item, const char* name)
{
    const auto property = item.properties().find(name);
    return property == item.properties().end() ? std::nullopt : std::optional{property->second};
}

/// All but author, date and message.
HSVNPropertyMap furtherProperties(const HSVNLogItem& item)
{
    HSVNPropertyMap further = item.properties();
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

std::string humanDateOf(const HSVNLogItem& item)
{
    const auto text = propertyOf(item, "svn:date");
    return text && !text->empty() ? humanDate(*text) : "(no date)";
}

void addChangedPath(XML& xml, const HSVNLogPathChange& change)
{
    const auto flag = [](const std::optional<bool>& value) { return value.value_or(false) ? "true" : "false"; };
    XML::Attributes attributes{{"action", HSVNStringFromLogAction(change.action())},
                               {"kind", change.kind() == HSVNNodeKindUnknown ? "" : wordOf(change.kind())}};
    if (const auto copyPath = change.copyPath()) {
        attributes.emplace_back("copyfrom-path", *copyPath);
        attributes.emplace_back("copyfrom-rev", std::to_string(change.copyRevision()));
    }
    if (change.textModified()) {
        attributes.emplace_back("text-mods", flag(change.textModified()));
    }
    if (change.propertiesModified()) {
        attributes.emplace_back("prop-mods", flag(change.propertiesModified()));
    }
    xml.element("path", std::string_view{change.path()}, attributes);
}

/// A line ends in "\n" or "\r", or in both whatever their order.
std::size_t lineCountOf(std::string_view text)
{
    std::size_t count = 1;
    for (auto at = text.find_first_of("\r\n"); at != std::string_view::npos; at = text.find_first_of("\r\n", at)) {
        const bool isPair = at + 1 < text.size() && text[at + 1] == (text[at] == '\n' ? '\r' : '\n');
        at += isPair ? 2 : 1;
        ++count;
    }
    return count;
}

} // namespace

void LogPrinter::print(const HSVNLogItem& item)
{
    const bool endsMerged = item.isEndOfChildren();
    if (endsMerged && _options.xml && !_mergedBy.empty()) {
        XML{}.close("logentry").write();
    }
    if (endsMerged) {
        if (!_mergedBy.empty()) {
            _mergedBy.pop_back();
        }
        return;
    }
    if (isWanted(item)) {
        if (_options.json) {
            _records.add(record(item));
        } else if (_options.xml) {
            printXML(item);
        } else {
            printText(item);
        }
    }
    if (item.hasChildren()) {
        _mergedBy.push_back(item.revision());
    }
}

bool LogPrinter::isWanted(const HSVNLogItem& item) const
{
    // Revision 0 has nothing to tell.
    return (item.revision() != 0 || propertyOf(item, "svn:log")) &&
           (_options.search.empty() || _search.finds(textsOf(item)));
}

std::vector<std::string> LogPrinter::textsOf(const HSVNLogItem& item) const
{
    std::vector<std::string> texts;
    const bool isForPeople = !_options.xml && !_options.json;
    const auto add = [&](const std::optional<std::string>& text) {
        if (text) {
            texts.push_back(*text);
        }
    };
    const auto author = propertyOf(item, "svn:author");
    add(isForPeople ? author.value_or(noAuthor) : author);
    add(isForPeople ? humanDateOf(item) : propertyOf(item, "svn:date"));
    add(propertyOf(item, "svn:log"));
    if (_options.verbose) {
        for (const auto& change : item.sortedChanges()) {
            add(change->path());
            add(change->copyPath());
        }
    }
    return texts;
}

void LogPrinter::finish()
{
    if (_options.json) {
        _records.finish();
    } else if (!_options.xml && !_options.incremental) {
        Output::write(Output::separator);
    }
}

std::string LogPrinter::textOf(const HSVNLogItem& item) const
{
    const std::string message = propertyOf(item, "svn:log").value_or("");
    std::string text =
        fmt::format("r{} | {} | {}", item.revision(),
                    Display::inLine(propertyOf(item, "svn:author").value_or(noAuthor)), humanDateOf(item));
    if (!_options.quiet) {
        const auto lines = lineCountOf(message);
        text += fmt::format(" | {} {}", lines, lines == 1 ? "line" : "lines");
    }
    text += '\n';
    if (item.tellsChangedPaths()) {
        text += "Changed paths:\n";
        for (const auto& change : item.sortedChanges()) {
            text.append("   ")
                .append(1, HSVNCharFromLogAction(change->action()))
                .append(1, ' ')
                .append(Display::inLine(change->path()));
            if (const auto copyPath = change->copyPath()) {
                text += fmt::format(" (from {}:{})", Display::inLine(*copyPath), change->copyRevision());
            }
            text += '\n';
        }
    }
    if (!_mergedBy.empty()) {
        text += item.isSubtractiveMerge() ? "Reverse merged via:" : "Merged via:";
        for (const HSVNRevisionNumber revision : _mergedBy) {
            text += fmt::format("{} r{}", text.ends_with(':') ? "" : ",", revision);
        }
        text += '\n';
    }
    return _options.quiet ? text : text + "\n" + message + "\n";
}

void LogPrinter::printText(const HSVNLogItem& item) const
{
    Output::write(Output::separator + textOf(item));
    if (_follow) {
        _follow(item.revision());
    }
}

void LogPrinter::printXML(const HSVNLogItem& item) const
{
    XML::Attributes attributes{{"revision", std::to_string(item.revision())}};
    if (!_mergedBy.empty()) {
        attributes.emplace_back("reverse-merge", item.isSubtractiveMerge() ? "true" : "false");
    }
    XML xml;
    xml.open("logentry", attributes).element("author", withoutDeletes(propertyOf(item, "svn:author")));
    if (const auto date = withoutDeletes(propertyOf(item, "svn:date")); date != "") {
        xml.element("date", date);
    }
    if (item.tellsChangedPaths()) {
        xml.open("paths");
        for (const auto& change : item.sortedChanges()) {
            addChangedPath(xml, *change);
        }
        xml.close("paths");
    }
    xml.element("msg", withoutDeletes(propertyOf(item, "svn:log")));
    if (const auto further = furtherProperties(item); !further.empty()) {
        xml.open("revprops");
        addProperties(xml, "property", further, true);
        xml.close("revprops");
    }
    if (!item.hasChildren()) {
        xml.close("logentry");
    }
    xml.write();
}

nlohmann::ordered_json LogPrinter::record(const HSVNLogItem& item) const
{
    nlohmann::ordered_json result{{"revision", item.revision()}};
    constexpr std::array names{std::pair{"author", "svn:author"}, std::pair{"date", "svn:date"},
                               std::pair{"message", "svn:log"}};
    for (const auto& [name, property] : names) {
        if (const auto value = propertyOf(item, property)) {
            result[name] = *value;
        }
    }
    if (const auto further = furtherProperties(item); !further.empty()) {
        result["properties"] = propertyRecord(further);
    }
    for (const auto& change : item.sortedChanges()) {
        nlohmann::ordered_json path{{"action", HSVNStringFromLogAction(change->action())},
                                    {"path", change->path()},
                                    {"kind", wordOf(change->kind())}};
        if (const auto copyPath = change->copyPath()) {
            path["copyFrom"] = {{"path", *copyPath}, {"revision", change->copyRevision()}};
        }
        result["paths"].push_back(std::move(path));
    }
    if (!_mergedBy.empty()) {
        result["mergedBy"] = _mergedBy;
    }
    return result;
}
