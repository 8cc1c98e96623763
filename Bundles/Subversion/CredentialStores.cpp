#include "CredentialStores.h"

#include <cstring>

namespace HSVNAdapter {
namespace {

using Prompts = HSVNAuthenticationFunctions::Prompts;

/// The baton's parameter that holds the prompts.
constexpr const char* promptsParameter = "hsvn:prompts";

/// The stores of one kind of secret. They are found out when they are first asked: only then the baton knows the user's
/// configuration.
struct Stores
{
    const char* kind;
    svn_boolean_t arePassphrases;
    apr_pool_t* pool;
    apr_array_header_t* providers; ///< svn_auth_provider_object_t*; null until the first question
    apr_hash_t* parameters;        ///< of the question that is being answered
};

/// Which store of the stores answered, and how far it is.
struct Place
{
    int index;
    void* iteration;
};

svn_auth_provider_object_t* storeAt(const Stores& stores, int index)
{
    return APR_ARRAY_IDX(stores.providers, index, svn_auth_provider_object_t*);
}

/// Whether the secret may be stored unencrypted; no when nobody answers.
svn_error_t* askForPlaintext(svn_boolean_t* mayStore, const char* realm, void* baton, apr_pool_t* pool)
{
    const auto* stores = static_cast<const Stores*>(baton);
    *mayStore = FALSE;
    const auto* prompts =
        static_cast<const Prompts*>(apr_hash_get(stores->parameters, promptsParameter, APR_HASH_KEY_STRING));
    return prompts == nullptr ? SVN_NO_ERROR
                              : prompts->plaintext(mayStore, stores->arePassphrases, realm, prompts->baton, pool);
}

/// Subversion's own files.
svn_auth_provider_object_t* filesOfSubversion(Stores* stores)
{
    svn_auth_provider_object_t* provider = nullptr;
#if HSVN_LINE_MINOR >= 6
    if (stores->arePassphrases) {
        svn_auth_get_ssl_client_cert_pw_file_provider2(&provider, askForPlaintext, stores, stores->pool);
    } else {
        svn_auth_get_simple_provider2(&provider, askForPlaintext, stores, stores->pool);
    }
#else
    if (stores->arePassphrases) {
        svn_client_get_ssl_client_cert_pw_file_provider(&provider, stores->pool);
    } else {
        svn_client_get_simple_provider(&provider, stores->pool);
    }
#endif
    return provider;
}

svn_error_t* findStores(Stores* stores)
{
    auto* found = apr_array_make(stores->pool, 4, sizeof(svn_auth_provider_object_t*));
#if HSVN_LINE_MINOR >= 6
    auto* config = static_cast<svn_config_t*>(
        apr_hash_get(stores->parameters, SVN_AUTH_PARAM_CONFIG_CATEGORY_CONFIG, APR_HASH_KEY_STRING));
    apr_array_header_t* platform = nullptr;
    SVN_ERR(svn_auth_get_platform_specific_client_providers(&platform, config, stores->pool));
    for (int index = 0; index < platform->nelts; ++index) {
        auto* provider = APR_ARRAY_IDX(platform, index, svn_auth_provider_object_t*);
        if (std::strcmp(provider->vtable->cred_kind, stores->kind) == 0) {
            APR_ARRAY_PUSH(found, svn_auth_provider_object_t*) = provider;
        }
    }
#endif
    APR_ARRAY_PUSH(found, svn_auth_provider_object_t*) = filesOfSubversion(stores);
    stores->providers = found;
    return SVN_NO_ERROR;
}

/// The stores behind a provider's baton, ready for a question.
svn_error_t* prepare(Stores** stores, void* baton, apr_hash_t* parameters)
{
    *stores = static_cast<Stores*>(baton);
    (*stores)->parameters = parameters;
    return (*stores)->providers == nullptr ? findStores(*stores) : SVN_NO_ERROR;
}

/// The first answer of the stores from the place on.
svn_error_t* firstFrom(Place* place, void** credentials, const Stores& stores, const char* realm, apr_pool_t* pool)
{
    for (*credentials = nullptr; place->index < stores.providers->nelts; ++place->index) {
        const auto* store = storeAt(stores, place->index);
        place->iteration = nullptr;
        SVN_ERR(store->vtable->first_credentials(credentials, &place->iteration, store->provider_baton,
                                                 stores.parameters, realm, pool));
        if (*credentials != nullptr) {
            return SVN_NO_ERROR;
        }
    }
    return SVN_NO_ERROR;
}

svn_error_t* firstCredentials(void** credentials, void** iteration, void* baton, apr_hash_t* parameters,
                              const char* realm, apr_pool_t* pool)
{
    Stores* stores = nullptr;
    SVN_ERR(prepare(&stores, baton, parameters));
    auto* place = static_cast<Place*>(apr_pcalloc(pool, sizeof(Place)));
    *iteration = place;
    return firstFrom(place, credentials, *stores, realm, pool);
}

svn_error_t* nextCredentials(void** credentials, void* iteration, void* baton, apr_hash_t* parameters,
                             const char* realm, apr_pool_t* pool)
{
    Stores* stores = nullptr;
    SVN_ERR(prepare(&stores, baton, parameters));
    auto* place = static_cast<Place*>(iteration);
    *credentials = nullptr;
    if (place->index < stores->providers->nelts) {
        const auto* store = storeAt(*stores, place->index);
        if (store->vtable->next_credentials != nullptr) {
            SVN_ERR(store->vtable->next_credentials(credentials, place->iteration, store->provider_baton, parameters,
                                                    realm, pool));
        }
    }
    if (*credentials != nullptr) {
        return SVN_NO_ERROR;
    }
    ++place->index;
    return firstFrom(place, credentials, *stores, realm, pool);
}

#if HSVN_LINE_MINOR < 6
/// These lines' files take a password without asking.
svn_error_t* allowsFiles(svn_boolean_t* allowed, Stores* stores, const char* realm, apr_pool_t* pool)
{
    *allowed = TRUE;
    if (!stores->arePassphrases &&
        apr_hash_get(stores->parameters, SVN_AUTH_PARAM_DONT_STORE_PASSWORDS, APR_HASH_KEY_STRING) == nullptr)
    {
        return askForPlaintext(allowed, realm, stores, pool);
    }
    return SVN_NO_ERROR;
}
#endif

svn_error_t* saveCredentials(svn_boolean_t* saved, void* credentials, void* baton, apr_hash_t* parameters,
                             const char* realm, apr_pool_t* pool)
{
    *saved = FALSE;
    Stores* stores = nullptr;
    SVN_ERR(prepare(&stores, baton, parameters));
#if HSVN_LINE_MINOR < 6
    svn_boolean_t allowed = FALSE;
    SVN_ERR(allowsFiles(&allowed, stores, realm, pool));
    if (!allowed) {
        return SVN_NO_ERROR;
    }
#endif
    for (int index = 0; index < stores->providers->nelts && !*saved; ++index) {
        const auto* store = storeAt(*stores, index);
        if (store->vtable->save_credentials != nullptr) {
            SVN_ERR(
                store->vtable->save_credentials(saved, credentials, store->provider_baton, parameters, realm, pool));
        }
    }
    return SVN_NO_ERROR;
}

constexpr svn_auth_provider_t passwordFunctions{SVN_AUTH_CRED_SIMPLE, firstCredentials, nextCredentials,
                                                saveCredentials};
constexpr svn_auth_provider_t passphraseFunctions{SVN_AUTH_CRED_SSL_CLIENT_CERT_PW, firstCredentials, nextCredentials,
                                                  saveCredentials};

svn_auth_provider_object_t* makeStores(const svn_auth_provider_t& functions, svn_boolean_t arePassphrases,
                                       apr_pool_t* pool)
{
    auto* stores = static_cast<Stores*>(apr_palloc(pool, sizeof(Stores)));
    *stores = {functions.cred_kind, arePassphrases, pool, nullptr, nullptr};
    auto* provider = static_cast<svn_auth_provider_object_t*>(apr_palloc(pool, sizeof(svn_auth_provider_object_t)));
    *provider = {&functions, stores};
    return provider;
}

} // namespace

svn_auth_provider_object_t* passwordStores(apr_pool_t* pool) { return makeStores(passwordFunctions, FALSE, pool); }

svn_auth_provider_object_t* passphraseStores(apr_pool_t* pool) { return makeStores(passphraseFunctions, TRUE, pool); }

bool setStorePrompts(svn_auth_baton_t* baton, const HSVNAuthenticationFunctions::Prompts* prompts)
{
    if (prompts != nullptr) {
        svn_auth_set_parameter(baton, promptsParameter, prompts);
    }
    return svn_auth_get_parameter(baton, promptsParameter) != nullptr;
}

} // namespace HSVNAdapter
