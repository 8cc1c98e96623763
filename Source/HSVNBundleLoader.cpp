#include "HSVNBundleLoader.h"

#include "HSVNPlatformException.h"
#include "Internal/Characters.h"
#include "Internal/Everlasting.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

HSVNBundleLoader& HSVNBundleLoader::sharedInstance()
{
    static HSVNEverlasting<HSVNBundleLoader> instance;
    return *instance;
}

std::string HSVNBundleLoader::defaultBundleDirectory() { return HSVNPackage::libraryPath() + "/Versions/A/Subversion"; }

void HSVNBundleLoader::loadBundlesInDirectoryAtPath(const std::string& path)
{
    std::vector<std::string> found;
    std::error_code error;
    for (fs::directory_iterator entry{path, error}; !error && entry != fs::directory_iterator{}; entry.increment(error))
    {
        if (HSVNText::equalIgnoringCase(entry->path().extension().string(), ".bundle")) {
            found.push_back(entry->path());
        }
    }
    // The file system's own order changes from one machine to the next.
    std::ranges::sort(found);
    for (const auto& bundle : found) {
        loadBundleAtPath(bundle);
    }
}

HSVNBundleProxyRef HSVNBundleLoader::loadBundleAtPath(const std::string& path)
{
    const auto package = HSVNPackage::packageAtPath(path);
    auto version = HSVNVersion::versionWithString(package->infoText(HSVNInfoVersionKey));
    const std::lock_guard guard{_lock};
    const auto [entry, isNew] = _bundles.try_emplace(std::move(version));
    if (isNew) {
        entry->second = HSVNBundleProxy::proxyForBundle(package);
    }
    return entry->second;
}

std::optional<HSVNVersion> HSVNBundleLoader::versionForBundle(const HSVNBundleRef& bundle) const
{
    HSVNAssertParameter(bundle != nullptr, "bundleObj != nil");
    const std::lock_guard guard{_lock};
    for (const auto& [version, loaded] : _bundles) {
        if (loaded == bundle) {
            return version;
        }
    }
    return std::nullopt;
}

HSVNBundleProxyRef HSVNBundleLoader::bundleForVersion(const std::optional<HSVNVersion>& version) const
{
    HSVNAssertParameter(version.has_value(), "version != nil");
    const std::lock_guard guard{_lock};
    for (const auto& [loaded, bundle] : _bundles) {
        if (loaded.matches(*version)) {
            return bundle;
        }
    }
    return nullptr;
}

const HSVNUserInfo& HSVNBundleLoader::infoDictionaryForBundle(const HSVNBundleProxyRef& bundle) const
{
    HSVNAssertParameter(bundle != nullptr, "bundle != nil");
    return bundle->bundle()->infoDictionary();
}

std::optional<HSVNVersion> HSVNBundleLoader::newestVersion() const
{
    const std::lock_guard guard{_lock};
    return _bundles.empty() ? std::nullopt : std::optional{_bundles.begin()->first};
}

std::optional<HSVNVersion> HSVNBundleLoader::oldestVersion() const
{
    const std::lock_guard guard{_lock};
    return _bundles.empty() ? std::nullopt : std::optional{_bundles.rbegin()->first};
}

HSVNBundleProxyRef HSVNBundleLoader::newestBundle() const
{
    const auto version = newestVersion();
    return version ? bundleForVersion(version) : nullptr;
}

HSVNBundleProxyRef HSVNBundleLoader::oldestBundle() const
{
    const auto version = oldestVersion();
    return version ? bundleForVersion(version) : nullptr;
}

std::vector<HSVNVersion> HSVNBundleLoader::loadedVersions() const
{
    const std::lock_guard guard{_lock};
    std::vector<HSVNVersion> versions;
    for (const auto& [version, bundle] : _bundles) {
        versions.push_back(version);
    }
    return versions;
}
