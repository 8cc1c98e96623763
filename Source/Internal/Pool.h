#pragma once

#include "HSVNBundle.h"
#include "Internal/BundleEntryPoints.h"

#include <exception>

/// Makes a bundle current on the calling thread for a scope.
class HSVNBundleScope
{
  public:
    explicit HSVNBundleScope(const HSVNBundleRef& bundle) { HSVNBundlePush(bundle); }
    ~HSVNBundleScope();
    HSVNBundleScope(const HSVNBundleScope&) = delete;
    HSVNBundleScope& operator=(const HSVNBundleScope&) = delete;
};

/// Whether a bundle is on top of the calling thread's stack.
bool HSVNBundleIsCurrent(const HSVNBundleRef& bundle);

/// An APR pool of the current bundle, destroyed through the table that made it.
class HSVNPool
{
  public:
    /// @param parent  the pool that this one lives in; null makes a top-level pool
    explicit HSVNPool(apr_pool_t* parent = nullptr);
    ~HSVNPool();
    HSVNPool(const HSVNPool&) = delete;
    HSVNPool& operator=(const HSVNPool&) = delete;

    apr_pool_t* get() const { return _pool; }
    operator apr_pool_t*() const { return _pool; } // NOLINT(google-explicit-constructor)

  private:
    const HSVNBundleEntryPoints* _entryPoints;
    apr_pool_t* _pool;
};

/// The current bundle's table.
const HSVNBundleEntryPoints& HSVNCurrentEntryPoints();

/// A Subversion error located at the caller, for callbacks to return.
svn_error_t* HSVNMakeSubversionError(apr_status_t status, const char* message, const char* file, long line);
#define HSVN_SUBVERSION_ERROR(status, message) HSVNMakeSubversionError((status), (message), __FILE__, __LINE__)
