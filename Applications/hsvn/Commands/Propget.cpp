#include "CommandLine/Dates.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/PropertyNames.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/ErrorOutput.h"
#include "Output/JSON.h"
#include "Output/Output.h"
#include "Output/PropertyPrinter.h"
#include "Output/XML.h"

#include <fmt/format.h>

namespace {

/// A revision as it was asked for.
std::string shown(const HSVNRevision& revision)
{
    return revision.date()                            ? exactDate(*revision.date())
           : revision.number() != HSVNInvalidRevision ? std::to_string(revision.number())
                                                      : "head";
}

/// What stands above a value, of a name that the locale can write.
void writeHeading(const std::string& text) { Output::writeBytes(NativeText::exactlyFromUTF8(text)); }

/// One run of `propget`.
class PropgetRun
{
  public:
    explicit PropgetRun(Session& session) : _session{session} {}

    void run()
    {
        const Options& options = _session.options;
        if (options.verbose && (options.revisionProperty || options.noNewline || options.xml)) {
            fail(MutuallyExclusiveArguments, "--verbose cannot be used with --revprop or --no-newline or --xml");
        }
        _name = NativeText::toUTF8(takeArgument(_session));
        requirePropertyName(_name);
        const auto targets = targetsOrCurrentFolder(_session);
        const HSVNDepth depth = options.depthOr(HSVNDepthEmpty);
        if (options.revisionProperty) {
            printRevisionProperty(revisionPropertyTarget(_session, targets));
            return;
        }
        _showsPaths =
            targets.size() > 1 || depth > HSVNDepthEmpty || options.showInheritedProperties || options.verbose;
        printTargets(targets, depth);
    }

  private:
    void printRevisionProperty(const RevisionPropertyTarget& target)
    {
        HSVNRevisionNumber number = HSVNInvalidRevision;
        const auto value =
            _session.client()->revisionProperty(HSVNTarget::verbatim(target.url), _name, target.revision, &number);
        if (!value) {
            fail(PropertyNotFound,
                 fmt::format("Property '{}' not found on revision {}", _name, shown(*target.revision)));
        }
        if (_session.options.json) {
            const nlohmann::ordered_json record{{"revision", number},
                                                {"properties", propertyRecord({{_name, *value}})}};
            writeJSON(record);
            return;
        }
        if (_session.options.xml) {
            XML::writeHeader("properties");
            XML{}
                .open("revprops", {{"rev", std::to_string(number)}})
                .property("property", _name, *value)
                .close("revprops")
                .write();
            XML::writeFooter("properties");
            return;
        }
        printValue(_name, *value);
        Output::write(_session.options.noNewline ? "" : "\n");
    }

    void printTargets(const std::vector<std::string>& targets, HSVNDepth depth)
    {
        const Options& options = _session.options;
        if (options.xml) {
            XML::writeHeader("properties");
        }
        if (options.noNewline && (options.showInheritedProperties || depth > HSVNDepthEmpty || targets.size() > 1)) {
            fail(ArgumentParsing, "--no-newline is only available for single-target, non-recursive propget operations");
        }
        for (const auto& target : targets) {
            const auto [path, peg] = peggedTarget(_session, target);
            const auto spec = HSVNRevisionSpec::revisionWithRevision(options.startRevision(), peg);
            if (options.json && depth > HSVNDepthEmpty) {
                recordAll(path, spec, depth);
                continue;
            }
            const auto found = _session.client()->property(
                HSVNTarget::verbatim(path), _name, spec,
                {.depth = depth, .inherited = options.showInheritedProperties, .changelists = options.changelists});
            if (found.values.empty() && !options.showInheritedProperties && depth == HSVNDepthEmpty) {
                warnMissing(target);
            }
            if (options.json) {
                record(path, found);
            } else {
                print(path, found);
            }
        }
        if (options.xml) {
            XML::writeFooter("properties");
        }
        if (options.json) {
            _records.finish();
        }
        if (_isMissing) {
            fail(General, "A problem occurred; see other errors for details");
        }
    }

    void warnMissing(const std::string& target)
    {
        printWarning(failure(PropertyNotFound, fmt::format("Property '{}' not found on '{}'", _name, target)));
        _isMissing = true;
    }

