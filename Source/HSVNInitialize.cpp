#include "HSVNInitialize.h"

#include "HSVNBundleLoader.h"
#include "HSVNException.h"
#include "Internal/Initialize.h"
#include "Internal/Pool.h"

#include <atomic>
#include <clocale>

namespace {

std::atomic_flag& startUp()
{
    static std::atomic_flag begun;
    return begun;
}

} // namespace

bool HSVNIsInitialized() { return startUp().test(); }

void HSVNInitialize() { HSVNInitializeWithOptions({}); }

void HSVNInitialize(HSVNNumericLocale numericLocale)
{
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    const auto restore = [&] {
        if (numericLocale == HSVNNumericLocale::Unchanged) {
            std::setlocale(LC_NUMERIC, before.c_str());
        }
    };
    try {
        HSVNInitialize();
    } catch (...) {
        restore();
        throw;
    }
    restore();
}

void HSVNInitializeWithOptions(const HSVNUserInfo& /*options*/)
{
    if (startUp().test_and_set()) {
        return;
    }
    HSVNBundleLoader::sharedInstance().loadBundlesInDirectoryAtPath(HSVNBundleLoader::defaultBundleDirectory());
    HSVNInitializeCLocale();
    HSVNInitializeSubversionConfiguration();
}

std::string HSVNInitializeCLocale()
{
    for (const int category : {LC_ALL, LC_CTYPE}) {
        if (const char* const name = std::setlocale(category, "")) {
            return name;
        }
    }
    throw HSVNException("Failed to initialize locales", HSVNUserInfo{});
}

void HSVNInitializeSubversionConfiguration()
{
    const HSVNBundleScope scope{HSVNBundleLoader::sharedInstance().newestBundle()};
    const HSVNPool pool;
    const auto& entryPoints = HSVNCurrentEntryPoints();
    if (svn_error_t* const error = entryPoints.config_ensure(nullptr, pool)) {
        entryPoints.error_clear(error);
    }
}
