#include "HSVNClient.h"
#include "Internal/ExtensionCall.h"

namespace {

/// Answers whether a credential is to go; throws to stop.
using Visitor = std::function<svn_error_t*(HSVNOperation& operation, const HSVNStoredCredential& credential,
                                           svn_boolean_t& isRemoved)>;

struct Walk
{
    HSVNOperation& operation;
    bool tellsSecrets;
    const Visitor& visitor;
};

bool isSecret(const std::string& name) { return name == "password" || name == "passphrase"; }

/// What the certificate says, where the line can read it.
void readCertificate(HSVNOperation& operation, const std::string& text, HSVNStoredCredential& credential)
{
    const auto read = operation.newest(&HSVNAuthenticationFunctions::certificate_details);
    if (!read) {
        return;
    }
    const svn_string_t record{text.data(), text.size()};
    HSVNAuthenticationFunctions::CertificateDetails details{};
    if (svn_error_t* const error = read(&details, &record, operation.pool())) {
        credential.certificateError = HSVNExceptionOfError(*operation.context(), error, true);
        return;
    }
    auto& certificate = credential.certificate.emplace();
    certificate = {.subject = details.subject,
                   .issuer = details.issuer,
                   .validFrom = details.validFrom,
                   .validTo = details.validTo,
                   .fingerprint = details.fingerprint,
                   .hostnames = {}};
    for (int index = 0; details.hostnames && index < details.hostnames->nelts; ++index) {
        certificate.hostnames.emplace_back(APR_ARRAY_IDX(details.hostnames, index, const char*));
    }
}

HSVNStoredCredential credentialOf(const Walk& walk, const char* kind, const char* realm, apr_hash_t* values)
{
    HSVNStoredCredential credential{.kind = kind, .realm = realm, .values = {}};
    HSVNForEach<svn_string_t>(walk.operation, values, [&](const std::string& name, const svn_string_t* value) {
        const bool isHidden = isSecret(name) && !walk.tellsSecrets;
        credential.values.emplace(name, isHidden ? std::string{} : std::string{value->data, value->len});
    });
    if (const auto certificate = credential.values.find("ascii_cert"); certificate != credential.values.end()) {
        readCertificate(walk.operation, certificate->second, credential);
    }
    return credential;
}

svn_error_t* visit(svn_boolean_t* isRemoved, void* baton, const char* kind, const char* realm, apr_hash_t* values,
                   apr_pool_t* /*pool*/)
{
    const auto& walk = *static_cast<Walk*>(baton);
    return HSVNGuardCallback(*walk.operation.context(), [&]() -> svn_error_t* {
        return walk.visitor(walk.operation, credentialOf(walk, kind, realm, values), *isRemoved);
    });
}

void walkCredentials(HSVNContext& context, const char* verb, bool tellsSecrets, const Visitor& visitor)
{
    HSVNOperation operation{context, verb, {}};
    Walk walk{operation, tellsSecrets, visitor};
    operation.call(&HSVNAuthenticationFunctions::config_walk_credentials, visit, &walk, operation.ctx(),
                   operation.pool());
}

} // namespace

void HSVNClient::storedCredentials(const HSVNStoredCredentialsChoices& choices,
                                   const HSVNReceiver<const HSVNStoredCredential&>& receiver)
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    walkCredentials(*this, "storedCredentials", choices.secrets,
                    [&](HSVNOperation& operation, const HSVNStoredCredential& credential, svn_boolean_t&) {
                        return HSVNHandOver(operation, receiver, credential);
                    });
}

std::vector<HSVNStoredCredential> HSVNClient::storedCredentials(const HSVNStoredCredentialsChoices& choices)
{
    std::vector<HSVNStoredCredential> credentials;
    storedCredentials(choices, [&](const HSVNStoredCredential& credential) { credentials.push_back(credential); });
    return credentials;
}

std::size_t
HSVNClient::removeStoredCredentials(const std::function<bool(const HSVNStoredCredential& credential)>& isUnwanted)
{
    HSVNAssertParameter(isUnwanted != nullptr, "isUnwanted != nil");
    std::size_t count = 0;
    walkCredentials(
        *this, "removeStoredCredentials", false,
        [&](HSVNOperation&, const HSVNStoredCredential& credential, svn_boolean_t& isRemoved) -> svn_error_t* {
            isRemoved = isUnwanted(credential) ? 1 : 0;
            count += isRemoved ? 1 : 0;
            return nullptr;
        });
    return count;
}
