#include "CommandLine/Dates.h"
#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/JSON.h"
#include "Output/Output.h"
#include "Output/Sizes.h"
#include "Output/XML.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace {

/// One run of `list`.
class ListRun
{
  public:
    explicit ListRun(Session& session) : _session{session} {}

    void run()
    {
        const Options& options = _session.options;
        const auto targets = targetsOrCurrentFolder(_session);
        checkOptions();
        const bool isDocument = options.xml && !options.incremental;
        if (isDocument) {
            XML::writeHeader("lists");
        }
        TargetFailures failures;
        for (const auto& target : targets) {
            failures.attempt({WorkingCopyPathNotFound, NodeNotFound, NotDirectory}, [&] { list(target); });
            if (options.xml) {
                Output::writeBytes((_external.empty() ? XML{} : XML{}.close("external")).close("list").text());
            }
        }
        if (isDocument) {
            XML::writeFooter("lists");
        }
        if (options.json) {
            writeJSON(_records);
        }
        if (failures.any()) {
            fail(IllegalTarget, "Could not list all targets because some targets don't exist");
        }
    }

  private:
    void checkOptions() const
    {
        const Options& options = _session.options;
        if (options.xml && options.verbose) {
            fail(ArgumentParsing, "--verbose is not valid in --xml mode");
        }
        if (options.xml && options.humanReadable) {
            fail(ArgumentParsing, "--human-readable is not valid in --xml mode");
        }
        if (options.incremental && !options.xml) {
            fail(ArgumentParsing, "--incremental is only valid in --xml mode");
        }
    }

    void list(const std::string& target)
    {
        const Options& options = _session.options;
        const auto [path, peg] = peggedTarget(_session, target);
        HSVNListingOptions wishes;
        wishes.depth = options.depthOr(HSVNDepthImmediates);
        wishes.allFields = options.xml || options.json || options.verbose;
        wishes.fetchLocks = wishes.allFields;
        wishes.includeExternals = options.includeExternals;
        for (const auto& patterns : options.search) {
            wishes.patterns.push_back(patterns.front());
        }
        _external.clear();
        if (options.xml) {
            Output::writeBytes(XML{}.open("list", {{"path", localStyle(path)}}).text());
        }
        HSVNListItems(
            path, HSVNRevisionSpec::revisionWithRevision(options.startRevision(), peg), wishes,
            [&, &shown = path](const HSVNListedItem& item) { print(item, shown); }, _session.client());
    }

    void print(const HSVNListedItem& item, const std::string& target)
    {
        const Options& options = _session.options;
        std::string name = item.path;
        if (name.empty() && item.kind == HSVNNodeKindFile) {
            name = baseName(item.absolutePath);
        } else if (name.empty() && (!options.verbose || options.xml || options.json)) {
            return;
        }
        if (options.json) {
            _records.push_back(record(item, target, name));
            return;
        }
        printExternal(item);
        if (options.xml) {
            printXML(item, name);
            return;
        }
        name = localStyle(name) + (item.kind == HSVNNodeKindDirectory ? "/" : "");
        Output::write((options.verbose ? columns(item) : "") + name + "\n");
    }

    /// Says once where the following items come from.
    void printExternal(const HSVNListedItem& item)
    {
        const std::string external =
            item.externalTarget ? *item.externalTarget + '\n' + item.externalParentURL.value_or("") : "";
        if (external == _external) {
            return;
        }
        const bool follows = !_external.empty();
        _external = external;
        const std::string parent = item.externalParentURL.value_or("");
        const std::string target = item.externalTarget.value_or("");
        if (_session.options.xml) {
            XML xml = follows ? XML{}.close("external") : XML{};
            Output::writeBytes(xml.open("external", {{"parent_url", parent}, {"target", target}}).text());
        } else {
            Output::write(fmt::format("Listing external '{}' defined on '{}':\n", target, parent));
        }
    }

    std::string columns(const HSVNListedItem& item) const
    {
        constexpr std::size_t authorWidth = 8;
        std::string size;
        if (item.kind == HSVNNodeKindFile) {
            size = _session.options.humanReadable ? humanSize(item.size, true) : std::to_string(item.size);
        }
        return fmt::format("{:>7} {:<8} {} {:>{}} {} ", item.revision,
                           item.author.value_or(" ? ").substr(0, authorWidth), item.lock ? 'O' : ' ', size, sizeWidth,
                           item.date ? listDate(*item.date) : "");
    }

    static void printXML(const HSVNListedItem& item, const std::string& name)
    {
        const bool isFile = item.kind == HSVNNodeKindFile;
        XML xml;
        xml.open("entry", {{"kind", isFile ? "file" : "dir"}}).element("name", std::string_view{name});
        if (isFile) {
            xml.element("size", std::string_view{std::to_string(item.size)});
        }
        addCommit(xml, item.revision, item.author, item.date);
        if (item.lock) {
            addLock(xml, *item.lock);
        }
        xml.close("entry").write();
    }

    static nlohmann::ordered_json record(const HSVNListedItem& item, const std::string& target, const std::string& name)
    {
        const bool isFile = item.kind == HSVNNodeKindFile;
        nlohmann::ordered_json record{
            {"target", localStyle(target)}, {"name", name}, {"kind", isFile ? "file" : "dir"}};
        if (isFile) {
            record["size"] = item.size;
        }
        record["revision"] = item.revision;
        if (item.author) {
            record["author"] = *item.author;
        }
        if (item.date) {
            record["date"] = exactDate(*item.date);
        }
        if (item.lock) {
            record["lock"] = {{"token", item.lock->token()}, {"owner", item.lock->owner().value_or("")}};
        }
        if (item.externalTarget) {
            record["external"] = *item.externalTarget;
        }
        return record;
    }

    static constexpr int sizeWidth = 10;

    Session& _session;
    std::string _external; ///< the external that the last item belongs to; empty for none
    nlohmann::ordered_json _records = nlohmann::ordered_json::array();
};

void runList(Session& session) { ListRun{session}.run(); }

} // namespace

const Subcommand& listSubcommand()
{
    static const Subcommand subcommand{"list",
                                       {"ls"},
                                       "List directory entries in the repository.",
                                       "list [TARGET[@REV]...]",
                                       "Lists files, and what folders contain, as the repository has them.  A\n"
                                       "working copy's item stands for its URL; without a TARGET it is the current\n"
                                       "folder that does.  REV tells in which revision a target is looked up.\n"
                                       "\n"
                                       "With --verbose, each item is shown with revision and author of its last\n"
                                       "commit, the letter 'O' if it is locked, its size in bytes, and date and\n"
                                       "time of its last commit.",
                                       {OptionId::Revision, OptionId::Verbose, OptionId::Recursive,
                                        OptionId::HumanReadable, OptionId::Depth, OptionId::Incremental, OptionId::XML,
                                        OptionId::JSON, OptionId::IncludeExternals, OptionId::Search},
                                       {},
                                       runList};
    return subcommand;
}
