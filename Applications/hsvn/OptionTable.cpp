#include "OptionTable.h"

#include "Errors.h"
#include "NativeText.h"
#include "RevisionArguments.h"
#include "Session.h"
#include "TextFiles.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <fmt/format.h>

namespace {

/// An option that sets one member.
template <auto Member>
void set(Session& /*session*/, Options& options, const std::string& /*argument*/)
{
    options.*Member = true;
}

template <auto Member>
void setClient(Session& /*session*/, Options& options, const std::string& /*argument*/)
{
    options.client.*Member = true;
}

/// An option that may be given several times.
template <auto Member>
void append(Session& /*session*/, Options& options, const std::string& argument)
{
    (options.*Member).push_back(NativeText::toUTF8(argument));
}

void applyDepth(Session& /*session*/, Options& options, const std::string& argument)
{
    constexpr std::array words{std::pair{"empty", HSVNDepthEmpty}, std::pair{"files", HSVNDepthFiles},
                               std::pair{"immediates", HSVNDepthImmediates}, std::pair{"infinity", HSVNDepthInfinity}};
    for (const auto& [word, depth] : words) {
        if (argument == word) {
            options.depth = depth;
            return;
        }
    }
    fail(ArgumentParsing, fmt::format("'{}' is not a valid depth; try 'empty', 'files', 'immediates', or 'infinity'",
                                      NativeText::toUTF8(argument)));
}

void applyRecursive(Session& /*session*/, Options& options, const std::string& /*argument*/)
{
    options.depth = HSVNDepthInfinity;
}

void applyTargets(Session& /*session*/, Options& options, const std::string& argument)
{
    options.targets = linesOfTargetsFile(NativeText::toUTF8(argument));
}

void applyLimit(Session& /*session*/, Options& options, const std::string& argument)
{
    int limit = 0;
    const auto [end, error] = std::from_chars(argument.data(), argument.data() + argument.size(), limit);
    if (error != std::errc{} || end != argument.data() + argument.size()) {
        fail(ArgumentParsing, "Non-numeric limit argument given",
             failure(MalformedNumber,
                     fmt::format("Could not convert '{}' into a number", NativeText::toUTF8(argument))));
    }
    if (limit <= 0) {
        fail(MalformedNumber, "Argument to --limit must be positive");
    }
    options.limit = limit;
}

/// A revision property by its name; a value after "=" is for subcommands that commit.
void applyRevprop(Session& /*session*/, Options& options, const std::string& argument)
{
    if (argument.empty()) {
        fail(ArgumentParsing, "Revision property pair is empty");
    }
    options.revisionProperties.push_back(NativeText::toUTF8(argument));
}

void applyShowItem(Session& /*session*/, Options& options, const std::string& argument)
{
    options.showItem = NativeText::toUTF8(argument);
}

void applyUsername(Session& /*session*/, Options& options, const std::string& argument)
{
    options.client.username = NativeText::toUTF8(argument);
}

void applyPassword(Session& /*session*/, Options& options, const std::string& argument)
{
    options.client.password = NativeText::toUTF8(argument);
}

void applyTrustServerCert(Session& /*session*/, Options& options, const std::string& /*argument*/)
{
    options.client.trustUnknownAuthority = true;
}

void applyTrustFailures(Session& /*session*/, Options& options, const std::string& argument)
{
    constexpr std::array words{std::pair{"unknown-ca", &HSVNClientSettings::trustUnknownAuthority},
                               std::pair{"cn-mismatch", &HSVNClientSettings::trustHostnameMismatch},
                               std::pair{"expired", &HSVNClientSettings::trustExpired},
                               std::pair{"not-yet-valid", &HSVNClientSettings::trustNotYetValid},
                               std::pair{"other", &HSVNClientSettings::trustOtherFailures}};
    for (const auto& value : split(NativeText::toUTF8(argument), ", \n\r\t\v")) {
        bool isKnown = false;
        for (const auto& [word, member] : words) {
            if (value == word) {
                options.client.*member = true;
                isKnown = true;
            }
        }
        if (!isKnown) {
            fail(ArgumentParsing,
                 fmt::format("Unknown value '{}' for --trust-server-cert-failures.\n"
                             "Supported values: unknown-ca, cn-mismatch, expired, not-yet-valid, other",
                             value));
        }
    }
}

void applyConfigDir(Session& /*session*/, Options& options, const std::string& argument)
{
    options.client.configurationDirectory = NativeText::toUTF8(argument);
}

/// FILE:SECTION:OPTION=[VALUE]
void applyConfigOption(Session& session, Options& options, const std::string& argument)
{
    const std::string text = NativeText::toUTF8(argument);
    const auto firstColon = text.find(':');
    const auto secondColon = firstColon == std::string::npos ? firstColon : text.find(':', firstColon + 1);
    const auto equals = secondColon == std::string::npos ? secondColon : text.find('=', secondColon + 1);
    if (equals == std::string::npos || firstColon == 0 || secondColon == firstColon + 1 || equals == secondColon + 1 ||
        text.substr(secondColon + 1, equals - secondColon - 1).find(':') != std::string::npos)
    {
        fail(ArgumentParsing, "Invalid syntax of argument of --config-option");
    }
    HSVNConfigurationOption option{text.substr(0, firstColon),
                                   text.substr(firstColon + 1, secondColon - firstColon - 1),
                                   text.substr(secondColon + 1, equals - secondColon - 1), text.substr(equals + 1)};
    session.addConfigurationOption(options, std::move(option));
}

constexpr const char* revisionDescription = "ARG (some commands also take ARG1:ARG2 range)\n"
                                            "A revision argument can be one of:\n"
                                            "   NUMBER       revision number\n"
                                            "   '{' DATE '}' revision at start of the date\n"
                                            "   'HEAD'       latest in repository\n"
                                            "   'BASE'       base rev of item's working copy\n"
                                            "   'COMMITTED'  last commit at or before BASE\n"
                                            "   'PREV'       revision just before COMMITTED";

constexpr std::array table{
    Option{OptionId::Revision, "revision", nullptr, 'r', "ARG", revisionDescription, applyRevision},
    Option{OptionId::Change, "change", nullptr, 'c', "ARG",
           "the change made in revision ARG (like -r ARG-1:ARG)\n"
           "If ARG is negative this is like -r ARG:ARG-1\n"
           "If ARG is of the form ARG1-ARG2 then this is like\n"
           "ARG1:ARG2, where ARG1 is inclusive",
           applyChange},
    Option{OptionId::Quiet, "quiet", nullptr, 'q', nullptr, "print nothing, or only summary information",
           set<&Options::quiet>},
    Option{OptionId::Verbose, "verbose", nullptr, 'v', nullptr, "print extra information", set<&Options::verbose>},
    Option{OptionId::ShowUpdates, "show-updates", nullptr, 'u', nullptr, "display update information",
           set<&Options::showUpdates>},
    Option{OptionId::NonRecursive, "non-recursive", nullptr, 'N', nullptr,
           "obsolete; try --depth=files or --depth=immediates", set<&Options::nonRecursive>},
    Option{OptionId::Depth, "depth", nullptr, 0, "ARG",
           "limit operation by depth ARG ('empty', 'files',\n'immediates', or 'infinity')", applyDepth},
    Option{OptionId::Recursive, "recursive", nullptr, 'R', nullptr, "descend recursively, same as --depth=infinity",
           applyRecursive},
    Option{OptionId::Targets, "targets", nullptr, 0, "ARG", "pass contents of file ARG as additional args",
           applyTargets},
    Option{OptionId::Changelist, "changelist", "cl", 0, "ARG", "operate only on members of changelist ARG",
           append<&Options::changelists>},
    Option{OptionId::IgnoreExternals, "ignore-externals", nullptr, 0, nullptr, "ignore externals definitions",
           set<&Options::ignoreExternals>},
    Option{OptionId::IncludeExternals, "include-externals", nullptr, 0, nullptr,
           "also operate on externals defined by\nsvn:externals properties", set<&Options::includeExternals>},
    Option{OptionId::NoIgnore, "no-ignore", nullptr, 0, nullptr,
           "disregard default and svn:ignore and\nsvn:global-ignores property ignores", set<&Options::noIgnore>},
    Option{OptionId::StopOnCopy, "stop-on-copy", nullptr, 0, nullptr, "do not cross copies while traversing history",
           set<&Options::stopOnCopy>},
    Option{OptionId::UseMergeHistory, "use-merge-history", nullptr, 'g', nullptr,
           "use/display additional information from merge\nhistory", set<&Options::useMergeHistory>},
    Option{OptionId::Limit, "limit", nullptr, 'l', "ARG", "maximum number of log entries", applyLimit},
    Option{OptionId::WithAllRevprops, "with-all-revprops", nullptr, 0, nullptr, "retrieve all revision properties",
           set<&Options::allRevisionProperties>},
    Option{OptionId::WithNoRevprops, "with-no-revprops", nullptr, 0, nullptr, "retrieve no revision properties",
           set<&Options::noRevisionProperties>},
    Option{OptionId::WithRevprop, "with-revprop", nullptr, 0, "ARG", "retrieve revision property ARG", applyRevprop},
    Option{OptionId::Revprop, "revprop", nullptr, 0, nullptr, "operate on a revision property (use with -r)",
           set<&Options::revisionProperty>},
    Option{OptionId::ShowInheritedProps, "show-inherited-props", nullptr, 0, nullptr,
           "retrieve properties set on parents of the target", set<&Options::showInheritedProperties>},
    Option{OptionId::Strict, "strict", nullptr, 0, nullptr, "(deprecated; use --no-newline)", set<&Options::noNewline>},
    Option{OptionId::NoNewline, "no-newline", nullptr, 0, nullptr, "do not output the trailing newline",
           set<&Options::noNewline>},
    Option{OptionId::IgnoreKeywords, "ignore-keywords", nullptr, 0, nullptr, "don't expand keywords",
           set<&Options::ignoreKeywords>},
    Option{OptionId::Search, "search", nullptr, 0, "ARG", "use ARG as search pattern (glob syntax)",
           append<&Options::search>},
    Option{OptionId::HumanReadable, "human-readable", nullptr, 'H', nullptr,
           "show file sizes with base-2 unit suffixes\n"
           "(Byte, Kilobyte, Megabyte, Gigabyte, Terabyte\n"
           "and Petabyte), limiting the number of digits\n"
           "to three or less",
           set<&Options::humanReadable>},
    Option{OptionId::ShowItem, "show-item", nullptr, 0, "ARG",
           "print only the item identified by ARG:\n"
           "kind, url, relative-url, repos-root-url,\n"
           "repos-uuid, repos-size, revision,\n"
           "last-changed-revision, last-changed-date,\n"
           "last-changed-author, wc-root, schedule,\n"
           "depth, changelist",
           applyShowItem},
    Option{OptionId::Incremental, "incremental", nullptr, 0, nullptr, "give output suitable for concatenation",
           set<&Options::incremental>},
    Option{OptionId::XML, "xml", nullptr, 0, nullptr, "output in XML", set<&Options::xml>},
    Option{OptionId::JSON, "json", nullptr, 0, nullptr, "output in JSON", set<&Options::json>},
    Option{OptionId::Username, "username", nullptr, 0, "ARG", "specify a username ARG", applyUsername},
    Option{OptionId::Password, "password", nullptr, 0, "ARG",
           "specify a password ARG (caution: on many operating\nsystems, other users will be able to see this)",
           applyPassword},
    Option{OptionId::PasswordFromStdin, "password-from-stdin", nullptr, 0, nullptr, "read password from stdin",
           set<&Options::passwordFromInput>},
    Option{OptionId::NoAuthCache, "no-auth-cache", nullptr, 0, nullptr, "do not cache authentication tokens",
           setClient<&HSVNClientSettings::noAuthCache>},
    Option{OptionId::NonInteractive, "non-interactive", nullptr, 0, nullptr,
           "do no interactive prompting (default is to prompt\nonly if standard input is a terminal device)",
           setClient<&HSVNClientSettings::nonInteractive>},
    Option{OptionId::ForceInteractive, "force-interactive", nullptr, 0, nullptr,
           "do interactive prompting even if standard input\nis not a terminal device",
           set<&Options::forceInteractive>},
    Option{OptionId::TrustServerCert, "trust-server-cert", nullptr, 0, nullptr,
           "deprecated; same as\n--trust-server-cert-failures=unknown-ca", applyTrustServerCert},
    Option{OptionId::TrustServerCertFailures, "trust-server-cert-failures", nullptr, 0, "ARG",
           "with --non-interactive, accept SSL server\n"
           "certificates with failures; ARG is comma-separated\n"
           "list of 'unknown-ca' (Unknown Authority),\n"
           "'cn-mismatch' (Hostname mismatch), 'expired'\n"
           "(Expired certificate), 'not-yet-valid' (Not yet\n"
           "valid certificate) and 'other' (all other not\n"
           "separately classified certificate errors).",
           applyTrustFailures},
    Option{OptionId::ConfigDir, "config-dir", nullptr, 0, "ARG", "read user configuration files from directory ARG",
           applyConfigDir},
    Option{OptionId::ConfigOption, "config-option", nullptr, 0, "ARG",
           "set user configuration option in the format:\n"
           "    FILE:SECTION:OPTION=[VALUE]\n"
           "For example:\n"
           "    servers:global:http-library=serf",
           applyConfigOption},
    Option{OptionId::Help, "help", nullptr, 'h', nullptr, "show help on a subcommand", set<&Options::help>},
    Option{OptionId::Version, "version", nullptr, 0, nullptr, "show program version information",
           set<&Options::version>},
};

constexpr std::array global{OptionId::Username,          OptionId::Password,
                            OptionId::PasswordFromStdin, OptionId::NoAuthCache,
                            OptionId::NonInteractive,    OptionId::ForceInteractive,
                            OptionId::TrustServerCert,   OptionId::TrustServerCertFailures,
                            OptionId::ConfigDir,         OptionId::ConfigOption};

constexpr bool isInOrder()
{
    for (std::size_t index = 0; index < table.size(); ++index) {
        if (static_cast<std::size_t>(table[index].id) != index) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder(), "an option's place in the table is its id");

} // namespace

std::string Option::synopsis() const
{
    std::string text = letter != 0 ? fmt::format("-{} [--{}]", letter, name) : fmt::format("--{}", name);
    text += alias ? fmt::format(" [--{}]", alias) : "";
    return argument ? text + " " + argument : text;
}

std::span<const Option> optionTable() { return table; }

const Option& optionWithId(OptionId id) { return table.at(static_cast<std::size_t>(id)); }

std::span<const OptionId> globalOptions() { return global; }
