#include "HSVNClientDelegate.h"

#include "HSVNPlatformException.h"

namespace {

[[noreturn]] void failUnanswered(const char* message)
{
    throw HSVNInvalidArgumentException(std::string{"the delegate does not answer "} + message);
}

} // namespace

HSVNClientDelegate::~HSVNClientDelegate() = default;

bool HSVNClientDelegate::respondsTo(HSVNClientDelegateMessage) const { return false; }

bool HSVNClientDelegate::promptForCredentials(HSVNContext&, const HSVNCredentialsRef&,
                                              const std::optional<std::string>&, bool&)
{
    failUnanswered("context:promptForCredentials:fromRealm:mayStore:");
}

bool HSVNClientDelegate::promptForAuthenticationErrors(HSVNContext&, std::uint32_t, const HSVNCertificateRef&,
                                                       const std::optional<std::string>&, bool, bool&)
{
    failUnanswered("context:promptForAuthenticationErrors:inCertificate:fromRealm:mayStore:permanent:");
}

bool HSVNClientDelegate::promptForLogMessage(HSVNContext&, std::string&, const std::vector<HSVNCommitItemRef>&)
{
    failUnanswered("context:promptForLogMessage:forCommitItems:");
}

void HSVNClientDelegate::notify(HSVNContext&, const HSVNNotificationRef&) { failUnanswered("context:notify:"); }

bool HSVNClientDelegate::queryContinue(HSVNContext&) { failUnanswered("context:queryContinue:"); }

bool HSVNClientDelegate::promptForUsername(HSVNContext&, std::string&, const std::optional<std::string>&, bool&)
{
    failUnanswered("context:promptForUsername:fromRealm:mayStore:");
}

bool HSVNClientDelegate::promptForCertificateFile(HSVNContext&, std::string&, const std::optional<std::string>&, bool&)
{
    failUnanswered("context:promptForCertificateFile:fromRealm:mayStore:");
}

bool HSVNClientDelegate::promptForCertificatePassphrase(HSVNContext&, std::string&, const std::optional<std::string>&,
                                                        bool&)
{
    failUnanswered("context:promptForCertificatePassphrase:fromRealm:mayStore:");
}

bool HSVNClientDelegate::promptForPlaintextStorage(HSVNContext&, HSVNStoredSecret, const std::optional<std::string>&)
{
    failUnanswered("context:promptForPlaintextStorage:fromRealm:");
}
