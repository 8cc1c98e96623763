#include "CommandLine/Errors.h"
#include "CommandLine/RevisionArguments.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/DiffProgram.h"
#include "Output/LogGraph.h"
#include "Output/LogPrinter.h"
#include "Output/Output.h"
#include "Output/XML.h"

#include <array>
#include <fmt/format.h>
#include <functional>
#include <utility>

namespace {

void checkOptions(const Options& options)
{
    if (!options.xml) {
        const std::array onlyInXML{std::pair{options.allRevisionProperties, "with-all-revprops"},
                                   std::pair{options.noRevisionProperties, "with-no-revprops"},
                                   std::pair{!options.revisionProperties.empty(), "with-revprop"}};
        for (const auto& [given, name] : onlyInXML) {
            if (given && !options.json) {
                fail(ArgumentParsing, fmt::format("'{}' option only valid in XML mode", name));
            }
        }
    }
    if (options.showDiff && (options.xml || options.json)) {
        fail(ArgumentParsing, fmt::format("'diff' option is not supported in {} mode", options.xml ? "XML" : "JSON"));
    }
    if (options.graph && (options.xml || options.json || options.showDiff)) {
        fail(ArgumentParsing, fmt::format("--graph and --{} are mutually exclusive", options.xml    ? "xml"
                                                                                     : options.json ? "json"
                                                                                                    : "diff"));
    }
    const std::array onlyWithDiff{
        std::pair{options.diffCommand.has_value(), "diff-cmd"}, std::pair{options.internalDiff, "internal-diff"},
        std::pair{options.extensions.has_value(), "extensions"}, std::pair{options.depth != HSVNDepthUnknown, "depth"}};
    for (const auto& [given, name] : onlyWithDiff) {
        if (given && !options.showDiff) {
            fail(ArgumentParsing, fmt::format("'{}' option requires 'diff' option", name));
        }
    }
}

/// After a URL come paths below it.
void checkFurtherTargets(const std::vector<std::string>& targets)
{
    for (std::size_t index = 1; isURL(targets.front()) && index < targets.size(); ++index) {
        if (isURL(targets[index]) || targets[index].starts_with('/')) {
            fail(ArgumentParsing, fmt::format("Only relative paths can be specified after a URL for '{} log', but "
                                              "'{}' is not a relative path",
                                              programName(), targets[index]));
        }
    }
}

/// -c N names the one revision N, not the step to it.
RevisionArgument changeAsRange(const RevisionArgument& change)
{
    const auto start = change.start->number();
    const auto end = change.end->number();
    const auto number = HSVNRevision::revisionWithNumber;
    return start < end ? RevisionArgument{number(start + 1), change.end}
                       : RevisionArgument{change.start, number(end + 1)};
}

/// One revision is a range of itself; what is left out wholly Subversion completes, down to revision 1 if there is one.
std::pair<HSVNRevisionRef, HSVNRevisionRef> completed(const RevisionArgument& range)
{
    const bool isOne = !isUnspecified(range.start) && isUnspecified(range.end);
    return {range.start, isOne ? range.start : range.end};
}

/// The revision properties to ask for; nil means all.
std::optional<std::vector<std::string>> wantedProperties(const Options& options)
{
    if (options.allRevisionProperties) {
        return std::nullopt;
    }
    if (options.noRevisionProperties) {
        return std::vector<std::string>{};
    }
    if (!options.revisionProperties.empty()) {
        std::vector<std::string> names;
        for (const auto& property : options.revisionProperties) {
            if (!property.value.value_or("").empty()) {
                fail(ArgumentParsing, "cannot assign with 'with-revprop' option (drop the '=')");
            }
            names.push_back(property.name);
        }
        return names;
    }
    std::vector<std::string> names{"svn:author", "svn:date"};
    if (!options.quiet) {
        names.emplace_back("svn:log");
    }
    return names;
}

/// Prints what a revision changed at and below the target.
class DiffPrinter
{
  public:
    /// @param peg  where the target is looked up
    DiffPrinter(Session& session, std::string target, const HSVNRevisionRef& peg)
        : _session{session}, _target{std::move(target)}, _peg{!isUnspecified(peg) ? peg
                                                              : isURL(_target)    ? HSVNRevision::HEAD()
                                                                                  : HSVNRevision::WORKING()}
    {
        const Options& options = session.options;
        _choices.depth = options.depthOr(HSVNDepthInfinity);
        _choices.ignoreAncestry = false;
        _choices.omitDeleted = true;
        chooseDiffProgram(session, _choices);
    }

    void print(HSVNRevisionNumber revision) const
    {
        Output::write("\n");
        _session.client()->diff(
            {HSVNTarget::verbatim(_target), HSVNRevisionSpec::pegRevisionWithRevision(_peg)},
            {HSVNRevision::revisionWithNumber(revision - 1), HSVNRevision::revisionWithNumber(revision)}, _choices,
            [](std::string_view bytes) { Output::writeBytes(bytes); });
        Output::write("\n");
    }

