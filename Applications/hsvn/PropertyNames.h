#pragma once

#include <string>

/// Refuses a text that Subversion does not accept as the name of a property.
///
/// @throws HSVNException
void requirePropertyName(const std::string& name);
