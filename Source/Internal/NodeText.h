#pragma once

#include "HSVNForward.h"
#include "HSVNTarget.h"
#include "Internal/ComparedText.h"

/// The text of a versioned file in one of its states, with keywords as the repository has them, in a file of its own.
///
/// @throws HSVNException for what is no versioned file
HSVNComparedText HSVNTextOfItem(const HSVNTargetInRevision& item, const HSVNContextRef& context);
