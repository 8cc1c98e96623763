#include "EntryPointTable.h"
#include "StartUp.h"

#include <string>

namespace {

const char* versionText()
{
    static const std::string text = [] {
        const svn_version_t* version = svn_client_version();
        return std::to_string(version->major) + "." + std::to_string(version->minor) + "." +
               std::to_string(version->patch) + version->tag;
    }();
    return text.c_str();
}

} // namespace

extern "C" __attribute__((visibility("default"))) const HSVNBundleEntryPoints*
HSVNBundlePrincipalObject(const char** version)
{
    *version = versionText();
    return HSVNAdapter::startLibraries() ? &HSVNAdapter::entryPointTable() : nullptr;
}
