#include "CommandLine/Errors.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/Targets.h"
#include "Output/NotificationListener.h"

#include <fmt/format.h>

namespace {

/// The folder of the working copies, the last target unless it is a URL.
std::string takeFolder(Session& session, std::vector<std::string>& targets)
{
    if (!isURL(targets.back())) {
        std::string folder = targets.back();
        targets.pop_back();
        return folder;
    }
    return targets.size() == 1 ? nameOfURL(peggedTarget(session, targets.front()).target) : "";
}

void checkOut(Session& session, const std::string& target, const std::string& folder, bool isOneOfSeveral)
{
    const Options& options = session.options;
    const auto [url, peg] = peggedTarget(session, target);
    const bool isPegged = !peg->isEqual(HSVNRevision::UNSPECIFIED());
    const auto revision = options.usedRevision ? options.startRevision() : isPegged ? peg : HSVNRevision::HEAD();
    session.client()->checkout(HSVNTarget::verbatim(url),
                               HSVNTarget::verbatim(isOneOfSeveral ? joined(folder, nameOfURL(url)) : folder),
                               HSVNRevisionSpec::revisionWithRevision(revision, peg),
                               {.depth = options.depthOfUpdate(),
                                .processExternals = !options.ignoreExternals,
                                .allowObstructions = options.force});
}

void runCheckout(Session& session)
{
    auto targets = requiredTargets(session);
    if (targets.size() == 1 && !isURL(targets.front())) {
        fail(ArgumentParsing, "Error parsing arguments");
    }
    const std::string folder = takeFolder(session, targets);
    NotificationPrinter printer{session.options.quiet, NotifiedOperation::CheckOut};
    printNotifications(session, printer);
    for (const auto& target : targets) {
        if (!isURL(target)) {
            fail(BadURL, fmt::format("'{}' does not appear to be a URL", target));
        }
        checkOut(session, target, folder, targets.size() > 1);
    }
    printer.requireExternals();
}

} // namespace

const Subcommand& checkoutSubcommand()
{
    static const Subcommand subcommand{"checkout",
                                       {"co"},
                                       "Check out a working copy from a repository.",
                                       "checkout URL[@REV]... [PATH]",
                                       "REV tells in which revision each URL is first looked up.\n"
                                       "\n"
                                       "Without PATH, the working copy is named after the last component of the\n"
                                       "URL.  Several URLs are checked out into folders of such names below PATH,\n"
                                       "or below the current folder.\n"
                                       "\n"
                                       "With --force, unversioned items that stand in the way become versioned\n"
                                       "with their contents as they are; a file that differs from the\n"
                                       "repository's counts as changed.\n"
                                       "\n"
                                       "The letters of the lines are explained in the help of 'update'.",
                                       {OptionId::Revision, OptionId::Quiet, OptionId::NonRecursive, OptionId::Depth,
                                        OptionId::Force, OptionId::IgnoreExternals},
                                       {{OptionId::NonRecursive, "obsolete; same as --depth=files"}},
                                       runCheckout};
    return subcommand;
}
