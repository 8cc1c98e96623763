#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// The canonical URL that an externals definition names: whole, or relative to the folder that has the definition
/// ("../x"), to the repository's root ("^/x"), to the server ("/x") or to the scheme ("//host/x").
svn_error_t* resolveExternalURL(const char** url, const char* definition, const char* rootURL, const char* folderURL,
                                apr_pool_t* pool);

} // namespace HSVNAdapter
