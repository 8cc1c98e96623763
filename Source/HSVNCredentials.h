#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNObject.h"

#include <memory>
#include <string>

/// A user name and a password, filled in by the delegate when a server asks for them.
class HSVN_EXPORT HSVNCredentials : public HSVNObject
{
  public:
    /// Both empty.
    static HSVNCredentialsRef credentials();
    /// @param username  UTF-8
    /// @param password  UTF-8
    static HSVNCredentialsRef credentialsWithUsername(std::string username, std::string password);

    /// Both empty.
    HSVNCredentials() = default;
    /// As `credentialsWithUsername`.
    HSVNCredentials(std::string username, std::string password);

    /// The user name, UTF-8.
    const std::string& username() const { return _username; }
    void setUsername(std::string username);
    /// The password, UTF-8.
    const std::string& password() const { return _password; }
    void setPassword(std::string password);

    std::string className() const override { return "HSVNCredentials"; }

  private:
    std::string _username;
    std::string _password;
};
