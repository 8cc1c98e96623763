#pragma once

#include "Internal/BundleExtensions.h"
#include "SubversionLine.h"

// Each family of the second table is filled by the sources that hold its functions.

namespace HSVNAdapter {

void fillTargets(HSVNTargetFunctions& table);

void fillAuthentication(HSVNAuthenticationFunctions& table);
void fillStoredCredentials(HSVNAuthenticationFunctions& table);
void fillTerminalPrompts(HSVNAuthenticationFunctions& table);

void fillBlame(HSVNReadingFunctions& table);
void fillContents(HSVNReadingFunctions& table);
void fillInfo(HSVNReadingFunctions& table);
void fillList(HSVNReadingFunctions& table);
void fillLog(HSVNReadingFunctions& table);

void fillLayout(HSVNStatusFunctions& table);
void fillStatus(HSVNStatusFunctions& table);
void fillStatusOnThreads(HSVNStatusFunctions& table);

void fillProperties(HSVNPropertyFunctions& table);
void fillPropertyCommits(HSVNPropertyFunctions& table);

void fillPatch(HSVNChangeFunctions& table);
void fillWorkingCopyChanges(HSVNChangeFunctions& table);

void fillConflicts(HSVNConflictFunctions& table);

void fillCheckOut(HSVNUpdateFunctions& table);
void fillExport(HSVNUpdateFunctions& table);
void fillSwitchTo(HSVNUpdateFunctions& table);
void fillUpdate(HSVNUpdateFunctions& table);

void fillMerge(HSVNMergeFunctions& table);
void fillMergeInformation(HSVNMergeFunctions& table);

void fillCommit(HSVNCommitFunctions& table);
void fillCopyAndMove(HSVNCommitFunctions& table);
void fillImport(HSVNCommitFunctions& table);
void fillLock(HSVNCommitFunctions& table);
void fillMakeDirectories(HSVNCommitFunctions& table);
void fillRemove(HSVNCommitFunctions& table);

void fillDiff(HSVNDifferenceFunctions& table);
void fillTextComparison(HSVNDifferenceFunctions& table);

#if HSVN_LINE_MINOR >= 7
void fillNestedDatabases(HSVNDatabaseFunctions& table);
void fillOpenWorkingCopies(HSVNDatabaseFunctions& table);
#endif

void fillErrorCodes(HSVNLineFunctions& table);
void fillRepositoryAdministration(HSVNLineFunctions& table);
void fillVersionDetails(HSVNLineFunctions& table);

} // namespace HSVNAdapter
