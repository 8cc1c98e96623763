#pragma once

#include "CommandLine/Options.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct Subcommand;

/// One run of the program: what the command line says, and the client that serves it.
class Session
{
  public:
    Options options;
    std::vector<std::string> arguments; ///< what follows the subcommand, in the locale's encoding
    const Subcommand* subcommand = nullptr;

    /// A context without the user's configuration, for what needs none; made when first asked for.
    HSVNContextRef context();
    /// The client, set up by the options; made when first asked for, after all options are known.
    ///
    /// @throws HSVNException for a configuration that cannot be used
    const HSVNClientRef& client();
    /// Makes the configuration area where there is none yet, silently, for who does not come to need a client.
    void ensureConfigurationArea();
    /// Whether the configuration turns an option of its section [miscellany] on.
    ///
    /// @param otherwise  what holds where it says nothing
    /// @throws HSVNException, `BadConfigurationValue`, for a value that is neither on nor off
    bool isConfigured(const std::string& option, bool otherwise = false);
    /// Says that what the subcommand prints is long, so that it goes through the user's pager where one is wanted.
    void pageOutput() const;
    /// Whoever hears the client's notifications and answers its questions; by default only cancellation is answered.
    /// Kept alive by the session.
    void setDelegate(HSVNClientDelegateRef delegate);

    /// Takes one --config-option in, with Subversion's warnings for names that it does not know.
    void addConfigurationOption(Options& into, HSVNConfigurationOption option);
    /// Warns of the options whose file Subversion does not know; `client` does it when it reads the configuration.
    void warnOfUnknownFiles();

  private:
    void loadBundles();

    HSVNContextRef _context;
    HSVNClientRef _client;
    HSVNClientDelegateRef _delegate;
    std::optional<HSVNTransferObserver> _transfer; // for the line of progress
    int _unknownFiles = 0;                         // among those of --config-option, not yet told
    bool _bundlesAreLoaded = false;
};
