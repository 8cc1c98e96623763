#include "CommandLine/HelpPage.h"

#include "CommandLine/Errors.h"

#include <fmt/format.h>

namespace {

/// The text with every line but the first moved to the right.
std::string indented(const std::string& text, std::size_t columns)
{
    std::string result;
    bool isLineStart = false;
    for (const char character : text) {
        if (isLineStart && character != '\n') {
            result.append(columns, ' ');
        }
        result += character;
        isLineStart = character == '\n';
    }
    return result;
}

std::string optionLine(const Option& option, const char* description)
{
    constexpr std::size_t descriptionColumn = 29;
    return fmt::format("  {:<24} : {}\n", option.synopsis(), indented(description, descriptionColumn));
}

} // namespace

std::string generalHelp()
{
    std::string text = fmt::format("usage: {0} <subcommand> [options] [args]\n"
                                   "Subversion command-line client.\n"
                                   "Type '{0} help <subcommand>' for help on a specific subcommand.\n"
                                   "Type '{0} --version' to see the program version and the lines of Subversion,\n"
                                   "     '{0} --version --quiet' to see just the version number.\n"
                                   "\n"
                                   "Most subcommands take file and/or directory arguments, recursing\n"
                                   "on the directories.  If no arguments are supplied to such a\n"
                                   "command, it recurses on the current directory (inclusive) by default.\n"
                                   "\n"
                                   "Available subcommands:\n",
                                   programName());
    for (const Subcommand* const subcommand : subcommands()) {
        text += fmt::format("   {}\n", subcommand->heading());
    }
    return text + "\nSubversion is a tool for version control.\n"
                  "For additional information, see http://subversion.apache.org/\n";
}

std::string helpOn(const Subcommand& subcommand, bool withGlobalOptions)
{
    std::string text =
        fmt::format("{}: {}\nusage: {}\n", subcommand.heading(), subcommand.summary, indented(subcommand.usage, 7));
    if (*subcommand.details != '\0') {
        text += fmt::format("\n  {}\n", indented(subcommand.details, 2));
    }
    if (!subcommand.options.empty()) {
        text += "\nValid options:\n";
        for (const OptionId id : subcommand.options) {
            const Option& option = optionWithId(id);
            text += optionLine(option, subcommand.descriptionOf(option));
        }
    }
    if (subcommand.isAdministrative) {
        return text;
    }
    if (!withGlobalOptions) {
        return text + "\n(Use '-v' to show global options.)\n";
    }
    text += "\nGlobal options:\n";
    for (const OptionId id : globalOptions()) {
        const Option& option = optionWithId(id);
        text += optionLine(option, option.description);
    }
    return text;
}
