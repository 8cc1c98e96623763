#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"

namespace {

void runPatch(Session& session)
{
    const Options& options = session.options;
    const auto targets = unpeggedTargets(requiredTargets(session));
    if (targets.size() > 2) {
        fail(ArgumentParsing, "Error parsing arguments");
    }
    for (const auto& target : targets) {
        requireLocal({target});
    }
    NotificationPrinter printer{options.quiet};
    printNotifications(session, printer);
    session.client()->patch(HSVNTarget::verbatim(targets.front()),
                            HSVNTarget::verbatim(targets.size() == 1 ? "" : targets.back()),
                            {.dryRun = options.dryRun,
                             .strip = options.strip,
                             .reverse = options.reverseDiff,
                             .ignoreWhitespace = options.ignoreWhitespace});
    printer.printConflictSummary();
}

} // namespace

const Subcommand& patchSubcommand()
{
    static const Subcommand subcommand{
        "patch",
        {},
        "Apply a patch to a working copy.",
        "patch PATCHFILE [WCPATH]",
        "Makes the changes that PATCHFILE lists, in the unified format, in the\n"
        "working copy's folder WCPATH, by default the current one.  Such a file\n"
        "is what 'diff' prints, or another program that compares files; what is\n"
        "neither a change of lines nor one of properties in it is left out of\n"
        "account.\n"
        "\n"
        "A change is made where its lines are found: where the patch says,\n"
        "otherwise earlier or later in the file (with an offset), otherwise\n"
        "where all but some of the lines around it are (with fuzz); such a place\n"
        "is told on a line that begins with '>' and deserves a look.  What is\n"
        "found nowhere is a conflict, and goes into a file beside the item whose\n"
        "name ends with .svnpatch.rej.\n"
        "\n"
        "Each item that changes is printed on a line: A added, D deleted,\n"
        "U updated, G merged with local changes, C conflict.  A file that the\n"
        "patch makes is scheduled for addition, one that it empties for deletion.",
        {OptionId::Quiet, OptionId::DryRun, OptionId::Strip, OptionId::ReverseDiff, OptionId::IgnoreWhitespace},
        {},
        runPatch};
    return subcommand;
}
