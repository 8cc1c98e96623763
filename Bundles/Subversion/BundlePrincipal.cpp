#include "EntryPointTable.h"

#include <apr_general.h>
#include <string>

#include <svn_dso.h>
#include <svn_fs.h>
#include <svn_utf.h>
#if SVN_VER_MINOR >= 7
#include <svn_cache_config.h>
#endif

namespace {

#if SVN_VER_MINOR >= 7
/// With the default 16 MiB a long-lived process over file:// commits ever more slowly.
constexpr apr_uint64_t fileSystemCacheSize = 128ULL * 1024 * 1024;
#endif

svn_error_t* startLibraries(apr_pool_t* pool)
{
#if SVN_VER_MINOR >= 6
    // What fails an internal check becomes an error of the operation; the default handler aborts the process.
    svn_error_set_malfunction_handler(svn_error_raise_on_malfunction);
    SVN_ERR(svn_dso_initialize2());
#else
    svn_dso_initialize();
#endif
    svn_utf_initialize(pool);
#if SVN_VER_MINOR >= 7
    svn_cache_config_t settings = *svn_cache_config_get();
    settings.cache_size = fileSystemCacheSize;
    settings.single_threaded = FALSE;
    svn_cache_config_set(&settings);
#endif
    return svn_fs_initialize(pool);
}

/// Starts APR and this line's libraries, whose shared state lives in a pool of the process's lifetime.
bool start()
{
    if (apr_initialize() != APR_SUCCESS) {
        return false;
    }
    svn_error_t* error = startLibraries(svn_pool_create(nullptr));
    const bool started = error == nullptr;
    svn_error_clear(error);
    return started;
}

const char* versionText()
{
    static const std::string text = [] {
        const svn_version_t* version = svn_client_version();
        return std::to_string(version->major) + "." + std::to_string(version->minor) + "." +
               std::to_string(version->patch) + version->tag;
    }();
    return text.c_str();
}

} // namespace

extern "C" __attribute__((visibility("default"))) const HSVNBundleEntryPoints*
HSVNBundlePrincipalObject(const char** version)
{
    static const bool started = start();
    *version = versionText();
    return started ? &HSVNAdapter::entryPointTable() : nullptr;
}
