#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"

#include <algorithm>

namespace {

void runRelocate(Session& session)
{
    auto targets = requiredTargets(session);
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    const bool isWhole = targets.size() == 1 || (targets.size() == 2 && isURL(targets[0]) && !isURL(targets[1]));
    std::string from;
    if (isWhole) {
        targets.resize(2);
        const auto url = session.client()->URLOfTarget(HSVNTarget::verbatim(targets[1]));
        if (!url) {
            fail(WorkingCopyPathNotFound, "'" + targets[1] + "' has no URL");
        }
        from = *url;
    } else {
        from = targets.front();
        targets.erase(targets.begin());
        targets.resize(std::max<std::size_t>(targets.size(), 2));
        requireLocal({targets.begin() + 1, targets.end()});
    }
    for (std::size_t index = 1; index < targets.size(); ++index) {
        session.client()->relocate(HSVNTarget::verbatim(targets[index]), from, targets.front(),
                                   {.processExternals = !session.options.ignoreExternals});
    }
}

} // namespace

const Subcommand& relocateSubcommand()
{
    static const Subcommand subcommand{"relocate",
                                       {},
                                       "Relocate the working copy to point to a different repository root URL.",
                                       "1. relocate FROM-PREFIX TO-PREFIX [PATH...]\n"
                                       "2. relocate TO-URL [PATH]",
                                       "For a repository that is reached in another way, or that was moved; the\n"
                                       "working copy stays a copy of the same folder.\n"
                                       "\n"
                                       "1. The URLs that begin with FROM-PREFIX begin with TO-PREFIX from now on:\n"
                                       "   whole URLs, or just their first parts, such as 'http://' and 'svn://'.\n"
                                       "2. TO-URL is the whole new URL of PATH.",
                                       {OptionId::IgnoreExternals},
                                       {},
                                       runRelocate};
    return subcommand;
}
