#pragma once

#include "CommandLine/Session.h"

#include <optional>
#include <string>
#include <vector>

// What `propset` and `propdel` share. The name and, for `propset`, the value are taken off the arguments before.

/// Sets or deletes a property of the revision of -r, and says so.
///
/// @param value  nil deletes
void changeRevisionProperty(Session& session, const std::string& name, const std::optional<std::string>& value);

/// Sets or deletes a property of items, and says so.
///
/// @param value    nil deletes
/// @param targets  made canonical, without peg revisions
/// @throws HSVNException when a target is a URL
void changeProperty(Session& session, const std::string& name, const std::optional<std::string>& value,
                    const std::vector<std::string>& targets);
