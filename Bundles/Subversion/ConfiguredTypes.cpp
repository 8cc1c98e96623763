#include "ConfiguredTypes.h"

#if HSVN_LINE_MINOR >= 5

#include <svn_config.h>
#include <svn_io.h>

namespace HSVNAdapter {

svn_error_t* readConfiguredTypes(apr_hash_t** types, const svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    auto* const configuration =
        ctx->config == nullptr
            ? nullptr
            : static_cast<svn_config_t*>(apr_hash_get(ctx->config, SVN_CONFIG_CATEGORY_CONFIG, APR_HASH_KEY_STRING));
    const char* file = nullptr;
    if (configuration != nullptr) {
        svn_config_get(configuration, &file, SVN_CONFIG_SECTION_MISCELLANY, SVN_CONFIG_OPTION_MIMETYPES_FILE, nullptr);
    }
    return file == nullptr || *file == '\0' ? SVN_NO_ERROR : svn_io_parse_mimetypes_file(types, file, pool);
}

} // namespace HSVNAdapter

#endif
