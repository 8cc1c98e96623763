#pragma once

#include "CommandLine/Options.h"

#include <string>

class Session;

/// --compatible-version: the release that is to read a new repository.
///
/// @throws HSVNException for a text that is no version, or a release that this Subversion cannot serve
void applyCompatibleVersion(Session& session, Options& options, const std::string& argument);
