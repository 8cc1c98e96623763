#pragma once

#include "HSVNLockOptions.h"
#include "HSVNUnlockOptions.h"
#include "Internal/Operation.h"

// A verb is told of a lock that cannot be had or released by a notification only, a class operation by an error, too;
// so is a verb of a bundle without a second table.

/// Locks files in the repository.
///
/// @param operation  of `HSVNContext::lock` or of the class operation
/// @param targets    checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
void HSVNLockTargets(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNLockChoices& choices);

/// Gives locks back.
///
/// @param operation  of `HSVNContext::unlock` or of the class operation
/// @param targets    checked (`HSVNOperation::pathArray`, `HSVNChangedArray`)
void HSVNUnlockTargets(HSVNOperation& operation, const apr_array_header_t* targets, const HSVNUnlockChoices& choices);
