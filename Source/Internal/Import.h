#pragma once

#include "HSVNImportOptions.h"
#include "Internal/RevisionChange.h"

/// Commits an unversioned file, or the contents of a directory, to a URL.
///
/// @param change  of `HSVNContext::importTree` or of the class operation
/// @throws HSVNInvalidArgumentException "Invalid depth" for a depth that the lines before 1.8 cannot express
HSVNCommitResult HSVNImport(HSVNRevisionChange& change, const std::string& path, const std::string& url,
                            const HSVNImportChoices& choices);
