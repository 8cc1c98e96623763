#pragma once

#include "HSVNMoveOptions.h"
#include "Internal/RevisionChange.h"

/// Moves items within a working copy or within a repository.
///
/// @param change   of `HSVNContext::move` or of the class operation
/// @param sources  not empty
/// @param force    whether a line that minds moves changed items all the same
HSVNCommitResult HSVNMove(HSVNRevisionChange& change, const std::vector<std::string>& sources,
                          const std::string& destination, const HSVNMoveChoices& choices, bool force = true);
