#pragma once

#include "HSVNDeleteOptions.h"
#include "Internal/RevisionChange.h"

/// Deletes items, all local or all of repositories.
///
/// @param change   of `HSVNContext::remove` or of a class operation
/// @param targets  checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
/// @param pool     for the deletion alone
HSVNCommitResult HSVNRemove(HSVNRevisionChange& change, const apr_array_header_t* targets,
                            const HSVNDeleteChoices& choices, apr_pool_t* pool);
