#pragma once

#include "HSVNStatusOptions.h"
#include "Internal/Operation.h"

/// Reports the status of items in Subversion's order, for `HSVNContext::status`.
///
/// @return the revision compared with; `HSVNInvalidRevision` when the repository was not asked
/// @throws HSVNUnsupportedFeatureException for choices that a line before 1.9 does not have
HSVNRevisionNumber HSVNReportStatus(HSVNOperation& operation, const std::string& target,
                                    const HSVNStatusChoices& choices, const HSVNReceiver<const HSVNNodeRef&>& receiver);
