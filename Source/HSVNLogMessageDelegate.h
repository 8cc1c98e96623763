#pragma once

#include "HSVNClientDelegate.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNObject.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class HSVNLogMessageDelegate;
using HSVNLogMessageDelegateRef = std::shared_ptr<HSVNLogMessageDelegate>;

/// A substitute delegate that answers every question for a log message with one text, so that one answer serves several
/// commits, and passes every other message on to the next delegate.
class HSVN_EXPORT HSVNLogMessageDelegate : public HSVNObject, public HSVNClientDelegate
{
  public:
    /// @param message       the log message, UTF-8
    /// @param nextDelegate  who answers everything else; may be nil; not kept alive
    static HSVNLogMessageDelegateRef delegateWithMessage(std::string message,
                                                         const HSVNClientDelegateRef& nextDelegate);
    /// The same as an object of its own.
    HSVNLogMessageDelegate(std::string message, const HSVNClientDelegateRef& nextDelegate);

    std::string className() const override { return "HSVNLogMessageDelegate"; }

    /// Log messages always; any other message when the next delegate answers it.
    bool respondsTo(HSVNClientDelegateMessage message) const override;
    /// Fills in the stored message and answers true, whatever the items.
    bool promptForLogMessage(HSVNContext& context, std::string& message,
                             const std::vector<HSVNCommitItemRef>& items) override;

    // The rest is the next delegate's to answer, or fails.
    bool promptForCredentials(HSVNContext& context, const HSVNCredentialsRef& credentials,
                              const std::optional<std::string>& realm, bool& mayStore) override;
    bool promptForAuthenticationErrors(HSVNContext& context, std::uint32_t failures,
                                       const HSVNCertificateRef& certificate, const std::optional<std::string>& realm,
                                       bool mayStore, bool& permanent) override;
    void notify(HSVNContext& context, const HSVNNotificationRef& notification) override;
    bool queryContinue(HSVNContext& context) override;
    bool promptForUsername(HSVNContext& context, std::string& username, const std::optional<std::string>& realm,
                           bool& mayStore) override;
    bool promptForCertificateFile(HSVNContext& context, std::string& file, const std::optional<std::string>& realm,
                                  bool& mayStore) override;
    bool promptForCertificatePassphrase(HSVNContext& context, std::string& passphrase,
                                        const std::optional<std::string>& realm, bool& mayStore) override;
    bool promptForPlaintextStorage(HSVNContext& context, HSVNStoredSecret secret,
                                   const std::optional<std::string>& realm) override;

  private:
    HSVNClientDelegateRef nextFor(HSVNClientDelegateMessage message) const;

    std::string _message;
    std::weak_ptr<HSVNClientDelegate> _nextDelegate;
};
