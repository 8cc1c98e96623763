#include "HSVNClient.h"
#include "HSVNException.h"
#include "Internal/Client.h"
#include "Internal/ContextUse.h"
#include "Internal/Pool.h"

namespace {

/// How often Subversion asks again after wrong credentials.
constexpr int CredentialsRetryLimit = 2;

/// Files whose name is "Icon" and one control character.
constexpr const char* IconPattern = "Icon[\x01-\x1f]";

void append(const HSVNBundleEntryPoints& table, apr_array_header_t* providers, svn_auth_provider_object_t* provider)
{
    *static_cast<svn_auth_provider_object_t**>(table.apr_array_push(providers)) = provider;
}

} // namespace

const HSVNAuthenticationFunctions::Prompts* HSVNClientInternals::addFurtherProviders(HSVNClient& client,
                                                                                     apr_array_header_t* providers)
{
    auto* prompts = static_cast<HSVNAuthenticationFunctions::Prompts*>(
        HSVNCurrentEntryPoints().apr_palloc(client.pool(), sizeof(HSVNAuthenticationFunctions::Prompts)));
    *prompts = {&promptForCertificateFile, &promptForCertificatePassphrase, &promptForUsername,
                &promptForPlaintextStorage, &client};
    const auto add =
        HSVNExtensionOrNull(client.bundle()->extensions(), &HSVNAuthenticationFunctions::auth_add_providers);
    if (add) {
        add(providers, prompts, client.pool());
    }
    return prompts;
}

void HSVNClientInternals::obeyStoring(HSVNClient& client, const HSVNAuthenticationFunctions::Prompts* prompts)
{
    const auto set = HSVNExtensionOrNull(client.bundle()->extensions(), &HSVNAuthenticationFunctions::auth_set_storing);
    svn_error_t* const error = set ? set(client.ctx()->auth_baton, client.ctx()->config, prompts) : nullptr;
    if (error) {
        HSVNException::exceptionWithError(error)->raise();
    }
}

void HSVNClient::setBundle(const HSVNBundleRef& bundle) { setUp(bundle, &HSVNClient::setupConfiguration); }

void HSVNClient::setUp(const HSVNBundleRef& bundle, Configuring configure)
{
    const HSVNContextUse use{*this};
    use.requireOutermost("bundle");
    _configurationPool.reset();
    changeBundle(bundle);
    if (!bundle) {
        return;
    }
    const HSVNBundleScope current{bundle};
    try {
        (this->*configure)();
        setupAuthentication();
        setupLogCallback();
        setupNotificationCallback();
        setupCancellationCallback();
    } catch (...) {
        // Half set up, a client would commit without asking anybody for a message or a name.
        _configurationPool.reset();
        changeBundle(nullptr);
        throw;
    }
}

void HSVNClient::refreshConfiguration()
{
    const HSVNContextUse use{*this};
    use.requireOutermost("configuration");
    const HSVNBundleScope current{bundle()};
    setupConfiguration();
    HSVNClientInternals::obeyStoring(*this, nullptr);
}

void HSVNClient::clearConfiguration() { HSVNClientInternals::clearConfiguration(*this); }

void HSVNClient::setupConfiguration()
{
    if (svn_error_t* error = HSVNClientInternals::readConfiguration(*this, nullptr)) {
        HSVNException::exceptionWithError(error)->raise();
    }
    ignoreIcons();
}

void HSVNClient::ignoreIcons()
{
    std::string patterns = globalIgnoreString().value_or("");
    patterns += patterns.empty() ? "" : " ";
    setOption(patterns + IconPattern, HSVNConfigOptionGlobalIgnores, HSVNConfigCategoryConfig,
              HSVNConfigSectionMiscellany);
}

void HSVNClient::setupAuthentication()
{
    const HSVNBundleEntryPoints& table = HSVNCurrentEntryPoints();
    apr_array_header_t* providers = table.apr_array_make(pool(), 12, sizeof(svn_auth_provider_object_t*));
    svn_auth_provider_object_t* provider = nullptr;
    for (auto* const makeStored :
         {table.client_get_simple_provider, table.client_get_username_provider,
          table.client_get_ssl_server_trust_file_provider, table.client_get_ssl_client_cert_file_provider})
    {
        makeStored(&provider, pool());
        append(table, providers, provider);
    }
    table.auth_get_ssl_server_trust_prompt_provider(&provider, &HSVNClientInternals::promptForCertificateTrust, this,
                                                    pool());
    append(table, providers, provider);
    table.auth_get_simple_prompt_provider(&provider, &HSVNClientInternals::promptForCredentials, this,
                                          CredentialsRetryLimit, pool());
    append(table, providers, provider);
    const auto* prompts = HSVNClientInternals::addFurtherProviders(*this, providers);
    table.auth_open(&ctx()->auth_baton, providers, pool());
    HSVNClientInternals::obeyStoring(*this, prompts);
}

void HSVNClient::setupLogCallback()
{
    ctx()->log_msg_func2 = &HSVNClientInternals::promptForLogMessage;
    ctx()->log_msg_baton2 = this;
}

void HSVNClient::setupNotificationCallback()
{
    ctx()->notify_func2 = &HSVNClientInternals::notify;
    ctx()->notify_baton2 = this;
}

void HSVNClient::setupCancellationCallback()
{
    ctx()->cancel_func = &HSVNClientInternals::queryContinue;
    ctx()->cancel_baton = this;
}
