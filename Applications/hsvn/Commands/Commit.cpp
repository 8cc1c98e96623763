#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/CommitRun.h"

#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <iterator>

namespace {

/// Where a commit of the targets takes place: the folder that holds them all.
std::string folderOf(const std::vector<std::string>& targets)
{
    std::vector<std::string> absolute;
    std::transform(targets.begin(), targets.end(), std::back_inserter(absolute), absolutePath);
    const std::string common = commonFolder(absolute);
    std::error_code ignored;
    return std::filesystem::is_directory(NativeText::fromUTF8(common), ignored) ? common : parentFolder(common);
}

std::vector<std::string> localCommitTargets(Session& session)
{
    const auto targets = targetsOrCurrentFolder(session);
    try {
        requireLocal(targets);
    } catch (const HSVNException& exception) {
        throw exception.status() == ArgumentParsing ? wrapped(exception, "Commit targets must be local paths")
                                                    : exception;
    }
    return unpeggedTargets(targets);
}

void runCommit(Session& session)
{
    Options& options = session.options;
    const auto targets = localCommitTargets(session);
    options.noUnlock = options.noUnlock || session.isConfigured("no-unlock");
    CommitRun commit{session, true, NotifiedOperation::Other, folderOf(targets)};
    commit.printer().warnOfCopiesBelow(options.depthOr(HSVNDepthInfinity));
    try {
        commit.run([&](HSVNClient& client) {
            client.commit(HSVNTargets::verbatim(targets),
                          {.depth = options.depthOr(HSVNDepthInfinity),
                           .keepLocks = options.noUnlock,
                           .keepChangelists = options.keepChangelists,
                           .includeExternals = options.includeExternals,
                           .changelists = options.changelists,
                           .revisionProperties = commit.revisionProperties()},
                          commit.receiver());
        });
    } catch (const HSVNException& exception) {
        throw commit.hasOwnFailure() ? wrapped(exception, "Commit failed (details follow):") : exception;
    }
}

} // namespace

const Subcommand& commitSubcommand()
{
    static const Subcommand subcommand{"commit",
                                       {"ci"},
                                       "Send changes from your working copy to the repository.",
                                       "commit [PATH...]",
                                       "A log message is needed, though it can be empty. Without --message or\n"
                                       "--file an editor is started to write it.\n"
                                       "\n"
                                       "Locks on what is committed, and on what lies below it, are released\n"
                                       "afterwards unless --no-unlock is given.\n"
                                       "\n"
                                       "With --include-externals, externals that are met on the way and that are\n"
                                       "not fixed to a revision are committed too.",
                                       {OptionId::Quiet, OptionId::NonRecursive, OptionId::Depth, OptionId::Targets,
                                        OptionId::NoUnlock, OptionId::Message, OptionId::File, OptionId::ForceLog,
                                        OptionId::EditorCmd, OptionId::Encoding, OptionId::WithRevprop,
                                        OptionId::Changelist, OptionId::KeepChangelists, OptionId::IncludeExternals},
                                       {{OptionId::NonRecursive, "obsolete; same as --depth=empty"}},
                                       runCommit,
                                       RevisionUse::One,
                                       HSVNDepthEmpty};
    return subcommand;
}
