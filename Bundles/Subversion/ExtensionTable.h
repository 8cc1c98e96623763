#pragma once

#include "Internal/BundleExtensions.h"
#include "SubversionLine.h"

// Places of the second table that have sources of their own.

namespace HSVNAdapter {

void fillAuthenticationExtensions(HSVNBundleExtensions& table);
void fillBlame(HSVNBundleExtensions& table);
void fillConflictExtensions(HSVNBundleExtensions& table);
void fillContents(HSVNBundleExtensions& table);
void fillDiff(HSVNBundleExtensions& table);
#if HSVN_LINE_MINOR >= 7
void fillNestedDatabases(HSVNBundleExtensions& table);
void fillOpenWorkingCopies(HSVNBundleExtensions& table);
#endif
void fillLayout(HSVNBundleExtensions& table);
void fillMergeInformation(HSVNBundleExtensions& table);
void fillPatch(HSVNBundleExtensions& table);
void fillPropertyCommits(HSVNBundleExtensions& table);
void fillLockExtensions(HSVNBundleExtensions& table);
void fillPropertyExtensions(HSVNBundleExtensions& table);
void fillList(HSVNBundleExtensions& table);
void fillLog(HSVNBundleExtensions& table);
void fillStoredCredentials(HSVNBundleExtensions& table);
void fillStatus(HSVNBundleExtensions& table);
void fillStatusOnThreads(HSVNBundleExtensions& table);
#if HSVN_LINE_MINOR >= 6
void fillTerminalPrompts(HSVNBundleExtensions& table);
#endif
void fillTextComparison(HSVNBundleExtensions& table);
void fillCheckOut(HSVNBundleExtensions& table);
void fillCommit(HSVNBundleExtensions& table);
void fillCopyAndMove(HSVNBundleExtensions& table);
void fillExport(HSVNBundleExtensions& table);
void fillImport(HSVNBundleExtensions& table);
void fillMakeDirectories(HSVNBundleExtensions& table);
void fillMerge(HSVNBundleExtensions& table);
void fillRemove(HSVNBundleExtensions& table);
void fillSwitchTo(HSVNBundleExtensions& table);
void fillUpdate(HSVNBundleExtensions& table);
void fillWorkingCopyExtensions(HSVNBundleExtensions& table);

} // namespace HSVNAdapter
