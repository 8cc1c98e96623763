#pragma once

#include "HSVNClientDelegate.h"
#include "HSVNContext.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNReceiver.h"
#include "HSVNStoredCredentials.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class HSVNLogMessageDelegate;
struct HSVNClientSettings;

/// The context that operations are normally given: one Subversion line, the user's configuration and stored
/// credentials, and a delegate that answers what Subversion asks while an operation runs.
///
/// A client serves one thread at a time; `delegate` and `setDelegate` are guarded by its lock.
class HSVN_EXPORT HSVNClient : public HSVNContext
{
  public:
    /// A client of the loader's default bundle.
    ///
    /// @param delegate  who answers; may be nil; not kept alive
    static HSVNClientRef clientWithDelegate(const HSVNClientDelegateRef& delegate = nullptr);

    /// The same for a delegate that nobody else keeps: the client keeps it alive until it is given another one.
    ///
    /// @param delegate  not nil ("delegate != nil"); must not itself keep the client alive
    static HSVNClientRef clientOwningDelegate(HSVNClientDelegateRef delegate);

    /// A client of the loader's default bundle without a configuration and credentials, until `applySettings` reads
    /// them. The user's own area is not read before, and what keeps it from being read keeps no client from being made.
    ///
    /// @param delegate  as `clientWithDelegate`
    static HSVNClientRef clientForSettings(const HSVNClientDelegateRef& delegate = nullptr);

    /// A client of the loader's default bundle (`initWithDelegate:`).
    explicit HSVNClient(const HSVNClientDelegateRef& delegate = nullptr);
    /// A client of the given line (`initWithBundle:delegate:`).
    ///
    /// @param bundle  the line; nil means the loader's default bundle
    /// @throws HSVNException when the user's configuration cannot be read (svn_config_get_config)
    HSVNClient(const HSVNBundleRef& bundle, const HSVNClientDelegateRef& delegate);

    ~HSVNClient() override;

    std::string className() const override { return "HSVNClient"; }

    /// Changes the line: the Subversion context is made anew with the user's configuration and all callbacks. When that
    /// fails, the client is left without a bundle, and every operation on it fails.
    ///
    /// @throws HSVNException when the configuration cannot be read or the new line cannot be set up
    /// @throws HSVNGenericException while a call on the client is under way, also from that call's callbacks
    void setBundle(const HSVNBundleRef& bundle) override;

    /// Who answers; nil when there is none or when it is gone.
    HSVNClientDelegateRef delegate() const;
    /// Changes who answers, at any time; may be nil. The delegate is not kept alive; once it is gone, whatever asks for
    /// a log message fails, while a client that was given none commits with an empty message.
    void setDelegate(const HSVNClientDelegateRef& delegate);
    /// The same for a delegate that nobody else keeps; see `clientOwningDelegate`.
    ///
    /// @param delegate  not nil ("delegate != nil"); must not itself keep the client alive
    void setOwnedDelegate(HSVNClientDelegateRef delegate);

    /// Reads the user's configuration area again, as after the application changed it. Options that were set in memory
    /// are gone then; when it fails, the client keeps the configuration it had.
    ///
    /// @throws HSVNException when the configuration cannot be read (svn_config_get_config)
    /// @throws HSVNGenericException while a call on the client is under way, also from that call's callbacks
    void refreshConfiguration();

    /// Tells of the credentials that are stored in the client's configuration area; what is in the system's keyrings is
    /// told without its secret.
    ///
    /// @param receiver  not nil ("receiver != nil")
    /// Stands for svn_config_walk_auth_data; not offered by lines before 1.8.
    void storedCredentials(const HSVNStoredCredentialsChoices& choices,
                           const HSVNReceiver<const HSVNStoredCredential&>& receiver);
    /// The same, all at once.
    std::vector<HSVNStoredCredential> storedCredentials(const HSVNStoredCredentialsChoices& choices = {});
    /// Removes credentials from the configuration area; what is in the system's keyrings stays there.
    ///
    /// @param isUnwanted  answers which are to go, without their secrets; not nil ("isUnwanted != nil")
    /// @return how many are gone
    /// Stands for svn_config_walk_auth_data; not offered by lines before 1.8.
    std::size_t removeStoredCredentials(const std::function<bool(const HSVNStoredCredential&)>& isUnwanted);
    /// Reads the configuration and opens the stores of credentials anew by the settings, which hold until the bundle
    /// changes. `refreshConfiguration` reads the user's own area again, without the options.
    ///
    /// @throws HSVNException for a configuration that is malformed, and once all the rest is done for an area that the
    ///         system does not let the client read: the client works then, without a configuration.
    /// @throws HSVNUnsupportedFeatureException for settings that the line does not offer
    /// @throws HSVNGenericException while a call on the client is under way, also from that call's callbacks
    /// Stands for svn_config_ensure, svn_config_get_config, svn_auth_open and svn_cmdline_create_auth_baton2.
    void applySettings(const HSVNClientSettings& settings);

    /// Hands a notification to the delegate, when it answers `notify`.
    ///
    /// @throws an assertion "Invalid parameter not satisfying: notification != nil"
    void notify(const HSVNNotificationRef& notification) override;

    /// The delegate's answer to `queryContinue`; true when it answers none.
    bool queryContinue();

  protected:
    void beginOperation() override;

  private:
    friend struct HSVNClientInternals;

    /// What gives a client on a new line its configuration.
    using Configuring = void (HSVNClient::*)();

    HSVNClient(const HSVNBundleRef& bundle, const HSVNClientDelegateRef& delegate, Configuring configure);

    void setUp(const HSVNBundleRef& bundle, Configuring configure);
    void clearConfiguration();
    void setupConfiguration();
    void ignoreIcons();
    void setupAuthentication();
    void setupLogCallback();
    void setupNotificationCallback();
    void setupCancellationCallback();

    std::unique_ptr<HSVNPool> _configurationPool; // in the context's pool; owns what ctx()->config points to
    std::weak_ptr<HSVNClientDelegate> _delegate;
    HSVNClientDelegateRef _ownedDelegate;                       // when the client keeps it alive
    bool _hasDelegate = false;                                  // one was given, even if it is gone
    std::shared_ptr<HSVNLogMessageDelegate> _installedDelegate; // the library's own, left in place
    bool _respondsToQueryContinue = false;
    std::string _notifiedPath; // of the last notification, for what must not be stopped now
};
