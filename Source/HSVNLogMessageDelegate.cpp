#include "HSVNLogMessageDelegate.h"

#include <utility>

HSVNLogMessageDelegateRef HSVNLogMessageDelegate::delegateWithMessage(std::string message,
                                                                      const HSVNClientDelegateRef& nextDelegate)
{
    return std::make_shared<HSVNLogMessageDelegate>(std::move(message), nextDelegate);
}

HSVNLogMessageDelegate::HSVNLogMessageDelegate(std::string message, const HSVNClientDelegateRef& nextDelegate)
    : _message{std::move(message)}, _nextDelegate{nextDelegate}
{
}

HSVNClientDelegateRef HSVNLogMessageDelegate::nextFor(HSVNClientDelegateMessage message) const
{
    auto next = _nextDelegate.lock();
    return next && next->respondsTo(message) ? next : nullptr;
}

bool HSVNLogMessageDelegate::respondsTo(HSVNClientDelegateMessage message) const
{
    return message == HSVNClientDelegateMessage::promptForLogMessage || nextFor(message);
}

bool HSVNLogMessageDelegate::promptForLogMessage(HSVNContext&, std::string& message,
                                                 const std::vector<HSVNCommitItemRef>&)
{
    message = _message;
    return true;
}

bool HSVNLogMessageDelegate::promptForCredentials(HSVNContext& context, const HSVNCredentialsRef& credentials,
                                                  const std::optional<std::string>& realm, bool& mayStore)
{
    const auto next = nextFor(HSVNClientDelegateMessage::promptForCredentials);
    return next ? next->promptForCredentials(context, credentials, realm, mayStore)
                : HSVNClientDelegate::promptForCredentials(context, credentials, realm, mayStore);
}

bool HSVNLogMessageDelegate::promptForAuthenticationErrors(HSVNContext& context, std::uint32_t failures,
                                                           const HSVNCertificateRef& certificate,
                                                           const std::optional<std::string>& realm, bool mayStore,
                                                           bool& permanent)
{
    const auto next = nextFor(HSVNClientDelegateMessage::promptForAuthenticationErrors);
    return next ? next->promptForAuthenticationErrors(context, failures, certificate, realm, mayStore, permanent)
                : HSVNClientDelegate::promptForAuthenticationErrors(context, failures, certificate, realm, mayStore,
                                                                    permanent);
}

void HSVNLogMessageDelegate::notify(HSVNContext& context, const HSVNNotificationRef& notification)
{
    const auto next = nextFor(HSVNClientDelegateMessage::notify);
    next ? next->notify(context, notification) : HSVNClientDelegate::notify(context, notification);
}

bool HSVNLogMessageDelegate::queryContinue(HSVNContext& context)
{
    const auto next = nextFor(HSVNClientDelegateMessage::queryContinue);
    return next ? next->queryContinue(context) : HSVNClientDelegate::queryContinue(context);
}

bool HSVNLogMessageDelegate::promptForUsername(HSVNContext& context, std::string& username,
                                               const std::optional<std::string>& realm, bool& mayStore)
{
    const auto next = nextFor(HSVNClientDelegateMessage::promptForUsername);
    return next ? next->promptForUsername(context, username, realm, mayStore)
                : HSVNClientDelegate::promptForUsername(context, username, realm, mayStore);
}

bool HSVNLogMessageDelegate::promptForCertificateFile(HSVNContext& context, std::string& file,
                                                      const std::optional<std::string>& realm, bool& mayStore)
{
    const auto next = nextFor(HSVNClientDelegateMessage::promptForCertificateFile);
    return next ? next->promptForCertificateFile(context, file, realm, mayStore)
                : HSVNClientDelegate::promptForCertificateFile(context, file, realm, mayStore);
}

bool HSVNLogMessageDelegate::promptForCertificatePassphrase(HSVNContext& context, std::string& passphrase,
                                                            const std::optional<std::string>& realm, bool& mayStore)
{
    const auto next = nextFor(HSVNClientDelegateMessage::promptForCertificatePassphrase);
    return next ? next->promptForCertificatePassphrase(context, passphrase, realm, mayStore)
                : HSVNClientDelegate::promptForCertificatePassphrase(context, passphrase, realm, mayStore);
}

bool HSVNLogMessageDelegate::promptForPlaintextStorage(HSVNContext& context, HSVNStoredSecret secret,
                                                       const std::optional<std::string>& realm)
{
    const auto next = nextFor(HSVNClientDelegateMessage::promptForPlaintextStorage);
    return next ? next->promptForPlaintextStorage(context, secret, realm)
                : HSVNClientDelegate::promptForPlaintextStorage(context, secret, realm);
}
