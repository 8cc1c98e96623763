#pragma once

#include "CommandLine/Session.h"

#include <string>
#include <vector>

// What whoever sets a property may not have meant.

/// Warns of a binary type for files that look like text.
///
/// @param value  of the property of that name
/// @throws HSVNException for a type that is none, where a target is a file, forced or not
void warnOfBinaryType(Session& session, const std::string& name, const std::string& value,
                      const std::vector<std::string>& targets);

/// Warns of a value that looks as if the property were to be turned off by it.
void warnOfOff(const std::string& name, const std::string& value);
