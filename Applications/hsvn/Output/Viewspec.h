#pragma once

#include "CommandLine/Session.h"

#include <string>
#include <vector>

/// Prints which revisions, URLs and depths a working copy is made of, in the form of --x-viewspec.
///
/// @param targets  none stands for the current folder
/// @throws HSVNException for several targets or a URL
void printViewspec(Session& session, const std::vector<std::string>& targets);
