#include "HSVNCredentials.h"

#include <utility>

HSVNCredentialsRef HSVNCredentials::credentials() { return std::make_shared<HSVNCredentials>(); }

HSVNCredentialsRef HSVNCredentials::credentialsWithUsername(std::string username, std::string password)
{
    return std::make_shared<HSVNCredentials>(std::move(username), std::move(password));
}

HSVNCredentials::HSVNCredentials(std::string username, std::string password)
    : _username{std::move(username)}, _password{std::move(password)}
{
}

void HSVNCredentials::setUsername(std::string username) { _username = std::move(username); }

void HSVNCredentials::setPassword(std::string password) { _password = std::move(password); }
