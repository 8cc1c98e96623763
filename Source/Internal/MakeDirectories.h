#pragma once

#include "HSVNWorkingCopyChoices.h"
#include "Internal/RevisionChange.h"

/// Makes directories, all local or all of repositories.
///
/// @param change   of `HSVNContext::makeDirectories` or of the class operation
/// @param targets  checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
HSVNCommitResult HSVNMakeDirectories(HSVNRevisionChange& change, const apr_array_header_t* targets,
                                     const HSVNMakeDirectoriesChoices& choices);
