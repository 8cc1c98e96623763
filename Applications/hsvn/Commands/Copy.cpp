#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/CommitRun.h"

#include <vector>

namespace {

/// The sources, and the destination at the end, of copies and moves.
std::pair<std::vector<HSVNTargetInRevision>, std::string> sourcesAndDestination(Session& session)
{
    auto targets = requiredTargets(session);
    if (targets.size() < 2) {
        fail(InsufficientArguments, "Not enough arguments provided");
    }
    std::vector<HSVNTargetInRevision> sources;
    for (const auto& target : targets) {
        const auto [path, peg] = peggedTarget(session, target);
        sources.emplace_back(HSVNTarget::verbatim(path),
                             HSVNRevisionSpec::revisionWithRevision(session.options.startRevision(), peg));
    }
    sources.pop_back();
    return {sources, unpeggedTargets({targets.back()}).front()};
}

NotifiedOperation operationOf(bool fromURL, bool toURL)
{
    if (fromURL == toURL) {
        return NotifiedOperation::Other;
    }
    return toURL ? NotifiedOperation::CopyToRepository : NotifiedOperation::CheckOut;
}

void runCopy(Session& session)
{
    const Options& options = session.options;
    const auto arguments = sourcesAndDestination(session);
    const auto& sources = arguments.first;
    const auto& destination = arguments.second;
    const bool toURL = isURL(destination);
    CommitRun change{session, toURL, operationOf(isURL(sources.front().target.text()), toURL)};
    change.run([&](HSVNClient& client) {
        client.copy(sources, HSVNTarget::verbatim(destination),
                    {.asChild = true,
                     .makeParents = options.parents,
                     .processExternals = !options.ignoreExternals,
                     .pinExternals = options.pinExternals,
                     .revisionProperties = change.revisionProperties()},
                    change.receiver());
    });
}

} // namespace

const Subcommand& copySubcommand()
{
    static const Subcommand subcommand{"copy",
                                       {"cp"},
                                       "Copy files and directories in a working copy or repository.",
                                       "copy SRC[@REV]... DST",
                                       "A source and the destination may lie in a working copy (WC) or be URLs:\n"
                                       "  WC  -> WC:   a copy to be committed later, which keeps its history\n"
                                       "  WC  -> URL:  the item as it is now, committed at once\n"
                                       "  URL -> WC:   checked out, then the same as a copy within\n"
                                       "  URL -> URL:  a copy in the repository, such as a branch or a tag\n"
                                       "The sources are all paths or all URLs.  Into a DST that is a folder they\n"
                                       "are copied as its children; several sources need such a DST.\n"
                                       "\n"
                                       "WARNING: Copies within a working copy do not contact the repository, and\n"
                                       "so may not take merge tracking information along.",
                                       {OptionId::Revision, OptionId::Quiet, OptionId::IgnoreExternals,
                                        OptionId::Parents, OptionId::Message, OptionId::File, OptionId::ForceLog,
                                        OptionId::EditorCmd, OptionId::Encoding, OptionId::WithRevprop,
                                        OptionId::PinExternals},
                                       {},
                                       runCopy};
    return subcommand;
}
