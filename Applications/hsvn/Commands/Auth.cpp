#include "CommandLine/NativeText.h"
#include "CommandLine/Session.h"
#include "CommandLine/Subcommands.h"
#include "CommandLine/TextFiles.h"
#include "Output/ErrorOutput.h"
#include "Output/Output.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fmt/format.h>

namespace {

// The names under which Subversion stores a credential's values.
constexpr const char* certificateName = "ascii_cert";
constexpr const char* failuresName = "failures";

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char letter) {
        return static_cast<char>(letter < 0x80 ? std::tolower(letter) : letter);
    });
    return text;
}

bool contains(const std::string& text, const std::string& pattern)
{
    return HSVNString::matchesPatternInArray(text, {"*" + pattern + "*"});
}

/// Fingerprints and hosts are looked for in either case.
bool matches(const HSVNStoredCertificate& certificate, const std::string& pattern)
{
    const std::string inLowerCase = lowerCase(pattern);
    return contains(certificate.subject, pattern) || contains(certificate.issuer, pattern) ||
           contains(lowerCase(certificate.fingerprint), inLowerCase) ||
           std::any_of(certificate.hostnames.begin(), certificate.hostnames.end(),
                       [&](const std::string& host) { return contains(lowerCase(host), inLowerCase); });
}

/// Whether anything but the secrets has the pattern in it.
bool matches(const HSVNStoredCredential& credential, const std::string& pattern)
{
    if (contains(credential.kind, pattern) || contains(credential.realm, pattern)) {
        return true;
    }
    return std::any_of(credential.values.begin(), credential.values.end(), [&](const auto& value) {
        if (value.first == "password" || value.first == "passphrase") {
            return false;
        }
        return value.first == certificateName ? credential.certificate && matches(*credential.certificate, pattern)
                                              : contains(value.second, pattern);
    });
}

std::string textOfCertificate(const HSVNStoredCertificate& certificate)
{
    std::string text =
        fmt::format("Subject: {}\nValid from: {}\nValid until: {}\nIssuer: {}\nFingerprint: {}\n", certificate.subject,
                    certificate.validFrom, certificate.validTo, certificate.issuer, certificate.fingerprint);
    if (!certificate.hostnames.empty()) {
        text += fmt::format("Hostnames: {}\n", fmt::join(certificate.hostnames, ", "));
    }
    return text;
}

/// What of a certificate was trusted all the same.
std::string textOfFailures(const std::string& number)
{
    constexpr std::array reasons{
        std::pair{HSVNCertificateFailureNotYetValid, "The certificate is not yet valid."},
        std::pair{HSVNCertificateFailureExpired, "The certificate has expired."},
        std::pair{HSVNCertificateFailureHostnameMismatch,
                  "The certificate's Common Name (hostname) does not match the remote hostname."},
        std::pair{HSVNCertificateFailureUnknownAuthority, "The certificate issuer is unknown."},
        std::pair{HSVNCertificateFailureOther, "Unknown verification failure."}};
    const auto failures = static_cast<std::uint32_t>(numberOf(number));
    std::string text;
    for (const auto& [failure, reason] : reasons) {
        if ((failures & failure) != 0) {
            text += fmt::format("  {}\n", reason);
        }
    }
    return text.empty() ? text : "Automatic certificate validity check failed because:\n" + text;
}

/// One run of `auth`.
class AuthRun
{
  public:
    explicit AuthRun(Session& session) : _session{session} {}

    void run()
    {
        for (const auto& argument : _session.arguments) {
            _patterns.push_back(NativeText::toUTF8(argument));
        }
        const auto& client = _session.client();
        _folder = HSVNReadSubversionDetails(_session.options.client.configurationDirectory, false, client)
                      .configurationFolder.value_or("");
        if (_session.options.remove) {
            remove(*client);
        } else {
            list(*client);
        }
    }

