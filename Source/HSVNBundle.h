#pragma once

#include "HSVNExport.h"
#include "HSVNObject.h"
#include "HSVNVersion.h"

#include <memory>
#include <optional>

struct HSVNBundleEntryPoints;
struct HSVNBundleExtensions;

/// One Subversion line: whatever hands out an entry-point table.
class HSVN_EXPORT HSVNBundle : public HSVNObject
{
  public:
    /// The table of the bundle's functions; owned by the bundle, valid for the life of the process, never null.
    ///
    /// @throws HSVNException when the bundle's code cannot be loaded or is of another line than it says
    virtual const HSVNBundleEntryPoints* entryPoints() = 0;
    /// The table of the functions that the bundle offers beside those; null when it offers none.
    ///
    /// @throws as `entryPoints`
    virtual const HSVNBundleExtensions* extensions() { return nullptr; }
    /// The version that the bundle's Subversion reported when it was started, whoever loaded it; nil when it is not
    /// known. Operations go by it where a context's `bundleVersion` is nil.
    ///
    /// @throws as `entryPoints`
    virtual std::optional<HSVNVersion> reportedVersion() { return std::nullopt; }
};

using HSVNBundleRef = std::shared_ptr<HSVNBundle>;

/// Makes a bundle current on the calling thread; must not be nil.
///
/// @throws HSVNInvalidArgumentException for nil; the reason tells when no bundle is loaded at all, and when that is so
///         because `HSVNInitialize` has not been called
HSVN_EXPORT void HSVNBundlePush(const HSVNBundleRef& bundle);

/// Removes the calling thread's current bundle and returns it.
///
/// @throws HSVNGenericException "Unbalanced bundle stack pop" when the thread has none
HSVN_EXPORT HSVNBundleRef HSVNBundlePop();

/// The calling thread's current bundle; never nil.
///
/// @throws HSVNGenericException "Bundle stack is empty" when the thread has none: there is no fall-back on purpose
HSVN_EXPORT HSVNBundleRef HSVNBundleCurrent();
