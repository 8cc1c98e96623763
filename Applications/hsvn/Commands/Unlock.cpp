#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"

namespace {

void runUnlock(Session& session)
{
    const auto targets = unpeggedTargets(requiredTargets(session));
    requireOneKind(targets);
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    session.client()->unlock(HSVNTargets::verbatim(targets), {.breakLocks = session.options.force});
    if (printer.hasWarned()) {
        fail(IllegalTarget, "One or more locks could not be released");
    }
}

} // namespace

const Subcommand& unlockSubcommand()
{
    static const Subcommand subcommand{"unlock",
                                       {},
                                       "Unlock working copy paths or URLs.",
                                       "unlock TARGET...",
                                       "--force removes a lock that someone else or another working copy holds, too.",
                                       {OptionId::Targets, OptionId::Force, OptionId::Quiet},
                                       {{OptionId::Force, "break locks"}},
                                       runUnlock};
    return subcommand;
}
