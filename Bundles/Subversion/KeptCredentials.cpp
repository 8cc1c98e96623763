#include "KeptCredentials.h"

#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <algorithm>
#include <cstring>
#include <exception>
#include <mutex>
#include <new>
#include <string_view>
#include <vector>

namespace HSVNAdapter {
namespace {

constexpr const char* keptParameter = "hsvn:kept-credentials";

/// What is known of the credentials that a baton keeps for a kind and a realm.
struct Kept
{
    const char* fingerprint = nullptr; ///< of the certificate that a server showed last
    bool isUntried = false;            ///< given to a connection that has not come about
};

/// A baton's, in its own pool.
struct KeptCredentials
{
    apr_pool_t* pool;
    apr_hash_t* all; ///< `Kept` by kind and realm

    Kept& of(const char* kind, const char* realm, apr_pool_t* scratchPool) const
    {
        const char* key = apr_pstrcat(scratchPool, kind, ":", realm, nullptr);
        auto* kept = static_cast<Kept*>(apr_hash_get(all, key, APR_HASH_KEY_STRING));
        if (kept == nullptr) {
            kept = new (apr_palloc(pool, sizeof(Kept))) Kept;
            apr_hash_set(all, apr_pstrdup(pool, key), APR_HASH_KEY_STRING, kept);
        }
        return *kept;
    }
};

/// Which state, that a connection was given, stands for which credentials.
class Connections
{
  public:
    void add(const svn_auth_iterstate_t* state, Kept& kept, apr_pool_t* statesPool)
    {
        const std::lock_guard guard{_mutex};
        try {
            _given.push_back({state, &kept});
        } catch (const std::exception&) { // out of memory: asked again is better than never
            return;
        }
        kept.isUntried = true;
        apr_pool_cleanup_register(statesPool, state, &forget, apr_pool_cleanup_null);
    }
    /// Says that a server has taken what the state stands for.
    void accept(const svn_auth_iterstate_t* state)
    {
        const std::lock_guard guard{_mutex};
        for (const auto& given : _given) {
            if (given.state == state) { // others' records belong to other threads
                given.kept->isUntried = false;
            }
        }
    }

  private:
    struct Given
    {
        const svn_auth_iterstate_t* state;
        Kept* kept;
    };

    static apr_status_t forget(void* state);

    std::mutex _mutex;
    std::vector<Given> _given;
};

Connections& connections()
{
    static auto& all = *new Connections; // connections may outlive what the program ends with
    return all;
}

apr_status_t Connections::forget(void* state)
{
    const std::lock_guard guard{connections()._mutex};
    std::erase_if(connections()._given, [&](const Given& given) { return given.state == state; });
    return APR_SUCCESS;
}

bool isUsersCertificate(std::string_view kind)
{
    return kind == SVN_AUTH_CRED_SSL_CLIENT_CERT || kind == SVN_AUTH_CRED_SSL_CLIENT_CERT_PW;
}

/// Whether the server shows another certificate than the last time; this one is the last from now on.
bool showsOther(svn_auth_baton_t* baton, Kept& kept, apr_pool_t* pool)
{
    const auto* const shown = static_cast<const svn_auth_ssl_server_cert_info_t*>(
        svn_auth_get_parameter(baton, SVN_AUTH_PARAM_SSL_SERVER_CERT_INFO));
    if (shown == nullptr || shown->fingerprint == nullptr ||
        (kept.fingerprint != nullptr && std::strcmp(kept.fingerprint, shown->fingerprint) == 0))
    {
        return false;
    }
    kept.fingerprint = apr_pstrdup(pool, shown->fingerprint);
    return true;
}

} // namespace

void forgetDoubtfulCredentials(svn_auth_baton_t* baton, apr_pool_t* pool)
{
    auto* const kept = new (apr_palloc(pool, sizeof(KeptCredentials))) KeptCredentials{pool, apr_hash_make(pool)};
    svn_auth_set_parameter(baton, keptParameter, kept);
}

} // namespace HSVNAdapter

using namespace HSVNAdapter;

HSVN_STAND_IN(svn_error_t*, svn_auth_first_credentials)
(void** credentials, svn_auth_iterstate_t** state, const char* kind, const char* realm, svn_auth_baton_t* baton,
 apr_pool_t* pool)
{
    const auto* const all = static_cast<const KeptCredentials*>(svn_auth_get_parameter(baton, keptParameter));
    const bool isTrust = std::string_view{kind} == SVN_AUTH_CRED_SSL_SERVER_TRUST;
    if (all == nullptr || (!isTrust && !isUsersCertificate(kind))) {
        return HSVN_BEHIND(svn_auth_first_credentials)(credentials, state, kind, realm, baton, pool);
    }
    Kept& kept = all->of(kind, realm, pool);
    if (isTrust ? showsOther(baton, kept, all->pool) : kept.isUntried) {
        SVN_ERR(svn_auth_forget_credentials(baton, kind, realm, pool));
    }
    SVN_ERR(HSVN_BEHIND(svn_auth_first_credentials)(credentials, state, kind, realm, baton, pool));
    if (!isTrust && *credentials != nullptr) {
        connections().add(*state, kept, pool);
    }
    return SVN_NO_ERROR;
}

HSVN_STAND_IN(svn_error_t*, svn_auth_save_credentials)(svn_auth_iterstate_t* state, apr_pool_t* pool)
{
    connections().accept(state);
    return HSVN_BEHIND(svn_auth_save_credentials)(state, pool);
}

#else

void HSVNAdapter::forgetDoubtfulCredentials(svn_auth_baton_t*, apr_pool_t*)
{
    // The functions that ask cannot be stood in front of.
}

#endif
