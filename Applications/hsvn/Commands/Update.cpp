#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Interaction/ConflictResolution.h"
#include "Output/NotificationListener.h"
#include "Output/Output.h"

#include <fmt/format.h>

namespace {

/// The members of the changelists at or below the targets.
std::vector<std::string> changelistMembers(Session& session, const std::vector<std::string>& targets)
{
    const HSVNInfoChoices choices{.depth = session.options.depthOr(HSVNDepthInfinity),
                                  .changelists = session.options.changelists};
    std::vector<std::string> members;
    for (const auto& target : targets) {
        session.client()->info(HSVNTarget::verbatim(target), HSVNRevisionSpec::UNSPECIFIED(), choices,
                               [&](const HSVNItemInfo& info) { members.push_back(info.target); });
    }
    return members;
}

void printSummary(const std::vector<std::string>& targets, const std::vector<HSVNRevisionNumber>& revisions)
{
    if (targets.size() < 2) {
        return;
    }
    std::string lines;
    for (std::size_t index = 0; index < revisions.size(); ++index) {
        if (revisions[index] != HSVNInvalidRevision) {
            lines += fmt::format("  Updated '{}' to r{}.\n", relativeToCurrentFolder(absolutePath(targets[index])),
                                 revisions[index]);
        }
    }
    if (!lines.empty()) {
        Output::write("Summary of updates:\n" + lines);
    }
}

void runUpdate(Session& session)
{
    const Options& options = session.options;
    auto targets = localTargets(targetsOrCurrentFolder(session));
    if (!options.changelists.empty()) {
        targets = changelistMembers(session, targets);
    }
    const HSVNUpdateChoices choices{.depth = options.depthOfUpdate(),
                                    .depthIsSticky = options.setDepth != HSVNDepthUnknown,
                                    .processExternals = !options.ignoreExternals,
                                    .allowObstructions = options.force,
                                    .addsAsModification = options.addsAsModification,
                                    .makeParents = options.parents};
    NotificationPrinter printer{options.quiet};
    printNotifications(session, printer);
    const auto revision = options.usedRevision ? options.startRevision() : HSVNRevision::HEAD();
    const auto revisions = session.client()->update(HSVNTargets::verbatim(targets), revision, choices);
    settleConflicts(session, printer);
    if (!options.quiet) {
        printSummary(targets, revisions);
    }
    printer.printConflictSummary();
    printer.requireExternals();
}

} // namespace

const Subcommand& updateSubcommand()
{
    static const Subcommand subcommand{"update",
                                       {"up"},
                                       "Bring changes from the repository into the working copy.",
                                       "update [PATH...]",
                                       "Without a revision the items are brought to HEAD, otherwise to the\n"
                                       "revision of -r.\n"
                                       "\n"
                                       "Each item that changes is printed on a line.  The first column tells of\n"
                                       "the item, the second of its properties: A added, D deleted, U updated,\n"
                                       "C conflict, G merged, E existed, R replaced.  B in the third column means\n"
                                       "that the file's lock was broken or stolen, C in the fourth a tree\n"
                                       "conflict.\n"
                                       "\n"
                                       "With --force, unversioned items that stand in the way become versioned\n"
                                       "with their contents as they are; a file that differs from the\n"
                                       "repository's counts as changed.\n"
                                       "\n"
                                       "A target that is missing from the working copy is fetched if its folder\n"
                                       "is there; with --parents, missing folders are fetched too, at depth empty.\n"
                                       "\n"
                                       "With --set-depth the targets keep the given depth.",
                                       {OptionId::Revision, OptionId::NonRecursive, OptionId::Depth, OptionId::SetDepth,
                                        OptionId::Quiet, OptionId::Diff3Cmd, OptionId::Force, OptionId::IgnoreExternals,
                                        OptionId::Changelist, OptionId::EditorCmd, OptionId::Accept, OptionId::Parents,
                                        OptionId::AddsAsModification},
                                       {{OptionId::NonRecursive, "obsolete; same as --depth=files"},
                                        {OptionId::Force, "handle unversioned obstructions as changes"}},
                                       runUpdate};
    return subcommand;
}
