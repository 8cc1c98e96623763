#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Interaction/ConflictResolution.h"
#include "Output/NotificationListener.h"

#include <fmt/format.h>

namespace {

/// The deprecated form: the URLs of working copies begin in another way from now on.
void relocate(Session& session, const std::vector<std::string>& targets)
{
    if (targets.size() < 2) {
        fail(InsufficientArguments, "Not enough arguments provided");
    }
    if (isURL(targets[0]) != isURL(targets[1])) {
        fail(IncorrectParameters, fmt::format("'{}' to '{}' is not a valid relocation", targets[0], targets[1]));
    }
    const bool isHere = targets.size() == 2;
    const std::vector<std::string> roots{targets.begin() + 2, targets.end()};
    for (const auto& root : isHere ? std::vector<std::string>{""} : roots) {
        session.client()->relocate(HSVNTarget::verbatim(root), targets[0], targets[1],
                                   {.processExternals = !session.options.ignoreExternals});
    }
}

void runSwitch(Session& session)
{
    const Options& options = session.options;
    const auto targets = targetsOf(session);
    if (options.relocate) {
        relocate(session, targets);
        return;
    }
    if (targets.empty()) {
        fail(InsufficientArguments, "Not enough arguments provided");
    }
    if (targets.size() > 2) {
        fail(ArgumentParsing, "Error parsing arguments");
    }
    const auto [url, peg] = peggedTarget(session, targets.front());
    const std::string path = targets.size() == 2 ? targets.back() : "";
    if (!isURL(url)) {
        fail(BadURL, fmt::format("'{}' does not appear to be a URL", url));
    }
    requireLocal({path});
    NotificationPrinter printer{options.quiet};
    printNotifications(session, printer);
    const auto revision = options.usedRevision                        ? options.startRevision()
                          : peg->isEqual(HSVNRevision::UNSPECIFIED()) ? HSVNRevision::HEAD()
                                                                      : peg;
    try {
        session.client()->switchTo(HSVNTarget::verbatim(path), HSVNTarget::verbatim(url),
                                   HSVNRevisionSpec::revisionWithRevision(revision, peg),
                                   {.depth = options.depthOfUpdate(),
                                    .depthIsSticky = options.setDepth != HSVNDepthUnknown,
                                    .processExternals = !options.ignoreExternals,
                                    .allowObstructions = options.force,
                                    .ignoreAncestry = options.ignoreAncestry});
    } catch (const HSVNException& exception) {
        if (exception.status() == InvalidSwitch || exception.status() == OtherRepository) {
            throw wrapped(exception, fmt::format("'{} switch' does not support switching a working copy to a different "
                                                 "repository",
                                                 programName()));
        }
        if (exception.status() == UnrelatedResources) {
            throw wrapped(exception, fmt::format("Path '{}' does not share common version control ancestry with the "
                                                 "requested switch location.  Use --ignore-ancestry to disable this "
                                                 "check.",
                                                 localStyle(path)));
        }
        throw;
    }
    settleConflicts(session, printer);
    printer.printConflictSummary();
    printer.requireExternals();
}

} // namespace

const Subcommand& switchSubcommand()
{
    static const Subcommand subcommand{
        "switch",
        {"sw"},
        "Update the working copy to a different URL within the same repository.",
        "1. switch URL[@PEGREV] [PATH]\n2. switch --relocate FROM-PREFIX TO-PREFIX [PATH...]",
        "1. Brings the working copy to another place of its repository, such as a\n"
        "   branch or a tag; otherwise it is like 'update'.  PEGREV tells in which\n"
        "   revision the URL is first looked up.\n"
        "\n"
        "   With --force, unversioned items that stand in the way become versioned\n"
        "   with their contents as they are.\n"
        "\n"
        "   With --set-depth the target keeps the given depth.\n"
        "\n"
        "   A place without a common ancestor is refused unless --ignore-ancestry\n"
        "   is given.\n"
        "\n"
        "2. Deprecated: URLs that begin with FROM-PREFIX begin with TO-PREFIX from\n"
        "   now on.\n"
        "\n"
        "The letters of the lines are explained in the help of 'update'.",
        {OptionId::Revision, OptionId::NonRecursive, OptionId::Depth, OptionId::SetDepth, OptionId::Quiet,
         OptionId::Diff3Cmd, OptionId::IgnoreExternals, OptionId::IgnoreAncestry, OptionId::Force, OptionId::Accept,
         OptionId::Relocate},
        {{OptionId::NonRecursive, "obsolete; same as --depth=files"},
         {OptionId::IgnoreAncestry, "allow switching to a node with no common ancestor"},
         {OptionId::Force, "handle unversioned obstructions as changes"}},
        runSwitch};
    return subcommand;
}
