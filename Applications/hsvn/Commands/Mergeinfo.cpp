#include "CommandLine/Errors.h"
#include "CommandLine/RevisionArguments.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/LogPrinter.h"
#include "Output/MergePicture.h"
#include "Output/Output.h"

#include <array>
#include <fmt/format.h>

namespace {

void requireLog(const Options& options)
{
    const std::array onlyWithLog{std::pair{options.quiet, "--quiet (-q)"}, std::pair{options.verbose, "--verbose (-v)"},
                                 std::pair{options.incremental, "--incremental"}};
    for (const auto& [given, name] : onlyWithLog) {
        if (given && !options.showLog) {
            fail(ArgumentParsing, fmt::format("{} option valid only with --log option", name));
        }
    }
    const std::array onlyWithRevisions{
        std::pair{options.usedRevision, "--revision (-r) option"},
        std::pair{options.depth != HSVNDepthUnknown, "Depth specification options"},
        std::pair{options.showLog, "--log option"},
    };
    for (const auto& [given, name] : onlyWithRevisions) {
        if (given && options.shownRevisions == ShownRevisions::Unspecified) {
            fail(ArgumentParsing, fmt::format("{} valid only with --show-revs option", name));
        }
    }
}

/// A branch as an argument names it, where it is at its tip when no revision is given.
HSVNTargetInRevision branchOf(Session& session, const std::string& argument, const HSVNRevisionRef& tipOfPath)
{
    const auto [path, peg] = peggedTarget(session, argument);
    const auto tip = isURL(path) ? HSVNRevision::HEAD() : tipOfPath;
    const auto revision = isUnspecified(peg) ? tip : peg;
    return {HSVNTarget::verbatim(path), HSVNRevisionSpec::revisionWithRevision(revision, revision)};
}

bool isLocal(const HSVNRevisionRef& revision)
{
    return revision->isEqual(HSVNRevision::BASE()) || revision->isEqual(HSVNRevision::WORKING());
}

/// Prints the revisions of --show-revs.
void printRevisions(Session& session, const HSVNTargetInRevision& source, const HSVNTargetInRevision& target)
{
    const Options& options = session.options;
    const auto& start = options.startRevision();
    HSVNMergedRevisionsChoices choices{
        .eligible = options.shownRevisions == ShownRevisions::Eligible,
        .range = {start, isUnspecified(options.endRevision()) ? start : options.endRevision()},
        .depth = options.depthOr(HSVNDepthEmpty),
        .properties = std::vector<std::string>{}};
    if (!options.showLog) {
        session.client()->mergedRevisions(source, target, choices, [](const HSVNLogItemRef& item) {
            Output::write(fmt::format("r{}{}\n", item->revision(), item->isPartlyMerged() ? "*" : ""));
        });
        return;
    }
    choices.properties = {"svn:author", "svn:date"};
    if (!options.quiet) {
        choices.properties->emplace_back("svn:log");
    }
    LogPrinter printer{options};
    session.client()->mergedRevisions(source, target, choices, [&](const HSVNLogItemRef& item) {
        item->setTellsChangedPaths(options.verbose);
        printer.print(*item);
    });
    printer.finish();
}

void runMergeinfo(Session& session)
{
    const Options& options = session.options;
    const auto targets = targetsOf(session);
    if (targets.empty() || targets.size() > 2) {
        fail(ArgumentParsing, targets.empty() ? "Not enough arguments given" : "Too many arguments given");
    }
    const auto source = branchOf(session, targets.front(), HSVNRevision::HEAD());
    const auto target = branchOf(session, targets.size() == 2 ? targets.back() : "", HSVNRevision::BASE());
    requireLog(options);
    session.pageOutput();
    if (options.shownRevisions == ShownRevisions::Unspecified) {
        const bool isWorkingCopy = !target.target.isURL() && isLocal(target.revision->pegRevision());
        Output::write(mergePicture(session.client()->mergingSummary(source, target), isWorkingCopy));
    } else {
        printRevisions(session, source, target);
    }
}

} // namespace

const Subcommand& mergeinfoSubcommand()
{
    static const Subcommand subcommand{"mergeinfo",
                                       {},
                                       "Show how far one branch is merged into another.",
                                       "1. mergeinfo SOURCE[@REV] [TARGET[@REV]]\n"
                                       "2. mergeinfo --show-revs=WHICH SOURCE[@REV] [TARGET[@REV]]",
                                       "1. Draws both branches, from left to right: the youngest ancestor that\n"
                                       "   they have in common; the last full merge in either direction, which\n"
                                       "   the next merge compares with; the tip of each branch.\n"
                                       "2. Lists the revisions of SOURCE that are merged into TARGET ('merged'),\n"
                                       "   or that are not ('eligible'), of those that changed SOURCE.  -r leaves\n"
                                       "   only those of a range.  A '*' marks what is merged in part.\n"
                                       "\n"
                                       "Both are URLs, or paths, which stand for their URLs; TARGET is the current\n"
                                       "folder by default.  REV is the tip of the branch: by default HEAD, but BASE\n"
                                       "for a TARGET that is a path.  The depth is 'empty', by default, or\n"
                                       "'infinity'.",
                                       {OptionId::Revision, OptionId::Recursive, OptionId::Quiet, OptionId::Verbose,
                                        OptionId::Depth, OptionId::ShowRevs, OptionId::Log, OptionId::Incremental},
                                       {},
                                       runMergeinfo,
                                       RevisionUse::Range};
    return subcommand;
}
