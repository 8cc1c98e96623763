#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/CommitRun.h"

#include <cerrno>
#include <fmt/format.h>

namespace {

/// The failure with what the user can do about it.
HSVNException advised(const HSVNException& exception, const Options& options)
{
    const auto status = exception.status();
    if (status == EEXIST) {
        return wrapped(exception, fmt::format("Try '{0} add' or '{0} add --non-recursive' instead?", programName()));
    }
    const bool lacksParent = status == ENOENT || status == NodeNotFound || status == NotDirectory;
    if (!options.parents && lacksParent) {
        return wrapped(exception, fmt::format("Try '{} mkdir --parents' instead?", programName()));
    }
    return exception;
}

void runMkdir(Session& session)
{
    auto targets = requiredTargetsOfOneKind(session);
    CommitRun change{session, isURL(targets.front())};
    targets = unpeggedTargets(targets);
    try {
        change.run([&](HSVNClient& client) {
            client.makeDirectories(
                HSVNTargets::verbatim(targets),
                {.makeParents = session.options.parents, .revisionProperties = change.revisionProperties()},
                change.receiver());
        });
    } catch (const HSVNException& exception) {
        throw advised(exception, session.options);
    }
}

} // namespace

const Subcommand& mkdirSubcommand()
{
    static const Subcommand subcommand{"mkdir",
                                       {},
                                       "Create a new directory under version control.",
                                       "1. mkdir PATH...\n"
                                       "2. mkdir URL...",
                                       "Create version controlled directories.\n"
                                       "\n"
                                       "1. Makes each directory in the working copy and schedules it for\n"
                                       "   addition upon the next commit.\n"
                                       "2. Makes each directory in the repository by an immediate commit.\n"
                                       "\n"
                                       "The directories above must exist, unless --parents makes them too.",
                                       {OptionId::Quiet, OptionId::Parents, OptionId::Message, OptionId::File,
                                        OptionId::ForceLog, OptionId::EditorCmd, OptionId::Encoding,
                                        OptionId::WithRevprop},
                                       {},
                                       runMkdir};
    return subcommand;
}
