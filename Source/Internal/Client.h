#pragma once

#include "HSVNClient.h"
#include "HSVNLogMessageDelegate.h"
#include "Internal/BundleExtensions.h"
#include "Internal/Subversion.h"

/// The client's parts that other operations of the library use, and the callbacks that it gives Subversion, each with
/// the client as baton. No exception leaves a callback.
struct HSVNClientInternals
{
    /// Makes a log-message delegate the client's delegate and keeps it alive until another delegate is set.
    static void installLogMessageDelegate(HSVNClient& client, const HSVNLogMessageDelegateRef& delegate);
    /// Whether the client was given a delegate that is gone.
    static bool hasLostDelegate(const HSVNClient& client);
    /// Reads a configuration area (null: the user's) and puts it in the place of the client's configuration, which
    /// stays when that fails. Needs the client's bundle to be current.
    static svn_error_t* readConfiguration(HSVNClient& client, const char* folder);
    /// Leaves the client with a configuration without any category.
    static void clearConfiguration(HSVNClient& client);

    /// Adds what the bundle offers beyond the providers that every line has.
    ///
    /// @return the client's prompts, in its pool
    static const HSVNAuthenticationFunctions::Prompts* addFurtherProviders(HSVNClient& client,
                                                                           apr_array_header_t* providers);
    /// Lets the client's authentication store what its configuration allows.
    ///
    /// @param prompts  of an authentication just opened; null when the configuration was read again
    static void obeyStoring(HSVNClient& client, const HSVNAuthenticationFunctions::Prompts* prompts);

    static svn_error_t* promptForCredentials(svn_auth_cred_simple_t** answer, void* baton, const char* realm,
                                             const char* username, svn_boolean_t maySave, apr_pool_t* pool) noexcept;
    static svn_error_t* promptForCertificateTrust(svn_auth_cred_ssl_server_trust_t** answer, void* baton,
                                                  const char* realm, apr_uint32_t failures,
                                                  const svn_auth_ssl_server_cert_info_t* information,
                                                  svn_boolean_t maySave, apr_pool_t* pool) noexcept;
    static svn_error_t* promptForUsername(svn_auth_cred_username_t** answer, void* baton, const char* realm,
                                          svn_boolean_t maySave, apr_pool_t* pool) noexcept;
    static svn_error_t* promptForCertificateFile(svn_auth_cred_ssl_client_cert_t** answer, void* baton,
                                                 const char* realm, svn_boolean_t maySave, apr_pool_t* pool) noexcept;
    static svn_error_t* promptForCertificatePassphrase(svn_auth_cred_ssl_client_cert_pw_t** answer, void* baton,
                                                       const char* realm, svn_boolean_t maySave,
                                                       apr_pool_t* pool) noexcept;
    static svn_error_t* promptForPlaintextStorage(svn_boolean_t* mayStore, svn_boolean_t isPassphrase,
                                                  const char* realm, void* baton, apr_pool_t* pool) noexcept;
    static svn_error_t* promptForLogMessage(const char** message, const char** temporaryFile,
                                            const apr_array_header_t* items, void* baton, apr_pool_t* pool) noexcept;
    static void notify(void* baton, const svn_wc_notify_t* record, apr_pool_t* pool) noexcept;
    static svn_error_t* queryContinue(void* baton) noexcept;

  private:
    /// Whether nothing asks for a stop: neither the delegate nor an exception that a callback kept.
    static bool goesOn(HSVNClient& client);
    /// Whether a stop has to wait. Subversion leaves a working copy locked when it is stopped amid its queue of work.
    /// The bundle sees to commits whose revision is there.
    static bool mustFinishFirst(const HSVNClient& client);
    /// The client's former configuration goes with its pool.
    static void replaceConfiguration(HSVNClient& client, std::unique_ptr<HSVNPool> pool, apr_hash_t* configuration);
};
