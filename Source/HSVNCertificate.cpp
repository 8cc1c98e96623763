#include "HSVNCertificate.h"

#include <utility>

HSVNCertificateRef HSVNCertificate::certificateWithHostname(std::string hostname, std::string fingerprint,
                                                            std::string validFrom, std::string validTo,
                                                            std::string issuer, std::string representation)
{
    return std::make_shared<const HSVNCertificate>(std::move(hostname), std::move(fingerprint), std::move(validFrom),
                                                   std::move(validTo), std::move(issuer), std::move(representation));
}

HSVNCertificate::HSVNCertificate(std::string hostname, std::string fingerprint, std::string validFrom,
                                 std::string validTo, std::string issuer, std::string representation)
    : _hostname{std::move(hostname)}, _fingerprint{std::move(fingerprint)}, _validFrom{std::move(validFrom)},
      _validTo{std::move(validTo)}, _issuer{std::move(issuer)}, _representation{std::move(representation)}
{
}
