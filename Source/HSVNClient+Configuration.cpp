// The client's configuration, each in a pool of its own: one that is read again replaces the former, and goes with it.

#include "Internal/Client.h"
#include "Internal/Pool.h"

#include <utility>

void HSVNClientInternals::replaceConfiguration(HSVNClient& client, std::unique_ptr<HSVNPool> pool,
                                               apr_hash_t* configuration)
{
    client.ctx()->config = configuration;
    client._configurationPool = std::move(pool);
}

svn_error_t* HSVNClientInternals::readConfiguration(HSVNClient& client, const char* folder)
{
    auto pool = std::make_unique<HSVNPool>(client.pool());
    apr_hash_t* configuration = nullptr;
    if (svn_error_t* const error = HSVNCurrentEntryPoints().config_get_config(&configuration, folder, *pool)) {
        return error;
    }
    replaceConfiguration(client, std::move(pool), configuration);
    return nullptr;
}

void HSVNClientInternals::clearConfiguration(HSVNClient& client)
{
    auto pool = std::make_unique<HSVNPool>(client.pool());
    apr_hash_t* const configuration = HSVNCurrentEntryPoints().apr_hash_make(*pool);
    replaceConfiguration(client, std::move(pool), configuration);
}
