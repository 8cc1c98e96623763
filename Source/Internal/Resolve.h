#pragma once

#include "HSVNResolveOptions.h"
#include "Internal/Operation.h"

/// Ends the conflicts of items, one after the other.
///
/// @param operation  of `HSVNContext::resolve` or of the class operation
/// @param targets    local paths, checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
/// @throws HSVNInvalidArgumentException for a choice that is not one of a whole item
void HSVNResolve(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNResolveChoices& choices);
