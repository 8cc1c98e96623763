#include "CommandLine/ConfigurationNames.h"

#include "CommandLine/Similarity.h"
#include "Output/ErrorOutput.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <span>

namespace {

constexpr std::array files{"servers", "config"};
/// The sections whose options have names that the user chooses.
constexpr std::array freeSections{"groups", "tunnels", "auto-props"};
constexpr std::array sectionNames{"groups",     "global",  "auth",       "helpers",
                                  "miscellany", "tunnels", "auto-props", "working-copy"};
constexpr std::array optionNames{"http-proxy-host",
                                 "http-proxy-port",
                                 "http-proxy-username",
                                 "http-proxy-password",
                                 "http-proxy-exceptions",
                                 "http-timeout",
                                 "http-compression",
                                 "neon-debug-mask",
                                 "http-auth-types",
                                 "ssl-authority-files",
                                 "ssl-trust-default-ca",
                                 "ssl-client-cert-file",
                                 "ssl-client-cert-password",
                                 "ssl-pkcs11-provider",
                                 "http-library",
                                 "store-passwords",
                                 "store-plaintext-passwords",
                                 "store-auth-creds",
                                 "store-ssl-client-cert-pp",
                                 "store-ssl-client-cert-pp-plaintext",
                                 "username",
                                 "http-bulk-updates",
                                 "http-max-connections",
                                 "http-chunked-requests",
                                 "serf-log-components",
                                 "serf-log-level",
                                 "password-stores",
                                 "kwallet-wallet",
                                 "kwallet-svn-application-name-with-pid",
                                 "ssl-client-cert-file-prompt",
                                 "editor-cmd",
                                 "diff-cmd",
                                 "diff-extensions",
                                 "diff3-cmd",
                                 "diff3-has-program-arg",
                                 "merge-tool-cmd",
                                 "global-ignores",
                                 "log-encoding",
                                 "use-commit-times",
                                 "template-root",
                                 "enable-auto-props",
                                 "enable-magic-file",
                                 "no-unlock",
                                 "mime-types-file",
                                 "preserved-conflict-file-exts",
                                 "interactive-conflicts",
                                 "memory-cache-size",
                                 "diff-ignore-content-type",
                                 "exclusive-locking",
                                 "exclusive-locking-clients",
                                 "busy-timeout"};

bool contains(std::span<const char* const> known, const std::string& name)
{
    return std::find(known.begin(), known.end(), name) != known.end();
}

void warn(const std::string& message) { printWarning(failure(ArgumentParsing, message)); }

/// @return whether the name is known
bool check(const std::string& name, std::span<const char* const> known)
{
    if (contains(known, name)) {
        return true;
    }
    const auto meant = namesLike(name, known);
    warn(fmt::format("Ignoring unknown value '{}'{}", name,
                     meant.empty() ? "" : fmt::format("; did you mean '{}'?", meant.front())));
    return false;
}

} // namespace

bool checkConfigurationNames(const HSVNConfigurationOption& option)
{
    if (!check(option.category, files)) {
        return false;
    }
    if (check(option.section, sectionNames) && !contains(freeSections, option.section)) {
        check(option.name, optionNames);
    }
    return true;
}

void warnOfUnknownFile() { warn("Unrecognized file in argument of --config-option"); }
