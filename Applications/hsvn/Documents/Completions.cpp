#include "Completions.h"

#include "CommandLine/Subcommands.h"

#include <fmt/format.h>
#include <vector>

namespace {

/// What a subcommand accepts, in the order of help.
std::vector<const Option*> acceptedOptions(const Subcommand& subcommand)
{
    std::vector<const Option*> accepted;
    for (const Option& option : optionTable()) {
        if (subcommand.accepts(option.id)) {
            accepted.push_back(&option);
        }
    }
    return accepted;
}

/// Every way to write an option: "-r", "--revision".
std::vector<std::string> spellings(const Option& option)
{
    std::vector<std::string> words;
    if (option.letter != 0) {
        words.push_back(std::string{'-', option.letter});
    }
    words.push_back(fmt::format("--{}", option.name));
    if (option.alias) {
        words.push_back(fmt::format("--{}", option.alias));
    }
    return words;
}

std::string joined(const std::vector<std::string>& words, const char* separator)
{
    return fmt::format("{}", fmt::join(words, separator));
}

std::vector<std::string> names(const Subcommand& subcommand)
{
    std::vector<std::string> words{subcommand.name};
    words.insert(words.end(), subcommand.aliases.begin(), subcommand.aliases.end());
    return words;
}

/// The names as a pattern of "case"; "?" stands for itself.
std::string casePattern(const Subcommand& subcommand)
{
    std::vector<std::string> words = names(subcommand);
    for (std::string& word : words) {
        word = word == "?" ? "'?'" : word;
    }
    return joined(words, "|");
}

/// A text in zsh's specifications: inside single quotes, brackets and colons not special.
std::string zshText(std::string_view text)
{
    std::string result;
    for (const char character : text) {
        if (character == '[' || character == ']' || character == ':') {
            result += '\\';
        }
        result += character == '\'' ? "'\\''" : std::string{character};
    }
    return result;
}

/// What a description says in one line.
std::string firstLine(std::string_view text) { return std::string{text.substr(0, text.find('\n'))}; }

/// One option as "_arguments" takes it; it may be repeated, as in Subversion.
std::string zshOption(const Subcommand& subcommand, const Option& option)
{
    std::string text;
    const std::string argument = !option.argument ? ""
                                 : option.values  ? fmt::format(":argument:({})", option.values)
                                                  : ":argument:_files";
    for (const std::string& word : spellings(option)) {
        const char* const attached = !option.argument ? "" : word.starts_with("--") ? "=" : "+";
        text += fmt::format(" \\\n                '*{}{}[{}]{}'", word, attached,
                            zshText(firstLine(subcommand.descriptionOf(option))), argument);
    }
    return text;
}

constexpr const char* bashHead = R"(# bash completion for hsvn

_hsvn()
{{
    local current=${{COMP_WORDS[COMP_CWORD]}} previous=${{COMP_WORDS[COMP_CWORD-1]}}
    local subcommands="{}" subcommand= options= index
    COMPREPLY=()
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${{COMP_WORDS[COMP_CWORD-2]}}
    fi
    case $previous in
)";

constexpr const char* bashMiddle = R"(    esac
    for ((index = 1; index < COMP_CWORD; ++index)); do
        if [[ ${COMP_WORDS[index]} != -* ]]; then
            subcommand=${COMP_WORDS[index]}
            break
        fi
    done
    case $subcommand in
    '')
        options="--help --quiet --verbose --version"
        ;;
)";

// Everything that is no option is a file's name, which bash completes itself when it is answered nothing.
constexpr const char* bashTail = R"(    esac
    if [[ $current == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$current"))
    elif [[ -z $subcommand || $subcommand == help ]]; then
        COMPREPLY=($(compgen -W "$subcommands" -- "$current"))
    fi
}

complete -o bashdefault -o default -F _hsvn hsvn
)";

} // namespace

std::string bashCompletion()
{
    std::vector<std::string> all;
    for (const Subcommand* const subcommand : subcommands()) {
        const auto words = names(*subcommand);
        all.insert(all.end(), words.begin(), words.end());
    }
    std::string script = fmt::format(bashHead, joined(all, " "));
    for (const Option& option : optionTable()) {
        if (option.values) {
            script += fmt::format("    {})\n        COMPREPLY=($(compgen -W \"{}\" -- \"$current\"))\n"
                                  "        return\n        ;;\n",
                                  joined(spellings(option), "|"), option.values);
        }
    }
    script += bashMiddle;
    for (const Subcommand* const subcommand : subcommands()) {
        std::vector<std::string> options;
        for (const Option* const option : acceptedOptions(*subcommand)) {
            const auto words = spellings(*option);
            options.insert(options.end(), words.begin(), words.end());
        }
        script += fmt::format("    {})\n        options=\"{}\"\n        ;;\n", casePattern(*subcommand),
                              joined(options, " "));
    }
    return script + bashTail;
}

std::string zshCompletion()
{
    std::string script = "#compdef hsvn\n# zsh completion for hsvn\n\n_hsvn()\n{\n    local -a subcommands\n"
                         "    subcommands=(\n";
    for (const Subcommand* const subcommand : subcommands()) {
        for (const std::string& name : names(*subcommand)) {
            script += fmt::format("        '{}:{}'\n", name, zshText(subcommand->summary));
        }
    }
    script += "    )\n"
              "    if ((CURRENT == 2)); then\n"
              "        _describe subcommand subcommands\n"
              "        return\n"
              "    fi\n"
              "    local subcommand=$words[2]\n"
              "    shift words\n"
              "    ((CURRENT--))\n"
              "    case $subcommand in\n";
    for (const Subcommand* const subcommand : subcommands()) {
        const bool takesSubcommands = std::string_view{subcommand->name} == "help";
        script += fmt::format("        {})\n            _arguments -s -S", casePattern(*subcommand));
        for (const Option* const option : acceptedOptions(*subcommand)) {
            script += zshOption(*subcommand, *option);
        }
        script += takesSubcommands ? " \\\n                '*:subcommand:(($subcommands))'"
                                   : " \\\n                '*:target:_files'";
        script += "\n            ;;\n";
    }
    return script + "    esac\n}\n\n_hsvn \"$@\"\n";
}
