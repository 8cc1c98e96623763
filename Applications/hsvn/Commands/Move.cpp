#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/CommitRun.h"

namespace {

void runMove(Session& session)
{
    const Options& options = session.options;
    auto targets = requiredTargets(session);
    if (targets.size() < 2) {
        fail(InsufficientArguments, "Not enough arguments provided");
    }
    const auto& revision = options.startRevision();
    if (!revision->isEqual(HSVNRevision::UNSPECIFIED()) && !revision->isEqual(HSVNRevision::HEAD())) {
        fail(UnsupportedFeature, "Cannot specify revisions (except HEAD) with move operations");
    }
    CommitRun change{session, isURL(targets.back())};
    const std::string destination = targets.back();
    targets.pop_back();
    targets = unpeggedTargets(targets);
    change.run([&](HSVNClient& client) {
        client.move(HSVNTargets::verbatim(targets), HSVNTarget::verbatim(destination),
                    {.asChild = true,
                     .makeParents = options.parents,
                     .allowMixedRevisions = options.allowMixedRevisions,
                     .revisionProperties = change.revisionProperties()},
                    change.receiver());
    });
}

} // namespace

const Subcommand& moveSubcommand()
{
    static const Subcommand subcommand{"move",
                                       {"mv", "rename", "ren"},
                                       "Move (rename) an item in a working copy or repository.",
                                       "move SRC... DST",
                                       "Sources and destination lie all in a working copy (WC) or are all URLs:\n"
                                       "  WC  -> WC:   a move to be committed later, and that can be changed until\n"
                                       "               then\n"
                                       "  URL -> URL:  a move in the repository, committed at once\n"
                                       "Into a DST that is a folder the sources are moved as its children; several\n"
                                       "sources need such a DST.\n"
                                       "\n"
                                       "Both ends of a move in a working copy must be committed in one revision.\n"
                                       "A directory whose items are of several revisions is not moved: bring it\n"
                                       "to one revision with 'update' first. --allow-mixed-revisions is kept for\n"
                                       "those who relied on the contrary.",
                                       {OptionId::Quiet, OptionId::Force, OptionId::Parents,
                                        OptionId::AllowMixedRevisions, OptionId::Message, OptionId::File,
                                        OptionId::ForceLog, OptionId::EditorCmd, OptionId::Encoding,
                                        OptionId::WithRevprop, OptionId::Revision},
                                       {{OptionId::Force, "no effect; moves never needed it since 1.7"},
                                        {OptionId::Revision, "deprecated and ignored"}},
                                       runMove};
    return subcommand;
}
