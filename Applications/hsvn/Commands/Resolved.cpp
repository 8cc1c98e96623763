#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/ErrorOutput.h"
#include "Output/NotificationListener.h"

namespace {

void runResolved(Session& session)
{
    const auto targets = localTargets(requiredTargets(session));
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    for (const auto& target : targets) {
        try {
            session.client()->resolve(HSVNTarget::verbatim(target), {.depth = session.options.depthOr(HSVNDepthEmpty)});
        } catch (const HSVNException& exception) {
            if (exception.status() == Cancelled) {
                throw;
            }
            printWarning(exception);
        }
    }
}

} // namespace

const Subcommand& resolvedSubcommand()
{
    static const Subcommand subcommand{"resolved",
                                       {},
                                       "Remove 'conflicted' state on working copy files or directories.",
                                       "resolved PATH...",
                                       "The conflict's files are removed and PATH can be committed again; conflict\n"
                                       "markers inside PATH stay as they are.\n"
                                       "\n"
                                       "Deprecated; 'resolve --accept working' does the same.",
                                       {OptionId::Targets, OptionId::Recursive, OptionId::Depth, OptionId::Quiet},
                                       {},
                                       runResolved};
    return subcommand;
}
