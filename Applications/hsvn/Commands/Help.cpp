#include "CommandLine/Errors.h"
#include "CommandLine/HelpPage.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Session.h"
#include "CommandLine/Similarity.h"
#include "CommandLine/Subcommands.h"
#include "Output/Output.h"

#include <fmt/format.h>

namespace {

/// The version number alone; no bundle's code is loaded for it.
void printVersionNumber()
{
    auto& loader = HSVNBundleLoader::sharedInstance();
    loader.loadBundlesInDirectoryAtPath(HSVNBundleLoader::defaultBundleDirectory());
    const auto newest = loader.newestVersion();
    Output::write((newest ? newest->versionString() : "none") + "\n");
}

std::string systemText(const HSVNSubversionDetails& details)
{
    std::string text = fmt::format("System information:\n\n* running on {}\n", details.host);
    text += details.operatingSystem ? fmt::format("  - {}\n", *details.operatingSystem) : "";
    text += details.libraries.empty() ? "" : "* linked dependencies:\n";
    for (const HSVNLinkedLibrary& library : details.libraries) {
        text += library.runtimeVersion ? fmt::format("  - {} {} (compiled with {})\n", library.name,
                                                     *library.runtimeVersion, library.compiledVersion)
                                       : fmt::format("  - {} {} (static)\n", library.name, library.compiledVersion);
    }
    return text;
}

/// The text is that of Subversion's own program: its first line is where other programs look for the version.
void printVersion(Session& session)
{
    const Options& options = session.options;
    const auto details =
        HSVNReadSubversionDetails(options.client.configurationDirectory, options.verbose, session.context());
    std::string text = fmt::format("{}, version {}\n", programName(), details.version);
    if (!details.buildDate.empty()) {
        text += fmt::format("   compiled {}, {} on {}\n\n{}", details.buildDate, details.buildTime, details.buildHost,
                            details.copyright);
    }
    text += fmt::format("\nThe following repository access (RA) modules are available:\n\n{}\n"
                        "The following authentication credential caches are available:\n\n",
                        details.accessModules);
    if (details.configurationFolder) {
        text += fmt::format("* Plaintext cache in {}\n", *details.configurationFolder);
    }
    for (const auto& keyring : details.keyrings) {
        text += fmt::format("* {}\n", keyring);
    }
    Output::write(text + "\n" + (options.verbose ? systemText(details) : ""));
}

/// What follows a sentence that a suggestion may end in its own way.
std::string withStop(const std::string& suggestion) { return suggestion.empty() ? "." : suggestion; }

void runHelp(Session& session)
{
    if (session.options.version && session.arguments.empty()) {
        if (session.options.quiet) {
            printVersionNumber();
        } else {
            printVersion(session);
        }
        return;
    }
    session.pageOutput();
    if (session.arguments.empty()) {
        Output::write(generalHelp());
        return;
    }
    for (const auto& argument : session.arguments) {
        if (const Subcommand* const subcommand = subcommandNamed(argument)) {
            Output::write(helpOn(*subcommand, session.options.verbose) + "\n");
        } else {
            const std::string name = NativeText::toUTF8(argument);
            Output::writeError(
                fmt::format("\"{}\": unknown command{}\n\n", name, withStop(suggestion(name, subcommandNames()))));
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
