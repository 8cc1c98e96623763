#pragma once

#include "CommandLine/Options.h"

#include <string>

class Session;

bool isUnspecified(const HSVNRevisionRef& revision);

/// "; did you mean 'HEAD'?" for a text that is no revision, as `suggestion`.
std::string suggestedRevision(const std::string& text);

/// -r: one revision or a range, as Subversion reads it.
///
/// @throws HSVNException "Syntax error in revision argument"
void applyRevision(Session& session, Options& options, const std::string& argument);

/// -c: changes by number, separated by commas: "5", "-5", "3-7".
///
/// @throws HSVNException for a text that is none, or for change 0
void applyChange(Session& session, Options& options, const std::string& argument);
