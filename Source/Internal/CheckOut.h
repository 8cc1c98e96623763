#pragma once

#include "HSVNCheckOutOptions.h"
#include "HSVNRevisionSpec.h"
#include "Internal/Operation.h"

/// Makes a working copy of a repository's directory.
///
/// @param operation  of `HSVNContext::checkout` or of the class operation
/// @return the revision checked out
/// @throws HSVNException for a depth that Subversion 1.4 cannot express
HSVNRevisionNumber HSVNCheckOut(HSVNOperation& operation, const std::string& url, const std::string& path,
                                const HSVNRevisionSpec& revision, const HSVNCheckOutChoices& choices);
