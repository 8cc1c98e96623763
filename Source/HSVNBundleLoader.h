#pragma once

#include "HSVNBundleProxy.h"
#include "HSVNExport.h"
#include "HSVNObject.h"
#include "HSVNVersion.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

/// Finds version bundles and keeps them by version, at most one per version: the first one loaded wins.
///
/// Any thread may use a loader. Bundles stay for the life of the loader; the shared one lives as long as the process.
class HSVN_EXPORT HSVNBundleLoader : public HSVNObject
{
  public:
    HSVNBundleLoader() = default;
    HSVNBundleLoader(const HSVNBundleLoader&) = delete;
    HSVNBundleLoader& operator=(const HSVNBundleLoader&) = delete;

    /// The process's loader.
    static HSVNBundleLoader& sharedInstance();
    /// The folder of the bundles that come with the library: "Versions/A/Subversion" in the library's own package.
    static std::string defaultBundleDirectory();

    std::string className() const override { return "HSVNBundleLoader"; }

    /// Loads every entry of a folder whose extension is "bundle" in any case, in the order of their names; does nothing
    /// when the folder cannot be read. Folders below it are not searched.
    ///
    /// @throws HSVNException for the first bundle that cannot be opened; those after it are not loaded
    void loadBundlesInDirectoryAtPath(const std::string& path);
    /// Opens a bundle's package. Its code is not loaded before its principal object is asked for.
    ///
    /// @return the proxy for the bundle's version, which is an earlier one's when that has the same version
    /// @throws HSVNException "Failed to load svn bundle at PATH"
    HSVNBundleProxyRef loadBundleAtPath(const std::string& path);

    /// The version that a bundle is kept under; nil for a bundle that is not this loader's.
    ///
    /// @param bundle  must not be nil ("bundleObj != nil")
    std::optional<HSVNVersion> versionForBundle(const HSVNBundleRef& bundle) const;
    /// The newest loaded bundle that matches a pattern, or nil.
    ///
    /// @param version  zero numbers and an empty tag match anything; must not be nil ("version != nil")
    HSVNBundleProxyRef bundleForVersion(const std::optional<HSVNVersion>& version) const;
    /// The information dictionary of a bundle's package; the bundle must not be nil ("bundle != nil").
    const HSVNUserInfo& infoDictionaryForBundle(const HSVNBundleProxyRef& bundle) const;

    /// The newest loaded version; nil when none is loaded.
    std::optional<HSVNVersion> newestVersion() const;
    /// The oldest loaded version; nil when none is loaded.
    std::optional<HSVNVersion> oldestVersion() const;
    /// The same as `newestVersion`.
    std::optional<HSVNVersion> defaultVersion() const { return newestVersion(); }
    /// The bundle of the newest version; nil when none is loaded.
    HSVNBundleProxyRef newestBundle() const;
    /// The bundle of the oldest version; nil when none is loaded.
    HSVNBundleProxyRef oldestBundle() const;
    /// The bundle of the default version; nil when none is loaded.
    HSVNBundleProxyRef defaultBundle() const { return newestBundle(); }
    /// All loaded versions, newest first.
    std::vector<HSVNVersion> loadedVersions() const;

  private:
    mutable std::mutex _lock;                                           // guards the index
    std::map<HSVNVersion, HSVNBundleProxyRef, std::greater<>> _bundles; // newest first
};
