#include "TestBundles.h"

#include "HSVNBundleLoader.h"

HSVNVersion installedLine()
{
    return HSVNBundleLoader::sharedInstance().newestVersion().value().versionWithMajorAndMinorComponents();
}

HSVNBundleRef bundleOfLine(const HSVNVersion& line)
{
    auto& loader = HSVNBundleLoader::sharedInstance();
    if (line == installedLine()) {
        return loader.bundleForVersion(line);
    }
    return loader.loadBundleAtPath(HSVN_TEST_BUNDLES "/Subversion-" + line.versionString() + ".bundle");
}
