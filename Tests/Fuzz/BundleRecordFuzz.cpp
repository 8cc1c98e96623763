#include "FuzzInput.h"

// A bundle's record, read by the package and by the loader.
HSVN_FUZZ_TARGET
{
    static const auto bundles = FuzzLibrary::shared().directory() / "bundles";
    static const auto bundle = bundles / "Fuzz.bundle";
    std::filesystem::create_directories(bundle);
    FuzzLibrary::write(bundle / "Info.json", {reinterpret_cast<const char*>(data), size});
    passes([&] {
        const auto package = HSVNPackage::packageAtPath(bundle.string());
        for (const auto* key : {HSVNInfoVersionKey, HSVNInfoExecutableKey, HSVNInfoWorkingCopyFormatKey}) {
            HSVNVersion::versionWithString(package->infoText(key)).description();
        }
    });
    passes([&] { HSVNBundleLoader{}.loadBundlesInDirectoryAtPath(bundles.string()); });
    return 0;
}
