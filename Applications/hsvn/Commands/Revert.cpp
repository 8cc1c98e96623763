#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"

#include <fmt/format.h>

namespace {

void runRevert(Session& session)
{
    const Options& options = session.options;
    const auto targets = localTargets(requiredTargets(session));
    const HSVNRevertChoices choices{.depth = options.depthOr(HSVNDepthEmpty),
                                    .changelists = options.changelists,
                                    .keepAddedItems = !options.removeAdded};
    NotificationPrinter printer{options.quiet};
    printNotifications(session, printer);
    try {
        session.client()->revert(HSVNTargets::verbatim(targets), choices);
    } catch (const HSVNException& exception) {
        if (hasCause(exception, InvalidOperationDepth) && options.depth != HSVNDepthInfinity) {
            throw wrapped(exception, fmt::format("Try '{} revert --depth infinity' instead?", programName()));
        }
        throw;
    }
}

} // namespace

const Subcommand& revertSubcommand()
{
    static const Subcommand subcommand{"revert",
                                       {},
                                       "Restore pristine working copy state (undo local changes).",
                                       "revert PATH...",
                                       "Take back the local changes of each PATH, and of what it contains as far\n"
                                       "as --depth says; conflicts end with them.\n"
                                       "\n"
                                       "What was committed stays: see 'help merge' about undoing commits.",
                                       {OptionId::Targets, OptionId::Recursive, OptionId::Depth, OptionId::Quiet,
                                        OptionId::Changelist, OptionId::RemoveAdded},
                                       {},
                                       runRevert};
    return subcommand;
}
