#pragma once

#include "HSVNCommitOptions.h"
#include "Internal/RevisionChange.h"

/// Commits local changes.
///
/// @param change   of `HSVNContext::commit` or of the class operation
/// @param targets  local paths, checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
/// @throws HSVNInvalidArgumentException "Invalid depth" for a depth that Subversion 1.4 cannot express
HSVNCommitResult HSVNCommit(HSVNRevisionChange& change, const apr_array_header_t* targets,
                            const HSVNCommitChoices& choices);
