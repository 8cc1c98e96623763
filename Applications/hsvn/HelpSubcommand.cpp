#include "Errors.h"
#include "HelpPage.h"
#include "NativeText.h"
#include "Output.h"
#include "Session.h"
#include "Subcommands.h"

#include <fmt/format.h>

namespace {

void printVersion(const Session& session)
{
    auto& loader = HSVNBundleLoader::sharedInstance();
    loader.loadBundlesInDirectoryAtPath(HSVNBundleLoader::defaultBundleDirectory());
    const auto newest = loader.newestVersion();
    const std::string subversion = newest ? newest->versionString() : "none";
    if (session.options.quiet) {
        Output::write(subversion + "\n");
        return;
    }
    // The first line is where programs look for the Subversion that they talk to.
    Output::write(fmt::format("{}, version {}\n", programName(), subversion));
    Output::write("   the command line of HSVN, on these lines of Subversion:\n");
    for (const HSVNVersion& version : loader.loadedVersions()) {
        Output::write(fmt::format("   * {}\n", version.versionString()));
    }
    Output::write("\nSubversion is open source software, see http://subversion.apache.org/\n");
}

void runHelp(Session& session)
{
    if (session.options.version && session.arguments.empty()) {
        printVersion(session);
        return;
    }
    if (session.arguments.empty()) {
        Output::write(generalHelp());
        return;
    }
    for (const auto& argument : session.arguments) {
        if (const Subcommand* const subcommand = subcommandNamed(argument)) {
            Output::write(helpOn(*subcommand, session.options.verbose) + "\n");
        } else {
            Output::writeError(fmt::format("\"{}\": unknown command.\n\n", NativeText::toUTF8(argument)));
        }
    }
}

} // namespace

const Subcommand& helpSubcommand()
{
    static const Subcommand subcommand{
        "help", {"?", "h"},          "Describe the usage of this program or its subcommands.", "help [SUBCOMMAND...]",
        "",     {OptionId::Verbose}, {{OptionId::Verbose, "also show the global options"}},    runHelp};
    return subcommand;
}
