#include "CommandLine/CommandLineParser.h"

#include "CommandLine/Errors.h"
#include "CommandLine/Session.h"
#include "CommandLine/Similarity.h"

#include <fmt/format.h>
#include <getopt.h>
#include <limits>

namespace {

constexpr int firstLongValue = 256;                      // above every letter
constexpr int noFault = std::numeric_limits<int>::min(); // no letter either, which are negative beyond ASCII

/// "; did you mean '--NAME'?" for a word that begins with a misspelled long name.
std::string suggestedOption(const std::string& word)
{
    std::vector<const char*> names;
    for (const Option& each : optionTable()) {
        names.push_back(each.name);
    }
    return word.starts_with("--") ? suggestion(word.substr(2, word.find('=') - 2), names, "--") : "";
}

[[noreturn]] void failToParse(const std::string& what, const std::string& word)
{
    throw UsageError{fmt::format("{}: {}", what, word)};
}

/// The table in the form that getopt_long takes.
struct Grammar
{
    // "-": arguments come in their order, whatever the environment says; ":": a missing argument is told apart.
    std::string letters = "-:?";
    std::vector<option> names;

    Grammar()
    {
        for (const Option& each : optionTable()) {
            const int takesArgument = each.argument ? required_argument : no_argument;
            const int value = firstLongValue + static_cast<int>(each.id);
            names.push_back({each.name, takesArgument, nullptr, value});
            if (each.alias) {
                names.push_back({each.alias, takesArgument, nullptr, value});
            }
            if (each.letter != 0) {
                letters += each.letter;
                letters += each.argument ? ":" : "";
            }
        }
        names.push_back({});
    }
};

/// One step of getopt_long.
struct Step
{
    int value;
    int fault;        ///< the letter or value that a fault is about; 0 for an unknown long name
    std::string word; ///< the word that was read
};

Step nextStep(int count, char** words, const Grammar& grammar)
{
    const int index = optind;
    opterr = 0;
    optopt = noFault;
    const int value = getopt_long(count, words, grammar.letters.c_str(), grammar.names.data(), nullptr);
    return {value, optopt, index < count ? words[index] : ""};
}

const Option& optionOf(int value)
{
    if (value >= firstLongValue) {
        return optionWithId(static_cast<OptionId>(value - firstLongValue));
    }
    for (const Option& each : optionTable()) {
        if (each.letter == value) {
            return each;
        }
    }
    return optionWithId(OptionId::Help); // "-?", the one letter that is not in the table
}

/// getopt_long accepts a long name that is cut short; Subversion does not.
void refuseAbbreviation(const Step& step, int value)
{
    if (value < firstLongValue) {
        return;
    }
    const std::string name = step.word.substr(0, step.word.find('='));
    const Option& option = optionOf(value);
    if (name != std::string{"--"} + option.name && !(option.alias && name == std::string{"--"} + option.alias)) {
        failToParse("invalid option", step.word + suggestedOption(step.word));
    }
}

[[noreturn]] void failAt(const Step& step)
{
    refuseAbbreviation(step, step.fault);
    const bool isLetter = step.fault != 0 && step.fault < firstLongValue;
    const std::string letter{static_cast<char>(step.fault)};
    if (step.value == ':') {
        failToParse("missing argument", isLetter ? letter : step.word);
    }
    if (isLetter) {
        failToParse("invalid option character", letter);
    }
    if (step.fault == 0) {
        failToParse("invalid option", step.word + suggestedOption(step.word));
    }
    failToParse("erroneous argument", step.word);
}

} // namespace

CommandLine parseCommandLine(int count, char** words, Session& session)
{
    const Grammar grammar;
    CommandLine result;
    for (;;) {
        const Step step = nextStep(count, words, grammar);
        if (step.value == -1) {
            break;
        }
        if (step.value == 1) {
            const std::string_view argument{optarg ? optarg : ""};
            if (argument == "-") {
                failToParse("invalid option", "");
            }
            result.arguments.emplace_back(argument);
            continue;
        }
        if (step.value == ':' || (step.value == '?' && step.fault != noFault)) {
            failAt(step);
        }
        refuseAbbreviation(step, step.value);
        const Option& option = optionOf(step.value);
        option.apply(session, session.options, optarg ? optarg : "");
        result.options.push_back(option.id);
    }
    result.arguments.insert(result.arguments.end(), words + optind, words + count);
    return result;
}
