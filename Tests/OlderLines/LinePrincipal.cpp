#include "EntryPointTable.h"
#include "StartUp.h"

// The bundle of an older line over the installed Subversion, which still has the older functions.

extern "C" __attribute__((visibility("default"))) const HSVNBundleEntryPoints*
HSVNBundlePrincipalObject(const char** version)
{
    *version = HSVN_TEST_VERSION;
    return HSVNAdapter::startLibraries() ? &HSVNAdapter::entryPointTable() : nullptr;
}
