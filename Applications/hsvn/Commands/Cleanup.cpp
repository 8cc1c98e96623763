#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"

#include <fmt/format.h>

namespace {

bool vacuums(const Options& options)
{
    return options.removeUnversioned || options.removeIgnored || options.vacuumPristines;
}

void vacuum(Session& session, const std::string& target)
{
    const Options& options = session.options;
    session.client()->vacuum(HSVNTarget::verbatim(absolutePath(target)),
                             {.removeUnversioned = options.removeUnversioned,
                              .removeIgnored = options.removeIgnored,
                              .fixTimestamps = true,
                              .vacuumPristines = options.vacuumPristines,
                              .includeExternals = options.includeExternals});
}

void cleanUp(Session& session, const std::string& target)
{
    session.client()->cleanUp(HSVNTarget::verbatim(absolutePath(target)),
                              {.includeExternals = session.options.includeExternals});
}

void cleanUpOrVacuum(Session& session, const std::string& target)
{
    const Options& options = session.options;
    try {
        vacuums(options) ? vacuum(session, target) : cleanUp(session, target);
    } catch (const HSVNException& exception) {
        if (!vacuums(options)) {
            throw;
        }
        if (hasCause(exception, WorkingCopyNotDirectory)) {
            fail(ArgumentParsing,
                 "Cannot remove unversioned or ignored items from something that is not a working "
                 "copy",
                 exception);
        }
        if (hasCause(exception, WorkingCopyLocked)) {
            fail(WorkingCopyLocked,
                 fmt::format("Working copy locked; if no other Subversion client is currently using the working copy, "
                             "try running '{} cleanup' without the --remove-unversioned and --remove-ignored options "
                             "first.",
                             programName()),
                 exception);
        }
        throw;
    }
}

void runCleanup(Session& session)
{
    auto targets = targetsOrCurrentFolder(session);
    requireLocal(targets);
    targets = unpeggedTargets(targets);
    NotificationPrinter printer{session.options.quiet};
    printNotifications(session, printer);
    for (const auto& target : targets) {
        cleanUpOrVacuum(session, target);
    }
}

} // namespace

const Subcommand& cleanupSubcommand()
{
    static const Subcommand subcommand{"cleanup",
                                       {},
                                       "Either recover from an interrupted operation that left the working\n"
                                       "copy locked, or remove unwanted files.",
                                       "1. cleanup [WCPATH...]\n"
                                       "2. cleanup --remove-unversioned [WCPATH...]\n"
                                       "   cleanup --remove-ignored [WCPATH...]\n"
                                       "3. cleanup --vacuum-pristines [WCPATH...]",
                                       "1. Ends what was interrupted in the working copy and removes its write\n"
                                       "   locks (L in the third column of 'status').  Nothing tells the locks of\n"
                                       "   a program that still runs from those of one that crashed: make sure\n"
                                       "   that no other program uses the working copy.\n"
                                       "\n"
                                       "2. Removes the unversioned items (? in 'status') or the ignored ones\n"
                                       "   (I in 'status --no-ignore') below WCPATH from the disk.\n"
                                       "\n"
                                       "3. Removes the pristine copies inside .svn that no file needs any more.",
                                       {OptionId::RemoveUnversioned, OptionId::RemoveIgnored, OptionId::VacuumPristines,
                                        OptionId::IncludeExternals, OptionId::Quiet, OptionId::Diff3Cmd},
                                       {{OptionId::Diff3Cmd, "deprecated and ignored"}},
                                       runCleanup};
    return subcommand;
}
