#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/ErrorOutput.h"
#include "Output/NotificationListener.h"

namespace {

HSVNAddChoices choicesOf(const Options& options)
{
    return {.depth = options.depthOr(HSVNDepthInfinity),
            .force = options.force,
            .matchIgnorePatterns = !options.noIgnore,
            .automaticProperties = !options.noAutoProperties,
            .makeParents = options.parents};
}

/// Fails when some targets could not be added, for each reason once, the last one first.
void failForRefused(const std::vector<std::int32_t>& codes)
{
    if (codes.empty()) {
        return;
    }
    auto failed = failure(IllegalTarget, "Illegal target for the requested operation");
    for (const std::int32_t code : codes) {
        const bool isMissing = code == WorkingCopyPathNotFound;
        failed = wrapped(failed, isMissing ? "Could not add all targets because some targets don't exist"
                                           : "Could not add all targets because some targets are already versioned");
    }
    failed.raise();
}

void runAdd(Session& session)
{
    const auto targets = localTargets(requiredTargets(session));
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    TargetFailures failures{session.options.quiet};
    for (const auto& target : targets) {
        failures.attempt({EntryExists, WorkingCopyPathNotFound},
                         [&] { session.client()->add(HSVNTarget::verbatim(target), choicesOf(session.options)); });
    }
    failForRefused(failures.codes());
}

} // namespace

const Subcommand& addSubcommand()
{
    static const Subcommand subcommand{"add",
                                       {},
                                       "Put new files and directories under version control.",
                                       "add PATH...",
                                       "The PATHs and what they contain become versioned here and now, and are\n"
                                       "added to the repository by the next commit.  See --depth for less than\n"
                                       "everything.\n"
                                       "\n"
                                       "With --force, items that are versioned already are passed over, and the\n"
                                       "unversioned ones below them are added; without it they are an error.\n"
                                       "\n"
                                       "Items that match an ignore pattern are left out unless they are named.\n"
                                       "New files may be given properties by 'svn:auto-props' and by the\n"
                                       "configuration.\n"
                                       "\n"
                                       "Until the commit, 'revert' takes an addition back.",
                                       {OptionId::Targets, OptionId::NonRecursive, OptionId::Depth, OptionId::Quiet,
                                        OptionId::Force, OptionId::NoIgnore, OptionId::AutoProps, OptionId::NoAutoProps,
                                        OptionId::Parents},
                                       {{OptionId::NonRecursive, "obsolete; same as --depth=empty"},
                                        {OptionId::Force, "ignore already versioned paths"},
                                        {OptionId::Parents, "add intermediate parents"}},
                                       runAdd,
                                       RevisionUse::One,
                                       HSVNDepthEmpty};
    return subcommand;
}
