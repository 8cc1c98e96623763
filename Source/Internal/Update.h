#pragma once

#include "HSVNUpdateOptions.h"
#include "Internal/Operation.h"

/// Brings working-copy items to a revision.
///
/// @param operation  of `HSVNContext::update` or of the class operation
/// @param targets    paths, checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
/// @return the revision of each target, in order
/// @throws HSVNInvalidArgumentException "Invalid revision" for a kind of revision that an update cannot reach, which a
///         verb tells in Subversion's words, "Invalid depth" for a depth that Subversion 1.4 cannot express
std::vector<HSVNRevisionNumber> HSVNUpdate(HSVNOperation& operation, const apr_array_header_t* targets,
                                           const HSVNRevision& revision, const HSVNUpdateChoices& choices);
