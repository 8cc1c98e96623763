#include "CommandLine/NativeText.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/ErrorOutput.h"
#include "Output/JSON.h"
#include "Output/Output.h"
#include "Output/PropertyPrinter.h"
#include "Output/XML.h"

#include <filesystem>
#include <fmt/format.h>
#include <utility>

namespace {

/// Whether an item without properties of its own is named all the same: in XML below those that it inherits, unless it
/// is a folder of a working copy.
bool isNamedAlways(const HSVNItemProperties& item)
{
    return !item.inherited.empty() &&
           (isURL(item.path) || !std::filesystem::is_directory(NativeText::fromUTF8(localStyle(item.path))));
}

/// One run of `proplist`.
class ProplistRun
{
  public:
    explicit ProplistRun(Session& session) : _session{session} {}

    void run()
    {
        const Options& options = _session.options;
        const auto targets = targetsOrCurrentFolder(_session);
        if (options.revisionProperty) {
            printRevisionProperties(revisionPropertyTarget(_session, targets));
            return;
        }
        if (options.xml) {
            XML::writeHeader("properties");
        }
        TargetFailures failures{options.quiet};
        for (const auto& target : targets) {
            failures.attempt({UnversionedResource, EntryNotFound}, [&] { list(target); });
        }
        if (options.xml) {
            XML::writeFooter("properties");
        }
        if (options.json) {
            _records.finish();
        }
        if (failures.any()) {
            throw wrapped(failure(IllegalTarget, "Illegal target for the requested operation"),
                          "Could not display properties of all targets because some targets are not versioned");
        }
    }

  private:
    void printRevisionProperties(const RevisionPropertyTarget& target) const
    {
        const Options& options = _session.options;
        HSVNRevisionNumber number = HSVNInvalidRevision;
        const auto properties =
            _session.client()->revisionProperties(HSVNTarget::verbatim(target.url), target.revision, &number);
        if (options.xml) {
            XML::writeHeader("properties");
            XML xml;
            xml.open("revprops", {{"rev", std::to_string(number)}});
            addProperties(xml, "property", properties, options.verbose);
            xml.close("revprops").write();
            XML::writeFooter("properties");
        } else if (options.json) {
            const nlohmann::ordered_json record{{"revision", number}, {"properties", propertyRecord(properties)}};
            writeJSON(record);
        } else {
            Output::write(fmt::format("Unversioned properties on revision {}:\n", number));
            printProperties(properties, options.verbose);
        }
    }

    void list(const std::string& target)
    {
        const Options& options = _session.options;
        const auto [path, peg] = peggedTarget(_session, target);
        _isInheriting = options.showInheritedProperties;
        _session.client()->properties(HSVNTarget::verbatim(path),
                                      HSVNRevisionSpec::revisionWithRevision(options.startRevision(), peg),
                                      {.depth = options.depthOr(HSVNDepthEmpty),
                                       .inherited = options.showInheritedProperties,
                                       .changelists = options.changelists},
                                      [this](const HSVNItemProperties& item) { print(item); });
    }

    void print(const HSVNItemProperties& item)
    {
        if (_session.options.json) {
            nlohmann::ordered_json record{{"path", localStyle(item.path)},
                                          {"properties", propertyRecord(item.properties)}};
            for (const auto& [folder, properties] : item.inherited) {
                record["inherited"][folder] = propertyRecord(properties);
            }
            _records.add(std::move(record));
            return;
        }
        for (const auto& [folder, properties] : item.inherited) {
            printOne(item, folder, properties, true);
        }
        const bool isInheritingURL = std::exchange(_isInheriting, false) && isURL(item.path);
        if (!item.properties.empty() || (_session.options.xml && (isInheritingURL || isNamedAlways(item)))) {
            printOne(item, localStyle(item.path), item.properties, false);
        }
    }

    void printOne(const HSVNItemProperties& item, const std::string& path, const HSVNPropertyMap& properties,
                  bool isInherited) const
    {
        const Options& options = _session.options;
        if (options.xml) {
            XML xml;
            xml.open("target", {{"path", path}});
            addProperties(xml, isInherited ? "inherited_property" : "property", properties, options.verbose);
            xml.close("target").write();
            return;
        }
        if (!options.quiet) {
            Output::write(isInherited
                              ? fmt::format("Inherited properties on '{}',\nfrom '{}':\n", localStyle(item.path), path)
                              : fmt::format("Properties on '{}':\n", path));
        }
        printProperties(properties, options.verbose);
    }

    Session& _session;
    bool _isInheriting = false; // the next item is, and in XML a URL is then named whether it has properties or not
    JSONArray _records;
};

void runProplist(Session& session)
{
    session.pageOutput();
    ProplistRun{session}.run();
}

} // namespace

const Subcommand& proplistSubcommand()
{
    static const Subcommand subcommand{"proplist",
                                       {"plist", "pl"},
                                       "List all properties on files, dirs, or revisions.",
                                       "1. proplist [TARGET[@REV]...]\n"
                                       "2. proplist --revprop -r REV [TARGET]",
                                       "1. Lists the properties of items; REV tells in which revision a target is\n"
                                       "   looked up.\n"
                                       "2. Lists a revision's own properties, from the repository that TARGET is of.\n"
                                       "\n"
                                       "With --verbose the values are shown, with --quiet no paths.",
                                       {OptionId::Verbose, OptionId::Recursive, OptionId::Depth, OptionId::Revision,
                                        OptionId::Quiet, OptionId::Revprop, OptionId::XML, OptionId::JSON,
                                        OptionId::Changelist, OptionId::ShowInheritedProps},
                                       {{OptionId::Verbose, "print path, name and value on separate lines"},
                                        {OptionId::Quiet, "don't print the path"}},
                                       runProplist};
    return subcommand;
}
