#pragma once

#include "HSVNException.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// What a certificate that is stored says.
struct HSVNStoredCertificate
{
    std::string subject{};                ///< whom it is for, a distinguished name
    std::string issuer{};                 ///< who issued it, a distinguished name
    std::string validFrom{};              ///< a date as Subversion shows it
    std::string validTo{};                ///< the same
    std::string fingerprint{};            ///< hexadecimal text
    std::vector<std::string> hostnames{}; ///< the hosts that it names
};

/// Credentials that Subversion keeps in the configuration area for later.
struct HSVNStoredCredential
{
    std::string kind{};  ///< such as "svn.simple"
    std::string realm{}; ///< of whom they are for
    /// Everything that is stored, by its name; a secret's value is empty unless it was asked for.
    std::map<std::string, std::string> values{};
    std::optional<HSVNStoredCertificate> certificate{}; ///< of a server's that is trusted, by lines from 1.9 on
    HSVNExceptionRef certificateError{};                ///< why a certificate that is there cannot be read
};

/// Choices of `HSVNClient::storedCredentials`.
struct HSVNStoredCredentialsChoices
{
    bool secrets = false; ///< passwords and passphrases, too
};
