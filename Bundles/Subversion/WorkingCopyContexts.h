#pragma once

#include "SubversionLine.h"

#if HSVN_LINE_MINOR >= 7

#include <apr_hash.h>
#include <svn_client.h>
#include <svn_config.h>

namespace HSVNAdapter {

/// The category "config" of what a client is configured with; null without a configuration.
inline svn_config_t* workingCopyConfiguration(const svn_client_ctx_t* ctx)
{
    return ctx->config == nullptr
               ? nullptr
               : static_cast<svn_config_t*>(apr_hash_get(ctx->config, SVN_CONFIG_CATEGORY_CONFIG, APR_HASH_KEY_STRING));
}

/// Makes a working-copy context that opens databases as the client is configured to: how long it waits for other
/// programs, and whether it keeps them out, is settled as it is made. It goes on reading what it is made with, which is
/// a copy: the client may be configured anew meanwhile.
inline svn_error_t* createWorkingCopyContext(svn_wc_context_t** made, [[maybe_unused]] const svn_client_ctx_t* ctx,
                                             apr_pool_t* pool, apr_pool_t* scratchPool)
{
    svn_config_t* own = nullptr;
#if HSVN_LINE_MINOR >= 8                                             // the first line that has such options
    if (auto* const configuration = workingCopyConfiguration(ctx)) { // which 1.8 takes as one to change, and only reads
        SVN_ERR(svn_config_dup(&own, configuration, pool));
    }
#endif
    return svn_wc_context_create(made, own, pool, scratchPool);
}

/// Whether the client is configured to keep others out of the databases that it has open: its own further connections,
/// too, such as those of a clean-up.
inline bool keepsOthersOut([[maybe_unused]] const svn_client_ctx_t* ctx)
{
    svn_boolean_t isWanted = FALSE;
#if HSVN_LINE_MINOR >= 8
    svn_error_clear(svn_config_get_bool(workingCopyConfiguration(ctx), &isWanted, SVN_CONFIG_SECTION_WORKING_COPY,
                                        SVN_CONFIG_OPTION_SQLITE_EXCLUSIVE, FALSE));
#endif
    return isWanted != FALSE;
}

/// Lets the calls within an operation's callbacks use the operation's databases where it keeps all others out: for an
/// operation that reads none of them across its callbacks.
void shareDatabasesWithin(apr_pool_t* operationPool);

} // namespace HSVNAdapter

#endif