    /// Records the property of each item as it comes: `property` collects all values, however many.
    void recordAll(const std::string& target, const HSVNRevisionSpecRef& spec, HSVNDepth depth)
    {
        const Options& options = _session.options;
        const auto ofName = [&](const HSVNPropertyMap& properties) {
            const auto found = properties.find(_name);
            return found == properties.end() ? HSVNPropertyMap{} : HSVNPropertyMap{*found};
        };
        _session.client()->properties(
            HSVNTarget::verbatim(target), spec,
            {.depth = depth, .inherited = options.showInheritedProperties, .changelists = options.changelists},
            [&](const HSVNItemProperties& item) {
                const std::string path = localStyle(item.path);
                for (const auto& [folder, properties] : item.inherited) {
                    if (const auto own = ofName(properties); !own.empty()) {
                        _records.add({{"path", path}, {"inherited", {{folder, propertyRecord(own)}}}});
                    }
                }
                if (const auto own = ofName(item.properties); !own.empty()) {
                    _records.add({{"path", path}, {"properties", propertyRecord(own)}});
                }
            });
    }

    void record(const std::string& target, const HSVNPropertyValues& found)
    {
        for (const auto& [folder, properties] : found.inherited) {
            _records.add({{"path", localStyle(target)}, {"inherited", {{folder, propertyRecord(properties)}}}});
        }
        for (const auto& [path, value] : found.values) {
            const std::string shown = isURL(path) ? path : relativeToCurrentFolder(path);
            _records.add({{"path", shown}, {"properties", propertyRecord({{_name, value}})}});
        }
    }

    void print(const std::string& target, const HSVNPropertyValues& found) const
    {
        for (const auto& [folder, properties] : found.inherited) {
            printOne(target, folder, properties, true);
        }
        for (const auto& [path, value] : found.values) {
            printOne(target, path, {{_name, value}}, false);
        }
    }

    void printOne(const std::string& target, const std::string& path, const HSVNPropertyMap& properties,
                  bool isInherited) const
    {
        if (_session.options.xml) {
            XML xml;
            xml.open("target", {{"path", path}});
            for (const auto& [name, value] : properties) {
                xml.property(isInherited ? "inherited_property" : "property", name, value);
            }
            xml.close("target").write();
            return;
        }
        const std::string shown = isURL(path) ? path : relativeToCurrentFolder(path);
        if (_session.options.verbose) {
            writeHeading(isInherited
                             ? fmt::format("Inherited properties on '{}',\nfrom '{}':\n", localStyle(target), shown)
                             : fmt::format("Properties on '{}':\n", shown));
            printProperties(properties, true);
            return;
        }
        if (_showsPaths) {
            writeHeading(shown + " - ");
        }
        for (const auto& [name, value] : properties) {
            printValue(name, value);
        }
        Output::write(_session.options.noNewline ? "" : "\n");
    }

    Session& _session;
    std::string _name;
    JSONArray _records;
    bool _showsPaths = false;
    bool _isMissing = false;
};

void runPropget(Session& session)
{
    session.pageOutput();
    PropgetRun{session}.run();
}

} // namespace

const Subcommand& propgetSubcommand()
{
    static const Subcommand subcommand{"propget",
                                       {"pget", "pg"},
                                       "Print the value of a property on files, dirs, or revisions.",
                                       "1. propget PROPNAME [TARGET[@REV]...]\n"
                                       "2. propget PROPNAME --revprop -r REV [TARGET]",
                                       "1. Prints the property of items; REV tells in which revision a target is\n"
                                       "   looked up.\n"
                                       "2. Prints a revision's own property, from the repository that TARGET is of.\n"
                                       "\n"
                                       "A value is printed behind its item's path where there may be several\n"
                                       "items.  With --verbose path and name have lines of their own before it.",
                                       {OptionId::Verbose, OptionId::Recursive, OptionId::Depth, OptionId::Revision,
                                        OptionId::Revprop, OptionId::Strict, OptionId::NoNewline, OptionId::XML,
                                        OptionId::JSON, OptionId::Changelist, OptionId::ShowInheritedProps},
                                       {{OptionId::Verbose, "print path, name and value on separate lines"}},
                                       runPropget};
    return subcommand;
}
