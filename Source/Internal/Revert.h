#pragma once

#include "HSVNRevertOptions.h"
#include "Internal/Operation.h"

/// Takes local changes back.
///
/// @param operation  of `HSVNContext::revert` or of the class operation
/// @param targets    local paths, checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
void HSVNRevert(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNRevertChoices& choices);