  private:
    void remove(HSVNClient& client) const
    {
        if (_patterns.empty()) {
            fail(InsufficientArguments, "Not enough arguments provided");
        }
        const auto count = client.removeStoredCredentials([&](const HSVNStoredCredential& credential) {
            if (!isWanted(credential)) {
                return false;
            }
            Output::write(fmt::format("Deleting {} credential for realm '{}'\n", credential.kind, credential.realm));
            return true;
        });
        requireMatches(count);
        Output::write(fmt::format("Deleted {} matching {} from '{}'\n", count, noun(count), _folder));
    }

    void list(HSVNClient& client) const
    {
        std::size_t count = 0;
        client.storedCredentials({.secrets = _session.options.showPasswords},
                                 [&](const HSVNStoredCredential& credential) {
                                     if (isWanted(credential)) {
                                         ++count;
                                         print(credential);
                                     }
                                 });
        if (_patterns.empty() && count == 0) {
            Output::write(fmt::format("Credentials cache in '{}' is empty\n", _folder));
            return;
        }
        requireMatches(count);
        Output::write(fmt::format("Credentials cache in '{}' contains {} {}{}\n", _folder, count,
                                  _patterns.empty() ? "" : "matching ", noun(count)));
    }

    bool isWanted(const HSVNStoredCredential& credential) const
    {
        return std::all_of(_patterns.begin(), _patterns.end(),
                           [&](const std::string& pattern) { return matches(credential, pattern); });
    }

    void requireMatches(std::size_t count) const
    {
        if (count == 0) {
            fail(IllegalTarget, fmt::format("Credentials cache in '{}' contains no matching credentials", _folder));
        }
    }

    static const char* noun(std::size_t count) { return count == 1 ? "credential" : "credentials"; }

    void print(const HSVNStoredCredential& credential) const
    {
        Output::write(fmt::format("{}Credential kind: {}\nAuthentication realm: {}\n", Output::separator,
                                  credential.kind, credential.realm));
        for (const auto& [name, value] : credential.values) {
            if (value != credential.realm) { // which was told above
                printValue(credential, name, value);
            }
        }
        Output::write("\n");
    }

    void printValue(const HSVNStoredCredential& credential, const std::string& name, const std::string& value) const
    {
        if (name == certificateName) {
            if (credential.certificate) {
                Output::write(textOfCertificate(*credential.certificate));
            } else if (credential.certificateError) {
                printWarning(*credential.certificateError);
            }
            return;
        }
        if (name == failuresName) {
            Output::write(textOfFailures(value));
            return;
        }
        constexpr std::array headings{std::pair{"password", "Password"}, std::pair{"passphrase", "Passphrase"},
                                      std::pair{"passtype", "Password cache"}, std::pair{"username", "Username"}};
        const auto* const heading = std::find_if(headings.begin(), headings.end(),
                                                 [&](const auto& candidate) { return name == candidate.first; });
        const bool isHidden = (name == "password" || name == "passphrase") && !_session.options.showPasswords;
        Output::write(fmt::format("{}: {}\n", heading == headings.end() ? name : heading->second,
                                  isHidden ? "[not shown]" : value));
    }

    Session& _session;
    std::vector<std::string> _patterns;
    std::string _folder;
};

void runAuth(Session& session) { AuthRun{session}.run(); }

} // namespace

const Subcommand& authSubcommand()
{
    static const Subcommand subcommand{"auth",
                                       {},
                                       "List the credentials that are stored, or remove some.",
                                       "1. auth [PATTERN...]\n"
                                       "2. auth --remove PATTERN...",
                                       "Subversion stores user names, passwords, trusted certificates of servers\n"
                                       "and passphrases of one's own certificates.\n"
                                       "\n"
                                       "1. Lists what is stored, or of it what all PATTERNs are found in.\n"
                                       "2. Removes that.\n"
                                       "\n"
                                       "A pattern is found in any value but a secret, in the case in which it is\n"
                                       "written.  '?' stands for any one character, '*' for any number of them,\n"
                                       "and '[abc]' for one of those in the brackets; a shell takes them for\n"
                                       "itself unless they are quoted.",
                                       {OptionId::Remove, OptionId::ShowPasswords},
                                       {{OptionId::Remove, "remove matching authentication credentials"}},
                                       runAuth};
    return subcommand;
}
