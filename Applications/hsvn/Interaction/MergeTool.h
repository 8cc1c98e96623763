#pragma once

#include "CommandLine/Session.h"

#include <string>

/// Whether the environment or the configuration names a program that merges files.
bool hasMergeTool(Session& session);

/// Has that program merge the sides of a conflict into the file.
///
/// @param path  the merged file, absolute
/// @return whether the program settled the conflict; false when it leaves some of it
/// @throws HSVNException when no program is named or when it fails
bool launchMergeTool(Session& session, const HSVNConflictSides& files, const std::string& path);
