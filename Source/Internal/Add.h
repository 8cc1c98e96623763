#pragma once

#include "HSVNAddOptions.h"
#include "Internal/Operation.h"

/// Schedules unversioned items for addition, one after the other.
///
/// @param operation  of `HSVNContext::add` or of the class operation
/// @param targets    local paths, checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
void HSVNAdd(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNAddChoices& choices);
