#include "EntryPointTable.h"
#include "StartUp.h"

#include <array>
#include <cstdio>

namespace {

/// Kept in an array, which is there for as long as the process: applications may ask in the destructors of static
/// objects.
const char* versionText()
{
    static const std::array<char, 64> text = [] {
        const svn_version_t* version = svn_client_version();
        std::array<char, 64> made{};
        std::snprintf(made.data(), made.size(), "%d.%d.%d%s", version->major, version->minor, version->patch,
                      version->tag);
        return made;
    }();
    return text.data();
}

} // namespace

extern "C" __attribute__((visibility("default"))) const HSVNBundleEntryPoints*
HSVNBundlePrincipalObject(const char** version)
{
    *version = versionText();
    return HSVNAdapter::startLibraries() ? &HSVNAdapter::entryPointTable() : nullptr;
}
