#include "StartUp.h"

#include "SubversionLine.h"

#include <apr_general.h>
#include <svn_dso.h>
#include <svn_fs.h>
#include <svn_utf.h>
#if HSVN_LINE_MINOR >= 7
#include <svn_cache_config.h>
#endif

namespace HSVNAdapter {
namespace {

svn_error_t* startSubversion(apr_pool_t* pool)
{
#if HSVN_LINE_MINOR >= 6
    // What fails an internal check becomes an error of the operation; the default handler aborts the process.
    svn_error_set_malfunction_handler(svn_error_raise_on_malfunction);
    SVN_ERR(svn_dso_initialize2());
#else
    svn_dso_initialize();
#endif
    svn_utf_initialize(pool);
#if HSVN_LINE_MINOR >= 7
    svn_cache_config_t settings = *svn_cache_config_get();
    settings.single_threaded = FALSE;
    svn_cache_config_set(&settings);
#endif
    return svn_fs_initialize(pool);
}

bool start()
{
    if (apr_initialize() != APR_SUCCESS) {
        return false;
    }
    // The libraries' shared state lives in a pool of the process's lifetime.
    svn_error_t* error = startSubversion(svn_pool_create(nullptr));
    const bool started = error == nullptr;
    svn_error_clear(error);
    return started;
}

} // namespace

bool startLibraries()
{
    static const bool started = start();
    return started;
}

} // namespace HSVNAdapter
