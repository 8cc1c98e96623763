#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// One configuration option that holds for a client only.
struct HSVNConfigurationOption
{
    std::string category{};             ///< "config" or "servers"
    std::string section{};              ///< such as "global"
    std::string name{};                 ///< the option's name in its section
    std::optional<std::string> value{}; ///< what it is to be; nil means as if no file set it
};

/// Who is asked for what a server wants to know: credentials, certificates, trust.
enum class HSVNPrompts : std::uint8_t
{
    Delegate, ///< the client's delegate
    Terminal, ///< Subversion itself asks on the terminal, the password not echoed; not offered by lines before 1.6
    Nobody    ///< what is not given or stored is missing; not offered by lines before 1.6
};

/// How a client is set up, beyond what the user's own files say: where the configuration is, and who answers.
struct HSVNClientSettings
{
    /// The configuration area, which holds stored credentials, too, UTF-8; nil means the user's own.
    std::optional<std::string> configurationDirectory{};
    std::vector<HSVNConfigurationOption> options{}; ///< set on top of what the files say
    std::optional<std::string> username{};          ///< the answer to the first question for one
    std::optional<std::string> password{};          ///< the answer to the first question for one
    bool noAuthCache = false;                       ///< store no credentials
    HSVNPrompts prompts = HSVNPrompts::Delegate;    ///< who is asked for what is neither given nor stored
    /// Called each time before Subversion asks on the terminal, which it makes ready for a question, by the thread that
    /// asks; 1.14 and later.
    void (*beforePrompt)() noexcept = nullptr;
    // Failures of a server's certificate that are trusted without asking; read when nobody is asked.
    bool trustUnknownAuthority = false; ///< signed by nobody who is known
    bool trustHostnameMismatch = false; ///< made out for another host
    bool trustExpired = false;          ///< no longer valid
    bool trustNotYetValid = false;      ///< not valid yet
    bool trustOtherFailures = false;    ///< whatever else is wrong
};
