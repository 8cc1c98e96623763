#include "CommandLine/Dates.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/Display.h"
#include "Output/ErrorOutput.h"
#include "Output/JSON.h"
#include "Output/NotificationListener.h"
#include "Output/Output.h"
#include "Output/Sizes.h"
#include "Output/XML.h"

#include <algorithm>
#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <utility>

namespace {

/// One run of `list`.
class ListRun
{
  public:
    explicit ListRun(Session& session) : _session{session}, _printer{session.options.xml || session.options.json}
    {
        printNotifications(session, _printer);
    }

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
            failures.attempt({WorkingCopyPathNotFound, NodeNotFound}, [&] { list(target); });
            if (options.xml) {
                Output::writeBytes((_external.empty() ? XML{} : XML{}.close("external")).close("list").text());
            }
        }
        if (isDocument) {
            XML::writeFooter("lists");
        }
        if (options.json) {
            _records.finish();
        }
        if (failures.any()) {
            const auto failure =
                ::failure(IllegalTarget, "Could not list all targets because some targets don't exist");
            throw _printer.withFailedExternals(failure);
        }
        _printer.requireExternals();
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
        const bool isDetailed = options.xml || options.json || options.verbose;
        HSVNListChoices choices{.depth = options.depthOr(HSVNDepthImmediates),
                                .allFields = isDetailed,
                                .fetchLocks = isDetailed,
                                .includeExternals = options.includeExternals};
        for (const auto& patterns : options.search) {
            choices.patterns.push_back(patterns.front());
        }
        _external.clear();
        if (options.xml) {
            Output::writeBytes(XML{}.open("list", {{"path", localStyle(path)}}).text());
        }
        _session.client()->list(HSVNTarget::verbatim(path),
                                HSVNRevisionSpec::revisionWithRevision(options.startRevision(), peg), choices,
                                [&, &shown = path](const HSVNNodeRef& node) { print(*node, shown); });
    }

    void print(const HSVNNode& item, const std::string& target)
    {
        const Options& options = _session.options;
        const std::string name = item.name().value_or("");
        if (name == "." && (!options.verbose || options.xml || options.json)) {
            return; // the folder that is listed
        }
        if (options.json) {
            _records.add(record(item, target, name));
            return;
        }
        printExternal(item);
        if (options.xml) {
            printXML(item, name);
            return;
        }
        Output::write((options.verbose ? columns(item) : "") + Display::inLine(localStyle(name)) +
                      (item.isDirectory() ? "/\n" : "\n"));
    }

    /// Says once where the following items come from.
    void printExternal(const HSVNNode& item)
    {
        const std::string parent = item.externalParentURL().value_or("");
        const std::string target = item.externalTarget().value_or("");
        const std::string external = item.externalTarget() ? target + '\n' + parent : "";
        if (external == _external) {
            return;
        }
        const bool follows = !_external.empty();
        _external = external;
        if (_session.options.xml) {
            XML xml = follows ? XML{}.close("external") : XML{};
            Output::writeBytes(xml.open("external", {{"parent_url", parent}, {"target", target}}).text());
        } else {
            Output::write(fmt::format("Listing external '{}' defined on '{}':\n", target, parent));
        }
    }

    std::string columns(const HSVNNode& item)
    {
        const bool isHuman = _session.options.humanReadable;
        std::string size;
        if (!item.isDirectory()) {
            size = isHuman ? humanSize(static_cast<std::int64_t>(item.size()), true) : std::to_string(item.size());
        }
        return fmt::format("{:>7} {} {} {:>{}} {} ", item.revision(), authorColumn(item.author().value_or(" ? ")),
                           item.lock() ? 'O' : ' ', size, isHuman ? 4 : 10, listDate(item.date().value_or(HSVNDate{})));
    }

    /// As in Subversion's columns, bytes count, and a long author widens the column for all that come after.
    std::string authorColumn(std::string author)
    {
        const auto [least, most] = _session.options.humanReadable ? std::pair{14UL, 22UL} : std::pair{8UL, 16UL};
        _authorWidth = std::clamp(author.size(), std::max(_authorWidth, least), most);
        std::size_t cut = std::min(author.size(), _authorWidth);
        while (cut < author.size() && (static_cast<unsigned char>(author[cut]) & 0xc0U) == 0x80) {
            --cut; // inside of a character, which would not be text
        }
        author.resize(cut);
        author.resize(_authorWidth, ' ');
        return author;
    }

    static void printXML(const HSVNNode& item, const std::string& name)
    {
        const bool isFile = !item.isDirectory();
        XML xml;
        xml.open("entry", {{"kind", isFile ? "file" : "dir"}}).element("name", std::string_view{name});
        if (isFile) {
            xml.element("size", std::string_view{std::to_string(item.size())});
        }
        addCommit(xml, item.revision(), item.author(), item.exactDate());
        if (item.lock()) {
            addLock(xml, *item.lock());
        }
        xml.close("entry").write();
    }

    static nlohmann::ordered_json record(const HSVNNode& item, const std::string& target, const std::string& name)
    {
        const bool isFile = !item.isDirectory();
        nlohmann::ordered_json record{
            {"target", localStyle(target)}, {"name", name}, {"kind", isFile ? "file" : "dir"}};
        if (isFile) {
            record["size"] = item.size();
        }
        record["revision"] = item.revision();
        if (const auto author = item.author()) {
            record["author"] = *author;
        }
        if (const auto date = item.exactDate()) {
            record["date"] = exactDate(*date);
        }
        if (const auto& lock = item.lock()) {
            record["lock"] = {{"token", lock->token()}, {"owner", lock->owner().value_or("")}};
        }
        if (const auto external = item.externalTarget()) {
            record["external"] = *external;
        }
        return record;
    }

    std::size_t _authorWidth = 0;

    Session& _session;
    NotificationPrinter _printer; // of externals that cannot be listed
    std::string _external;        ///< the external that the last item belongs to; empty for none
    JSONArray _records;
};

void runList(Session& session)
{
    session.pageOutput();
    ListRun{session}.run();
}

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
