#pragma once

#include "Internal/BundleExtensions.h"
#include "SubversionLine.h"

namespace HSVNAdapter {

#if HSVN_LINE_MINOR >= 8
/// `HSVNBundleExtensions::version_details`
svn_error_t* versionDetails(HSVNBundleExtensions::VersionDetails* details, const char* configFolder,
                            svn_boolean_t withSystem, apr_pool_t* pool);
#endif

} // namespace HSVNAdapter
