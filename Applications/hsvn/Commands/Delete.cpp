#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/CommitRun.h"

namespace {

void runDelete(Session& session)
{
    const Options& options = session.options;
    auto targets = requiredTargetsOfOneKind(session);
    CommitRun change{session, isURL(targets.front())};
    targets = unpeggedTargets(targets);
    try {
        change.run([&](HSVNClient& client) {
            client.remove(HSVNTargets::verbatim(targets),
                          {.force = options.force,
                           .keepLocal = options.keepLocal,
                           .revisionProperties = change.revisionProperties()},
                          change.receiver());
        });
    } catch (const HSVNException& exception) {
        const auto status = exception.status();
        if (status == ClientModified || status == UnversionedResource) {
            throw wrapped(exception, "Use --force to override this restriction (local modifications may be lost)");
        }
        throw;
    }
}

} // namespace

const Subcommand& deleteSubcommand()
{
    static const Subcommand subcommand{"delete",
                                       {"del", "remove", "rm"},
                                       "Remove files and directories from version control.",
                                       "1. delete PATH...\n"
                                       "2. delete URL...",
                                       "1. Schedules each item for deletion upon the next commit. Files, and\n"
                                       "   directories that were never committed, are removed from the working\n"
                                       "   copy at once unless --keep-local is given. Items that are modified\n"
                                       "   or unversioned, or hold such items, are not removed without --force\n"
                                       "   or --keep-local.\n"
                                       "2. Deletes each item from the repository by an immediate commit.",
                                       {OptionId::Force, OptionId::Quiet, OptionId::Targets, OptionId::Message,
                                        OptionId::File, OptionId::ForceLog, OptionId::EditorCmd, OptionId::Encoding,
                                        OptionId::WithRevprop, OptionId::KeepLocal},
                                       {},
                                       runDelete};
    return subcommand;
}