  private:
    Session& _session;
    std::string _target;
    HSVNRevisionRef _peg;
    HSVNDiffChoices _choices;
};

/// The URL of the repository's root that a target belongs to.
std::string rootURL(Session& session, const std::string& target)
{
    const auto list = HSVNArguments::canonicalTargets({localStyle(target) + "@", "^/"}, session.client());
    return list.targets.back();
}

/// What a path of the repository has merged; nothing where it may not be read.
std::string mergeInformationOf(Session& session, const std::string& root, const std::string& path,
                               HSVNRevisionNumber number)
{
    const std::string url = HSVNURL::URLWithString(root)->pathByNormalizingAndAddingComponent(path.substr(1))->string();
    const auto revision = HSVNRevision::revisionWithNumber(number);
    try {
        const auto found = session.client()->property(HSVNTarget::verbatim(url), "svn:mergeinfo",
                                                      HSVNRevisionSpec::revisionWithRevision(revision, revision));
        return found.values.empty() ? "" : found.values.front().second;
    } catch (const HSVNException& exception) {
        if (!hasCause(exception, NotAuthorized) && !hasCause(exception, Forbidden) &&
            !hasCause(exception, PathUnreadable)) {
            throw;
        }
        return "";
    }
}

/// Copies and merges are told with the rest, at once; the server is asked again but for the merges that it leaves out.
void printGraph(Session& session, const std::vector<std::string>& targets, HSVNLogChoices choices)
{
    choices.changedPaths = true;
    choices.mergedRevisions = true;
    LogGraph graph{session.options};
    session.client()->log(HSVNTargets::verbatim(targets), choices,
                          [&](const HSVNLogItemRef& item) { graph.add(item); });
    std::string root;
    graph.settleMerges([&](const std::string& path, HSVNRevisionNumber revision) {
        root = root.empty() ? rootURL(session, targets.front()) : root;
        return mergeInformationOf(session, root, path, revision);
    });
    graph.print();
}

void runLog(Session& session)
{
    const Options& options = session.options;
    checkOptions(options);
    auto targets = targetsOrCurrentFolder(session);
    if (options.usedChange && options.usedRevision) {
        fail(BadRevision, "-c and -r are mutually exclusive");
    }
    const auto [first, peg] = peggedTarget(session, targets.front());
    targets.front() = first;
    checkFurtherTargets(targets);
    HSVNLogChoices choices{.pegRevision = peg,
                           .limit = options.limit.value_or(0),
                           .changedPaths = options.verbose,
                           .stopOnCopy = options.stopOnCopy,
                           .mergedRevisions = options.useMergeHistory};
    for (const auto& revision : options.revisions) {
        choices.ranges.push_back(completed(options.usedChange ? changeAsRange(revision) : revision));
    }
    session.pageOutput();
    const bool isDocument = options.xml && !options.incremental;
    if (isDocument) {
        XML::writeHeader("log");
    }
    choices.properties = wantedProperties(options);
    if (options.graph) {
        printGraph(session, targets, choices);
        return;
    }
    const DiffPrinter diffs{session, first, peg};
    LogPrinter printer{options, options.showDiff ? [&](HSVNRevisionNumber revision) { diffs.print(revision); }
                                                 : std::function<void(HSVNRevisionNumber)>{}};
    session.client()->log(HSVNTargets::verbatim(targets), choices,
                          [&](const HSVNLogItemRef& item) { printer.print(*item); });
    printer.finish();
    if (isDocument) {
        XML::writeFooter("log");
    }
}

} // namespace

const Subcommand& logSubcommand()
{
    static const Subcommand subcommand{"log",
                                       {},
                                       "Show the log messages for a set of revision(s) and/or path(s).",
                                       "1. log [PATH][@REV]\n"
                                       "2. log URL[@REV] [PATH...]",
                                       "1. Shows the history of the item that PATH, by default the current\n"
                                       "   folder, stands for in the repository: from REV, or from its BASE\n"
                                       "   revision where REV is left out, back to revision 1.\n"
                                       "2. Shows the history of URL, or of the PATHs below it, from REV, or from\n"
                                       "   HEAD where REV is left out, back to revision 1.\n"
                                       "\n"
                                       "-r or -c may be given several times, though not both of them, and their\n"
                                       "ranges may run in either direction.\n"
                                       "\n"
                                       "-v adds the changed paths: A added, D deleted, R replaced or M modified,\n"
                                       "with the source of a copy in parentheses.  -q leaves the message out.\n"
                                       "\n"
                                       "--search shows only revisions whose author, date or message, or with -v a\n"
                                       "path of which, the pattern is found in.  --limit then limits the revisions\n"
                                       "that are searched, not those that are shown.\n"
                                       "\n"
                                       "--graph prints the revisions from the youngest on, those that were merged\n"
                                       "among them, and draws beside them what each goes on from: the revision\n"
                                       "before it on its branch, what its branch is a copy of, what it merged.\n"
                                       "\n"
                                       "--diff adds what each revision changed at and below the target, without\n"
                                       "the lines of deleted files; --depth, --diff-cmd, --internal-diff and -x go\n"
                                       "with it.",
                                       {OptionId::Revision,
                                        OptionId::Change,
                                        OptionId::Quiet,
                                        OptionId::Verbose,
                                        OptionId::UseMergeHistory,
                                        OptionId::Targets,
                                        OptionId::StopOnCopy,
                                        OptionId::Incremental,
                                        OptionId::XML,
                                        OptionId::JSON,
                                        OptionId::Limit,
                                        OptionId::WithAllRevprops,
                                        OptionId::WithNoRevprops,
                                        OptionId::WithRevprop,
                                        OptionId::Depth,
                                        OptionId::Graph,
                                        OptionId::Diff,
                                        OptionId::DiffCmd,
                                        OptionId::InternalDiff,
                                        OptionId::Extensions,
                                        OptionId::Search,
                                        OptionId::SearchAnd},
                                       {{OptionId::Quiet, "do not print the log message"},
                                        {OptionId::Verbose, "also print all affected paths"},
                                        {OptionId::WithRevprop, "retrieve revision property ARG"}},
                                       runLog,
                                       RevisionUse::Ranges};
    return subcommand;
}
