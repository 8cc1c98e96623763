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
void fillCommitOperations(HSVNBundleEntryPoints& table);
void fillChangeOperations(HSVNBundleEntryPoints& table);
void fillReadingOperations(HSVNBundleEntryPoints& table);
void fillPropertyOperations(HSVNBundleEntryPoints& table);
void fillLocking(HSVNBundleEntryPoints& table);
void fillStatus(HSVNBundleEntryPoints& table);
void fillWorkingCopyFormat(HSVNBundleEntryPoints& table);
void fillExternals(HSVNBundleEntryPoints& table);
void fillRepositoryAdministration(HSVNBundleEntryPoints& table);

/// The bundle's table; made once, then read-only.
const HSVNBundleEntryPoints& entryPointTable();

} // namespace HSVNAdapter
