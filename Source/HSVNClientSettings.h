#pragma once

#include "HSVNClient.h"
#include "HSVNException.h"

#include <optional>
#include <string>
#include <vector>

/// One configuration option that holds for a client only.
struct HSVNConfigurationOption
{
    std::string category;             ///< "config" or "servers"
    std::string section;              ///< such as "global"
    std::string name;                 ///< the option's name in its section
    std::optional<std::string> value; ///< what it is to be; nil means as if no file set it
};

/// How a program of the command line sets its client up: where the configuration is, and who answers for the user.
struct HSVNClientSettings
{
    /// The configuration area, UTF-8; nil means the user's own.
    std::optional<std::string> configurationDirectory;
    std::vector<HSVNConfigurationOption> options; ///< set on top of what the files say
    std::optional<std::string> username;          ///< the answer to the first question for one
    std::optional<std::string> password;          ///< the answer to the first question for one
    bool noAuthCache = false;                     ///< store no credentials
    bool nonInteractive = false;                  ///< never ask on the terminal
    // Failures of a server's certificate that are trusted without asking; read when `nonInteractive`.
    bool trustUnknownAuthority = false; ///< signed by nobody who is known
    bool trustHostnameMismatch = false; ///< made out for another host
    bool trustExpired = false;          ///< no longer valid
    bool trustNotYetValid = false;      ///< not valid yet
    bool trustOtherFailures = false;    ///< whatever else is wrong
};

/// Reads the configuration and opens the stores of credentials anew by the settings; from then on Subversion itself
/// asks on the terminal for what is missing, the password not echoed, and the delegate's prompts, but for the one for
/// log messages, are no longer used.
///
/// @param client  not nil ("client != nil")
/// @return why the configuration area could not be made or read, when it is the system that refused; null when it
///         could. The client then works without a configuration.
/// @throws HSVNException for a configuration that is malformed
/// Stands for svn_config_ensure, svn_config_get_config and svn_cmdline_create_auth_baton2; not offered by lines before
/// 1.6.
HSVN_EXPORT HSVNExceptionRef HSVNApplyClientSettings(const HSVNClientSettings& settings, const HSVNClientRef& client);
