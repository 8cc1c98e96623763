#pragma once

#include "HSVNBundle.h"
#include "HSVNExport.h"
#include "HSVNPackage.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

/// A version bundle by its package: the code is loaded and its Subversion started when first asked for.
///
/// Any thread may use a proxy; two threads never make two principal objects.
class HSVN_EXPORT HSVNBundleProxy : public HSVNBundle
{
  public:
    /// @param bundle  the package whose code is loaded when a table is first asked for
    explicit HSVNBundleProxy(HSVNPackageRef bundle);
    /// A proxy for the package; must not be nil ("bundle != nil").
    static std::shared_ptr<HSVNBundleProxy> proxyForBundle(const HSVNPackageRef& bundle);

    std::string className() const override { return "HSVNBundleProxy"; }
    /// The default object description with the package's path.
    std::string description() const override;

    /// The package.
    const HSVNPackageRef& bundle() const { return _bundle; }
    /// The principal object, made on the first call that succeeds.
    ///
    /// @throws HSVNException when the code cannot be loaded, Subversion does not start, the code is of another
    ///         Subversion line than the package says, or an entry point is missing
    HSVNBundleRef bundleObject();
    /// The principal object's table.
    const HSVNBundleEntryPoints* entryPoints() override;
    /// The principal object's table of further functions.
    const HSVNBundleExtensions* extensions() override { return bundleObject()->extensions(); }
    /// The version that the principal object was made with.
    std::optional<HSVNVersion> reportedVersion() override { return bundleObject()->reportedVersion(); }

  private:
    HSVNPackageRef _bundle;
    std::mutex _lock; // guards the making of the principal object
    HSVNBundleRef _bundleObject;
    std::atomic<const HSVNBundleEntryPoints*> _entryPoints{nullptr}; // once made, read without the lock
};

using HSVNBundleProxyRef = std::shared_ptr<HSVNBundleProxy>;
