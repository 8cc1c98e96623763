#pragma once

#include <string>

/// The script that completes hsvn's command lines in bash.
std::string bashCompletion();
/// The same for zsh.
std::string zshCompletion();
