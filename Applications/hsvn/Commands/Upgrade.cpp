#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"

namespace {

void runUpgrade(Session& session)
{
    const auto targets = localTargets(targetsOrCurrentFolder(session));
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    for (const auto& target : targets) {
        session.client()->upgrade(HSVNTarget::verbatim(target));
    }
}

} // namespace

const Subcommand& upgradeSubcommand()
{
    static const Subcommand subcommand{"upgrade",
                                       {},
                                       "Upgrade the metadata storage format for a working copy.",
                                       "upgrade [WCPATH...]",
                                       "Local changes are kept.",
                                       {OptionId::Quiet},
                                       {},
                                       runUpgrade};
    return subcommand;
}
