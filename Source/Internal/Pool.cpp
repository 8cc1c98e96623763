#include "Internal/Pool.h"

#include "HSVNDebug.h"
#include "HSVNPlatformException.h"

HSVNBundleScope::~HSVNBundleScope()
{
    try {
        HSVNBundlePop();
    } catch (const HSVNPlatformException& exception) {
        // Somebody popped what this scope pushed; an exception must not leave a destructor.
        HSVNDebug::logAtLevel(HSVNDebugLevelNormal, "%@", exception.reason());
    }
}

HSVNPool::HSVNPool(apr_pool_t* parent)
    : _entryPoints{&HSVNCurrentEntryPoints()}, _pool{_entryPoints->pool_create(parent, nullptr)}
{
}

HSVNPool::~HSVNPool() { _entryPoints->apr_pool_destroy(_pool); }

const HSVNBundleEntryPoints& HSVNCurrentEntryPoints() { return *HSVNBundleCurrent()->entryPoints(); }

svn_error_t* HSVNMakeSubversionError(apr_status_t status, const char* message, const char* file, long line)
{
    const auto& entryPoints = HSVNCurrentEntryPoints();
    entryPoints.error_locate(file, line);
    return entryPoints.error_create(status, nullptr, message);
}
