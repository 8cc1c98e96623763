#pragma once

#include "Internal/BundleEntryPoints.h"
#include "SubversionLine.h"

// The table is filled by the sources that hold its functions, each its own places.

namespace HSVNAdapter {

void fillRuntimeServices(HSVNBundleEntryPoints& table);
void fillAuthentication(HSVNBundleEntryPoints& table);
void fillDiffServices(HSVNBundleEntryPoints& table);
void fillStreams(HSVNBundleEntryPoints& table);
void fillWorkingCopyOperations(HSVNBundleEntryPoints& table);
void fillCheckOut(HSVNBundleEntryPoints& table);
void fillCommit(HSVNBundleEntryPoints& table);
void fillCopyAndMove(HSVNBundleEntryPoints& table);
void fillExport(HSVNBundleEntryPoints& table);
void fillImport(HSVNBundleEntryPoints& table);
void fillMakeDirectories(HSVNBundleEntryPoints& table);
void fillMerge(HSVNBundleEntryPoints& table);
void fillRemove(HSVNBundleEntryPoints& table);
void fillUpdate(HSVNBundleEntryPoints& table);
void fillReadingOperations(HSVNBundleEntryPoints& table);
void fillList(HSVNBundleEntryPoints& table);
void fillLog(HSVNBundleEntryPoints& table);
void fillProperties(HSVNBundleEntryPoints& table);
void fillLock(HSVNBundleEntryPoints& table);
void fillStatus(HSVNBundleEntryPoints& table);
void fillWorkingCopyFormat(HSVNBundleEntryPoints& table);
void fillExternals(HSVNBundleEntryPoints& table);
void fillRepositoryAdministration(HSVNBundleEntryPoints& table);

/// The bundle's table; made once, then read-only.
const HSVNBundleEntryPoints& entryPointTable();

} // namespace HSVNAdapter
