#include "CredentialStores.h"
#include "EntryPointTable.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "KeptCredentials.h"

namespace HSVNAdapter {
namespace {

/// How often Subversion asks again after a certificate or a passphrase that is no good.
constexpr int retryLimit = 2;

/// Set where the client shall store no credentials, whatever the configuration allows.
constexpr const char* noStoringParameter = "hsvn:no-storing";

void simpleProvider(svn_auth_provider_object_t** provider, apr_pool_t* pool) { *provider = passwordStores(pool); }

void openAuthentication(svn_auth_baton_t** baton, const apr_array_header_t* providers, apr_pool_t* pool)
{
    // Older lines take the array without const; none of them writes to it.
    svn_auth_open(baton, const_cast<apr_array_header_t*>(providers), pool);
    forgetDoubtfulCredentials(*baton, pool);
}

void addProviders(apr_array_header_t* providers, const HSVNAuthenticationFunctions::Prompts* prompts, apr_pool_t* pool)
{
    const auto push = [&](svn_auth_provider_object_t* provider) {
        APR_ARRAY_PUSH(providers, svn_auth_provider_object_t*) = provider;
    };
    svn_auth_provider_object_t* provider = nullptr;
    push(passphraseStores(pool));
    svn_auth_get_username_prompt_provider(&provider, prompts->username, prompts->baton, retryLimit, pool);
    push(provider);
    svn_auth_get_ssl_client_cert_prompt_provider(&provider, prompts->certificateFile, prompts->baton, retryLimit, pool);
    push(provider);
    svn_auth_get_ssl_client_cert_pw_prompt_provider(&provider, prompts->certificatePassphrase, prompts->baton,
                                                    retryLimit, pool);
    push(provider);
}

/// Takes a choice of the user's `config` over, which Subversion leaves to each program to do.
svn_error_t* forbidUnless(const char* option, svn_auth_baton_t* baton, const char* parameter, apr_hash_t* configuration)
{
    auto* config =
        configuration == nullptr
            ? nullptr
            : static_cast<svn_config_t*>(apr_hash_get(configuration, SVN_CONFIG_CATEGORY_CONFIG, APR_HASH_KEY_STRING));
    svn_boolean_t allowed = TRUE;
    if (config != nullptr) {
        SVN_ERR(svn_config_get_bool(config, &allowed, SVN_CONFIG_SECTION_AUTH, option, TRUE));
    }
    svn_auth_set_parameter(baton, parameter, allowed ? nullptr : "");
    return SVN_NO_ERROR;
}

svn_error_t* setStoring(svn_auth_baton_t* baton, apr_hash_t* configuration,
                        const HSVNAuthenticationFunctions::Prompts* prompts)
{
    if (!setStorePrompts(baton, prompts)) {
        return SVN_NO_ERROR;
    }
    SVN_ERR(forbidUnless(SVN_CONFIG_OPTION_STORE_PASSWORDS, baton, SVN_AUTH_PARAM_DONT_STORE_PASSWORDS, configuration));
    if (svn_auth_get_parameter(baton, noStoringParameter) != nullptr) {
        return SVN_NO_ERROR;
    }
    return forbidUnless(SVN_CONFIG_OPTION_STORE_AUTH_CREDS, baton, SVN_AUTH_PARAM_NO_AUTH_CACHE, configuration);
}

svn_error_t* setDefaults(svn_auth_baton_t* baton, const HSVNAuthenticationFunctions::Authentication* choices,
                         apr_pool_t* pool)
{
    const char* directory = choices->configFolder;
    SVN_ERR(checkConfigurationFolder(&directory, pool));
    if (directory != nullptr) {
        svn_auth_set_parameter(baton, SVN_AUTH_PARAM_CONFIG_DIR, directory);
    }
    if (choices->username != nullptr) {
        svn_auth_set_parameter(baton, SVN_AUTH_PARAM_DEFAULT_USERNAME, choices->username);
    }
    if (choices->password != nullptr) {
        svn_auth_set_parameter(baton, SVN_AUTH_PARAM_DEFAULT_PASSWORD, choices->password);
    }
    if (choices->noAuthCache) {
        svn_auth_set_parameter(baton, noStoringParameter, "");
        svn_auth_set_parameter(baton, SVN_AUTH_PARAM_NO_AUTH_CACHE, "");
    }
    return SVN_NO_ERROR;
}

} // namespace

void fillAuthentication(HSVNBundleEntryPoints& table)
{
    table.client_get_simple_provider = simpleProvider;
    table.client_get_username_provider = svn_client_get_username_provider;
    table.client_get_ssl_server_trust_file_provider = svn_client_get_ssl_server_trust_file_provider;
    table.client_get_ssl_client_cert_file_provider = svn_client_get_ssl_client_cert_file_provider;
    table.auth_get_simple_prompt_provider = svn_auth_get_simple_prompt_provider;
    table.auth_get_ssl_server_trust_prompt_provider = svn_auth_get_ssl_server_trust_prompt_provider;
    table.auth_open = openAuthentication;
}

void fillAuthentication(HSVNAuthenticationFunctions& table)
{
    table.auth_add_providers = addProviders;
    table.auth_set_storing = setStoring;
    table.auth_set_defaults = setDefaults;
}

} // namespace HSVNAdapter
