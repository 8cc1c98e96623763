#include "HSVNBundleProxy.h"

#include "HSVNException.h"
#include "HSVNVersion.h"
#include "Internal/BundleEntryPoints.h"
#include "Internal/BundleExtensions.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fmt/format.h>

namespace {

constexpr std::size_t placeCount = 91;

/// What a bundle's code answered.
struct StartedBundle
{
    const HSVNBundleEntryPoints& entryPoints;
    HSVNVersion version;
};

/// The object that a bundle's code makes: it hands the code's table out.
class BundlePrincipal : public HSVNBundle
{
  public:
    BundlePrincipal(const StartedBundle& started, const HSVNBundleExtensions* extensions)
        : _entryPoints{&started.entryPoints}, _extensions{extensions}, _version{started.version}
    {
    }
    std::string className() const override { return "HSVNBundlePrincipal"; }
    const HSVNBundleEntryPoints* entryPoints() override { return _entryPoints; }
    const HSVNBundleExtensions* extensions() override { return _extensions; }
    std::optional<HSVNVersion> reportedVersion() override { return _version; }

  private:
    const HSVNBundleEntryPoints* _entryPoints;
    const HSVNBundleExtensions* _extensions;
    HSVNVersion _version;
};

[[noreturn]] void refuse(const HSVNPackage& package, const std::string& cause)
{
    throw HSVNException(fmt::format("Failed to open svn bundle at {}: {}", package.path(), cause), HSVNUserInfo{});
}

template <std::size_t Size>
bool isIn(const std::array<std::size_t, Size>& places, std::size_t place)
{
    return std::find(places.begin(), places.end(), place) != places.end();
}

/// Whether a bundle of the version must fill the place: of an operation's two forms, the one of its line.
bool mustBeFilled(std::size_t place, const HSVNVersion& version)
{
    // Free, never called by the library, or for the comparison of texts alone.
    constexpr std::array<std::size_t, 15> unused{0, 1, 2, 5, 6, 7, 42, 63, 72, 73, 74, 77, 79, 89, 90};
    constexpr std::array<std::size_t, 5> recursive{34, 37, 43, 60, 61};   // of 1.4
    constexpr std::array<std::size_t, 5> depthTaking{35, 38, 44, 59, 62}; // of 1.5 and later
    const bool takesDepth = !version.isLessThan(HSVNVersion::version1_5());
    return !isIn(unused, place) && !(takesDepth ? isIn(recursive, place) : isIn(depthTaking, place));
}

/// The version that a bundle reports, when it is of the line that its package says.
HSVNVersion checkedVersion(const HSVNPackage& package, const char* reported)
{
    const std::string declared = package.infoText(HSVNInfoVersionKey);
    const HSVNVersion expected = HSVNVersion::versionWithString(declared).versionWithMajorAndMinorComponents();
    const HSVNVersion actual = HSVNVersion::versionWithString(reported ? reported : "");
    // A patch release may have replaced the one that the bundle was built with.
    if (expected != actual.versionWithMajorAndMinorComponents()) {
        refuse(package, fmt::format("it says that it is of Subversion {}, but its Subversion is {}",
                                    declared.empty() ? "(null)" : declared, reported ? reported : "(null)"));
    }
    return actual;
}

void checkEntryPoints(const HSVNPackage& package, const HSVNBundleEntryPoints& entryPoints)
{
    const HSVNVersion version = HSVNVersion::versionWithString(package.infoText(HSVNInfoVersionKey));
    std::array<void (*)(), placeCount> places{};
    static_assert(sizeof places == sizeof entryPoints);
    std::memcpy(places.data(), &entryPoints, sizeof places);
    for (std::size_t place = 0; place < placeCount; ++place) {
        if (!places[place] && mustBeFilled(place, version)) {
            refuse(package, fmt::format("it does not fill entry point {}", place));
        }
    }
}

/// Loads and starts a bundle. One bundle of the process at a time: they share the system's APR, whose first start is
/// not safe for threads.
StartedBundle startBundle(const HSVNPackage& package)
{
    static std::mutex starting;
    const std::lock_guard guard{starting};
    const auto principal = reinterpret_cast<HSVNBundlePrincipalFunction>(package.symbol(HSVNBundlePrincipalSymbol));
    const char* version = nullptr;
    const HSVNBundleEntryPoints* const entryPoints = principal(&version);
    if (!entryPoints) {
        refuse(package, "its Subversion could not be started");
    }
    StartedBundle started{*entryPoints, checkedVersion(package, version)};
    checkEntryPoints(package, *entryPoints);
    return started;
}

/// The bundle's second table, or null: one of another meaning than this library's is as good as none.
const HSVNBundleExtensions* extensionsOf(const HSVNPackage& package)
{
    const auto function =
        reinterpret_cast<HSVNBundleExtensionsFunction>(package.optionalSymbol(HSVNBundleExtensionsSymbol));
    const HSVNBundleExtensions* const table = function ? function() : nullptr;
    return table && table->version == HSVNBundleExtensions{}.version ? table : nullptr;
}

} // namespace

HSVNBundleProxy::HSVNBundleProxy(HSVNPackageRef bundle) : _bundle{std::move(bundle)}
{
    HSVNAssertParameter(_bundle != nullptr, "bundle != nil");
}

HSVNBundleProxyRef HSVNBundleProxy::proxyForBundle(const HSVNPackageRef& bundle)
{
    return std::make_shared<HSVNBundleProxy>(bundle);
}

std::string HSVNBundleProxy::description() const
{
    return fmt::format("{} ({})", objectDescription(), _bundle->path());
}

HSVNBundleRef HSVNBundleProxy::bundleObject()
{
    const std::lock_guard guard{_lock};
    if (!_bundleObject) {
        const StartedBundle started = startBundle(*_bundle);
        _bundleObject = std::make_shared<BundlePrincipal>(started, extensionsOf(*_bundle));
        _entryPoints.store(&started.entryPoints, std::memory_order_release);
    }
    return _bundleObject;
}

const HSVNBundleEntryPoints* HSVNBundleProxy::entryPoints()
{
    const HSVNBundleEntryPoints* const entryPoints = _entryPoints.load(std::memory_order_acquire);
    return entryPoints ? entryPoints : bundleObject()->entryPoints();
}
