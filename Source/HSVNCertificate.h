#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNObject.h"

#include <cstdint>
#include <memory>
#include <string>

/// What is wrong with a server's certificate; values are combined by bitwise OR and equal Subversion's own.
enum HSVNCertificateFailure : std::uint32_t
{
    HSVNCertificateFailureNotYetValid = 1,
    HSVNCertificateFailureExpired = 2,
    HSVNCertificateFailureHostnameMismatch = 4,
    HSVNCertificateFailureUnknownAuthority = 8,
    HSVNCertificateFailureOther = 0x40000000
};

/// A server's certificate as the delegate is asked to judge it. Immutable; all texts are UTF-8.
class HSVN_EXPORT HSVNCertificate : public HSVNObject
{
  public:
    /// @param hostname        the host that the certificate is for
    /// @param fingerprint     its fingerprint as hexadecimal text
    /// @param validFrom       when it begins to be valid, as Subversion formats it
    /// @param validTo         when it ends to be valid, as Subversion formats it
    /// @param issuer          the distinguished name of its issuer
    /// @param representation  the certificate in base-64 text
    static HSVNCertificateRef certificateWithHostname(std::string hostname, std::string fingerprint,
                                                      std::string validFrom, std::string validTo, std::string issuer,
                                                      std::string representation);
    /// The same as an object of its own.
    HSVNCertificate(std::string hostname, std::string fingerprint, std::string validFrom, std::string validTo,
                    std::string issuer, std::string representation);

    /// The host that the certificate is for.
    const std::string& hostname() const { return _hostname; }
    /// Its fingerprint as hexadecimal text.
    const std::string& fingerprint() const { return _fingerprint; }
    /// When it begins to be valid, as Subversion formats it.
    const std::string& validFrom() const { return _validFrom; }
    /// When it ends to be valid, as Subversion formats it.
    const std::string& validTo() const { return _validTo; }
    /// The distinguished name of its issuer.
    const std::string& issuer() const { return _issuer; }
    /// The certificate in base-64 text.
    const std::string& representation() const { return _representation; }

    std::string className() const override { return "HSVNCertificate"; }

  private:
    std::string _hostname;
    std::string _fingerprint;
    std::string _validFrom;
    std::string _validTo;
    std::string _issuer;
    std::string _representation;
};
