#pragma once

#include "CommandLine/Subcommands.h"

#include <string>

/// What `help` says without a subcommand.
std::string generalHelp();
/// What `help` says of a subcommand, with the global options or a hint at them.
std::string helpOn(const Subcommand& subcommand, bool withGlobalOptions);
