#include "CommandLine/NativeText.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/ErrorOutput.h"
#include "Output/NotificationListener.h"

#include <fmt/format.h>

namespace {

void failForTargetsLeft(const std::vector<std::int32_t>& codes)
{
    if (!codes.empty()) {
        const char* const reason = codes.front() == WorkingCopyPathNotFound ? "don't exist" : "are not versioned";
        fail(IllegalTarget, fmt::format("Could not set changelists on all targets because some targets {}", reason),
             failure(IllegalTarget, "Illegal target for the requested operation"));
    }
}

void runChangelist(Session& session)
{
    const Options& options = session.options;
    std::optional<std::string> name;
    if (!options.remove) {
        name = NativeText::toUTF8(takeArgument(session));
    }
    auto targets = requiredTargets(session);
    requireLocal(targets);
    targets = unpeggedTargets(targets);
    NotificationPrinter printer{options.quiet};
    printNotifications(session, printer);
    TargetFailures failures{options.quiet};
    failures.attempt({UnversionedResource, WorkingCopyPathNotFound}, [&] {
        const auto items = HSVNTargets::verbatim(targets);
        const HSVNChangelistChoices choices{.depth = options.depthOr(HSVNDepthEmpty),
                                            .changelists = options.changelists};
        name ? session.client()->addToChangelist(items, *name, choices)
             : session.client()->removeFromChangelists(items, choices);
    });
    failForTargetsLeft(failures.codes());
}

} // namespace

const Subcommand& changelistSubcommand()
{
    static const Subcommand subcommand{"changelist",
                                       {"cl"},
                                       "Associate (or dissociate) changelist CLNAME with the named files.",
                                       "1. changelist CLNAME PATH...\n"
                                       "2. changelist --remove PATH...",
                                       "1. Makes each PATH, which is a file, a member of CLNAME and of no other\n"
                                       "   changelist.\n"
                                       "2. Takes each PATH out of its changelist.",
                                       {OptionId::Quiet, OptionId::Recursive, OptionId::Depth, OptionId::Remove,
                                        OptionId::Targets, OptionId::Changelist},
                                       {},
                                       runChangelist};
    return subcommand;
}
