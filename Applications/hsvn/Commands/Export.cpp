#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"

namespace {

void runExport(Session& session)
{
    const Options& options = session.options;
    const auto targets = requiredTargets(session);
    if (targets.size() > 2) {
        fail(ArgumentParsing, "Error parsing arguments");
    }
    const auto [from, peg] = peggedTarget(session, targets.front());
    const std::string to = targets.size() == 2 ? localTargets({targets.back()}).front()
                           : isURL(from)       ? nameOfURL(from)
                                               : baseName(from);
    const HSVNExportChoices choices{.depth = options.depthOr(HSVNDepthInfinity),
                                    .overwrite = options.force,
                                    .processExternals = !options.ignoreExternals,
                                    .expandKeywords = !options.ignoreKeywords,
                                    .nativeEndOfLine = options.nativeEOL};
    NotificationPrinter printer{options.quiet, NotifiedOperation::Export};
    printNotifications(session, printer);
    try {
        session.client()->exportTree(HSVNTarget::verbatim(from), HSVNTarget::verbatim(to),
                                     HSVNRevisionSpec::revisionWithRevision(options.startRevision(), peg), choices);
    } catch (const HSVNException& exception) {
        if (exception.status() == ObstructedUpdate && !options.force) {
            throw printer.withFailedExternals(wrapped(
                exception, "Destination directory exists; please remove the directory or use --force to overwrite"));
        }
        throw printer.withFailedExternals(exception);
    }
    printer.requireExternals();
}

} // namespace

const Subcommand& exportSubcommand()
{
    static const Subcommand subcommand{
        "export",
        {},
        "Create an unversioned copy of a tree.",
        "1. export [-r REV] URL[@PEGREV] [PATH]\n2. export [-r REV] PATH1[@PEGREV] [PATH2]",
        "1. Exports the tree at URL, in revision REV or at HEAD, into PATH.\n"
        "\n"
        "2. Exports a working copy's tree into PATH2: with REV as the repository\n"
        "   has it, otherwise with its local changes.  What is not versioned is\n"
        "   left out.\n"
        "\n"
        "Without a place to export to, the last component of URL or PATH1 is the\n"
        "name.  PEGREV tells in which revision the target is first looked up.",
        {OptionId::Revision, OptionId::Quiet, OptionId::NonRecursive, OptionId::Depth, OptionId::Force,
         OptionId::NativeEOL, OptionId::IgnoreExternals, OptionId::IgnoreKeywords},
        {{OptionId::NonRecursive, "obsolete; same as --depth=files"}},
        runExport};
    return subcommand;
}
