#include "CommitRun.h"
#include "Errors.h"
#include "NativeText.h"
#include "Output.h"
#include "Subcommands.h"
#include "Targets.h"
#include "Words.h"

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
    return std::filesystem::is_directory(NativeText::fromUTF8(common)) ? common : parentFolder(common);
}

/// A copy is made whole in the repository, whatever the depth.
void warnOfCopies(const std::vector<std::string>& targets, const Options& options, const HSVNClientRef& client)
{
    const HSVNDepth depth = options.depthOr(HSVNDepthInfinity);
    if (depth == HSVNDepthInfinity) {
        return;
    }
    HSVNItemStatusOptions wishes;
    wishes.depth = depth;
    wishes.changelists = options.changelists;
    for (const auto& target : targets) {
        bool hasCopy = false;
        HSVNScanItemStatus(
            target, HSVNRevision::WORKING(), wishes,
            [&](const HSVNItemStatus& status) {
                hasCopy = hasCopy || (status.copied && status.kind == HSVNNodeKindDirectory);
            },
            client);
        if (hasCopy) {
            Output::writeError(fmt::format("svn: The depth of this commit is '{}', but copies are always performed "
                                           "recursively in the repository.\n",
                                           wordOf(depth)));
            return;
        }
    }
}

/// What the option or the configuration says.
bool asksToKeepLocks(const Options& options, const HSVNClientRef& client)
{
    const auto configured = client->optionForName("no-unlock", HSVNConfigCategoryConfig, HSVNConfigSectionMiscellany,
                                                  std::nullopt);
    return options.noUnlock || (configured && isTrueWord(*configured));
}

void runCommit(Session& session)
{
    Options& options = session.options;
    const auto targets = unpeggedTargets(targetsOrCurrentFolder(session));
    if (std::any_of(targets.begin(), targets.end(), isURL)) {
        fail(IllegalTarget, "Commit targets must be local paths");
    }
    options.noUnlock = asksToKeepLocks(options, session.client());
    warnOfCopies(targets, options, session.client());
    CommitRun commit{session, true, NotifiedOperation::Other, folderOf(targets)};
    HSVNItemCommitOptions wishes;
    wishes.depth = options.depthOr(HSVNDepthInfinity);
    wishes.keepLocks = options.noUnlock;
    wishes.keepChangelists = options.keepChangelists;
    wishes.includeExternals = options.includeExternals;
    wishes.changelists = options.changelists;
    try {
        commit.run([&](const HSVNRevisionWishes& revision, const HSVNClientRef& client) {
            HSVNCommitItems(targets, wishes, revision, client);
        });
    } catch (const HSVNException& exception) {
        throw commit.lacksMessage() ? wrapped(exception, "Commit failed (details follow):") : exception;
    }
}

} // namespace

const Subcommand& commitSubcommand()
{
    static const Subcommand subcommand{
        "commit",
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
        {OptionId::Quiet, OptionId::NonRecursive, OptionId::Depth, OptionId::Targets, OptionId::NoUnlock,
         OptionId::Message, OptionId::File, OptionId::ForceLog, OptionId::EditorCmd, OptionId::Encoding,
         OptionId::WithRevprop, OptionId::Changelist, OptionId::KeepChangelists, OptionId::IncludeExternals},
        {{OptionId::NonRecursive, "obsolete; same as --depth=empty"}},
        runCommit,
        false,
        HSVNDepthEmpty};
    return subcommand;
}
