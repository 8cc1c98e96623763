#include "FuzzInput.h"

// Versions, of which every text gives one, and the revisions in the names of conflict files.
HSVN_FUZZ_TARGET
{
    const std::string text{reinterpret_cast<const char*>(data), size};
    const auto version = HSVNVersion::versionWithString(text);
    version.majorMinor();
    version.hash();
    version.matches(version.versionWithMajorAndMinorComponents());
    require(version == version.copy(), "a copy is equal");
    HSVNVersion::versionWithString(version.versionString());
    HSVNStatus::revisionFromFilename(text);
    return 0;
}
