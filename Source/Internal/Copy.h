#pragma once

#include "HSVNCopyOptions.h"
#include "HSVNTarget.h"
#include "Internal/RevisionChange.h"

/// Copies items with their history, within or between working copies and a repository.
///
/// @param change   of `HSVNContext::copy` or of the class operation
/// @param sources  not empty
HSVNCommitResult HSVNCopy(HSVNRevisionChange& change, const std::vector<HSVNTargetInRevision>& sources,
                          const std::string& destination, const HSVNCopyChoices& choices);
