#pragma once

#include "CommandLine/OptionTable.h"

#include <string>
#include <vector>

class Session;

/// The words of a command line, told apart.
struct CommandLine
{
    std::vector<OptionId> options;      ///< in the order given, each occurrence
    std::vector<std::string> arguments; ///< the subcommand and what follows it
};

/// Reads the command line by Subversion's rules: options and arguments in any order, "--" ends the options, long names
/// are never abbreviated, and each option takes effect, or fails, in its turn.
///
/// The words are taken apart by the C library's getopt_long. CLI11 will not do: it takes values such as "[a,b]" apart,
/// answers options grouped rather than in their order, and names the faults of a command line in its own words.
///
/// @throws UsageError for an option that does not exist, or whose argument is missing or too many
/// @throws HSVNException for an argument that the option does not take
CommandLine parseCommandLine(int count, char** words, Session& session);
