#pragma once

#include "HSVNWorkingCopyChoices.h"
#include "Internal/Operation.h"

#include <string>

/// Ends what was interrupted in a working copy.
///
/// @param operation  of `HSVNContext::cleanUp` or of a class operation
/// @param directory  a local path
void HSVNCleanUp(HSVNOperation& operation, const std::string& directory, const HSVNCleanUpChoices& choices);

/// Names in the log what interrupted operations had set aside in a directory.
void HSVNTellOfItemsSetAside(const std::string& directory);

/// The class operation's clean-up, which tells nobody what is set aside: an operation that is under way still has it.
void HSVNCleanUpAlone(const HSVNPathRef& directory, const HSVNContextRef& context);
