#include "RecordingTable.h"
#include "StartUp.h"

namespace {

HSVNBundleEntryPoints tableOfLine()
{
    auto table = HSVNTestBundle::recordingTable();
#if HSVN_TEST_LINE < 5
    table.client_checkout3 = nullptr;
    table.client_commit4 = nullptr;
    table.client_export4 = nullptr;
    table.client_update3 = nullptr;
    table.client_merge3 = nullptr;
#endif
    return table;
}

} // namespace

extern "C" __attribute__((visibility("default"))) const HSVNBundleEntryPoints*
HSVNBundlePrincipalObject(const char** version)
{
    *version = HSVN_TEST_VERSION;
    static const HSVNBundleEntryPoints table = tableOfLine();
    return HSVNAdapter::startLibraries() ? &table : nullptr;
}
