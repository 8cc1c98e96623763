#pragma once

#include "Internal/BundleExtensions.h"
#include "SubversionLine.h"

// Places of the second table that have sources of their own.

namespace HSVNAdapter {

void fillAuthenticationExtensions(HSVNBundleExtensions& table);
void fillComparisonExtensions(HSVNBundleExtensions& table);
void fillConflictExtensions(HSVNBundleExtensions& table);
#if HSVN_LINE_MINOR >= 7
void fillOpenWorkingCopies(HSVNBundleExtensions& table);
#endif
void fillMergeInformation(HSVNBundleExtensions& table);
void fillPatch(HSVNBundleExtensions& table);
void fillPropertyCommits(HSVNBundleExtensions& table);
void fillRepositoryExtensions(HSVNBundleExtensions& table);
void fillStoredCredentials(HSVNBundleExtensions& table);
void fillUpdateExtensions(HSVNBundleExtensions& table);
void fillWorkingCopyExtensions(HSVNBundleExtensions& table);

} // namespace HSVNAdapter
