#pragma once

#include "HSVNExportOptions.h"
#include "HSVNRevisionSpec.h"
#include "Internal/Operation.h"

/// Writes an item without Subversion's own data.
///
/// @param operation  of `HSVNContext::exportTree` or of the class operation
/// @return the revision exported; `HSVNInvalidRevision` for a working copy's own state
/// @throws HSVNInvalidArgumentException "Invalid depth" for a depth that Subversion 1.4 cannot express
HSVNRevisionNumber HSVNExport(HSVNOperation& operation, const std::string& from, const std::string& to,
                              const HSVNRevisionSpec& revision, const HSVNExportChoices& choices);
/// The number by which an export's start is told: the operative revision's, or the peg revision's when that has none.
HSVNRevisionNumber HSVNNumberOfExport(const HSVNRevisionSpec& revision);
