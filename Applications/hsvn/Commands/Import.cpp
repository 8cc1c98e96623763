#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Commands/CommitRun.h"

#include <fmt/format.h>

namespace {

void runImport(Session& session)
{
    const Options& options = session.options;
    const auto targets = targetsOf(session);
    if (targets.empty()) {
        fail(InsufficientArguments, "Repository URL required when importing");
    }
    if (targets.size() > 2) {
        fail(ArgumentParsing, "Too many arguments to import command");
    }
    const std::string path = targets.size() == 2 ? targets.front() : "";
    const std::string& url = targets.back();
    requireLocal({path});
    if (!isURL(url)) {
        fail(ArgumentParsing, fmt::format("Invalid URL '{}'", url));
    }
    CommitRun change{session, true};
    change.run([&](HSVNClient& client) {
        client.importTree(HSVNTarget::verbatim(path), HSVNTarget::verbatim(url),
                          {.depth = options.depthOr(HSVNDepthInfinity),
                           .matchIgnorePatterns = !options.noIgnore,
                           .automaticProperties = !options.noAutoProperties,
                           .ignoreUnknownKinds = options.force,
                           .revisionProperties = change.revisionProperties()},
                          change.receiver());
    });
}

} // namespace

const Subcommand& importSubcommand()
{
    static const Subcommand subcommand{"import",
                                       {},
                                       "Commit an unversioned file or tree into the repository.",
                                       "import [PATH] URL",
                                       "Commits a copy of PATH, '.' by default, to URL. What a directory holds\n"
                                       "comes right below URL; missing directories of the repository are made.\n"
                                       "Device files, pipes and the like are left out with --force, and are an\n"
                                       "error without it.",
                                       {OptionId::Quiet, OptionId::NonRecursive, OptionId::Depth, OptionId::AutoProps,
                                        OptionId::Force, OptionId::NoAutoProps, OptionId::Message, OptionId::File,
                                        OptionId::ForceLog, OptionId::EditorCmd, OptionId::Encoding,
                                        OptionId::WithRevprop, OptionId::NoIgnore},
                                       {{OptionId::NonRecursive, "obsolete; same as --depth=files"}},
                                       runImport};
    return subcommand;
}
