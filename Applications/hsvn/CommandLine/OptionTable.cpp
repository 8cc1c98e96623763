#include "CommandLine/OptionTable.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/PropertyNames.h"
#include "CommandLine/RevisionArguments.h"
#include "CommandLine/Session.h"
#include "CommandLine/TextFiles.h"
#include "Output/RepositoryVersion.h"

#include <array>
#include <cerrno>
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

void applyChangelist(Session& session, Options& options, const std::string& argument)
{
    if (argument.empty()) {
        fail(ArgumentParsing, "Changelist names must not be empty");
    }
    append<&Options::changelists>(session, options, argument);
}

void applySearch(Session& /*session*/, Options& options, const std::string& argument)
{
    options.search.push_back({NativeText::toUTF8(argument)});
}

void applySearchAnd(Session& session, Options& options, const std::string& argument)
{
    if (options.search.empty()) {
        applySearch(session, options, argument);
    } else {
        options.search.back().push_back(NativeText::toUTF8(argument));
    }
}

/// An option whose value is kept, as UTF-8 or in the encoding it was given in.
template <auto Member>
void setText(Session& /*session*/, Options& options, const std::string& argument)
{
    options.*Member = NativeText::toUTF8(argument);
}

template <auto Member>
void setBytes(Session& /*session*/, Options& options, const std::string& argument)
{
    options.*Member = argument;
}

template <auto Member>
void setClientText(Session& /*session*/, Options& options, const std::string& argument)
{
    options.client.*Member = NativeText::toUTF8(argument);
}

constexpr std::array depthWords{std::pair{"exclude", HSVNDepthExclude}, std::pair{"empty", HSVNDepthEmpty},
                                std::pair{"files", HSVNDepthFiles}, std::pair{"immediates", HSVNDepthImmediates},
                                std::pair{"infinity", HSVNDepthInfinity}};

/// The argument of --depth or --set-depth as UTF-8.
std::string depthText(const std::string& argument)
{
    try {
        return NativeText::toUTF8(argument);
    } catch (const HSVNException& exception) {
        fail(ArgumentParsing, "Error converting depth from locale to UTF-8", exception);
    }
}

HSVNDepth depthNamed(const std::string& argument, bool mayExclude)
{
    const std::string text = depthText(argument);
    for (const auto& [word, depth] : depthWords) {
        if (text == word && (mayExclude || depth != HSVNDepthExclude)) {
            return depth;
        }
    }
    fail(ArgumentParsing, fmt::format("'{}' is not a valid depth; try {}'empty', 'files', 'immediates', or 'infinity'",
                                      text, mayExclude ? "'exclude', " : ""));
}

void applyDepth(Session& /*session*/, Options& options, const std::string& argument)
{
    options.depth = depthNamed(argument, false);
}

void applySetDepth(Session& /*session*/, Options& options, const std::string& argument)
{
    options.setDepth = depthNamed(argument, true);
}

void applyAccept(Session& /*session*/, Options& options, const std::string& argument)
{
    constexpr std::array words{
        std::pair{"postpone", Accept::Postpone},
        std::pair{"p", Accept::Postpone},
        std::pair{"working", Accept::Working},
        std::pair{"base", Accept::Base},
        std::pair{"mine-conflict", Accept::MineConflict},
        std::pair{"mc", Accept::MineConflict},
        std::pair{"theirs-conflict", Accept::TheirsConflict},
        std::pair{"tc", Accept::TheirsConflict},
        std::pair{"mine-full", Accept::MineFull},
        std::pair{"mf", Accept::MineFull},
        std::pair{"theirs-full", Accept::TheirsFull},
        std::pair{"tf", Accept::TheirsFull},
        std::pair{"edit", Accept::Edit},
        std::pair{"e", Accept::Edit},
        std::pair{"launch", Accept::Launch},
        std::pair{"l", Accept::Launch},
        std::pair{"recommended", Accept::Recommended},
        std::pair{"r", Accept::Recommended},
    };
    for (const auto& [word, accept] : words) {
        if (argument == word) {
            options.accept = accept;
            return;
        }
    }
    fail(ArgumentParsing, fmt::format("'{}' is not a valid --accept value", NativeText::toUTF8(argument)));
}

void applyNativeEOL(Session& /*session*/, Options& options, const std::string& argument)
{
    if (argument != "LF" && argument != "CR" && argument != "CRLF") {
        fail(ArgumentParsing, fmt::format("Syntax error in native-eol argument '{}'", NativeText::toUTF8(argument)));
    }
    options.nativeEOL = argument;
}

void applyOld(Session& /*session*/, Options& options, const std::string& argument)
{
    if (options.usedChange) {
        fail(ArgumentParsing, "Can't specify -c with --old");
    }
    options.oldTarget = argument;
}

void applyFile(Session& /*session*/, Options& options, const std::string& argument)
{
    options.file = NativeText::toUTF8(argument);
    options.fileContents = contentsOfFile(*options.file);
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
    const std::string text = NativeText::toUTF8(argument);
    int limit = 0;
    try {
        limit = numberOf(text);
    } catch (const HSVNException& exception) {
        fail(ArgumentParsing, "Non-numeric limit argument given", exception);
    }
    if (limit <= 0) {
        fail(IncorrectParameters, "Argument to --limit must be positive");
    }
    options.limit = limit;
}

void applyStrip(Session& /*session*/, Options& options, const std::string& argument)
{
    const std::string text = NativeText::toUTF8(argument);
    try {
        options.strip = numberOf(text);
    } catch (const HSVNException& exception) {
        fail(ArgumentParsing, fmt::format("Invalid strip count '{}'", text), exception);
    }
    if (options.strip < 0) {
        fail(IncorrectParameters, "Argument to --strip must be positive");
    }
}

void applyShowRevs(Session& /*session*/, Options& options, const std::string& argument)
{
    const std::string text = NativeText::toUTF8(argument);
    if (text != "merged" && text != "eligible") {
        fail(ArgumentParsing, fmt::format("'{}' is not a valid --show-revs value", text));
    }
    options.shownRevisions = text == "merged" ? ShownRevisions::Merged : ShownRevisions::Eligible;
}

void applyViewspec(Session& /*session*/, Options& options, const std::string& argument)
{
    const std::string text = NativeText::toUTF8(argument);
    if (text != "classic" && text != "svn11") {
        fail(ArgumentParsing, fmt::format("'{}' is not a valid --x-viewspec value", text));
    }
    options.viewspec = text == "classic" ? Viewspec::Classic : Viewspec::Svn11;
}

/// The last minor release that is to read a new repository.
template <int Minor>
void setCompatible(Session& /*session*/, Options& options, const std::string& /*argument*/)
{
    options.compatibleVersion = HSVNVersion{1, Minor};
}

/// NAME or NAME=VALUE
void applyRevprop(Session& /*session*/, Options& options, const std::string& argument)
{
    if (argument.empty()) {
        fail(ArgumentParsing, "Revision property pair is empty");
    }
    const std::string text = NativeText::toUTF8(argument);
    const auto equals = text.find('=');
    RevisionPropertyArgument property{text.substr(0, equals), std::nullopt};
    requirePropertyName(property.name);
    if (equals != std::string::npos) {
        property.value = text.substr(equals + 1);
    }
    options.revisionProperties.push_back(std::move(property));
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
    options.client.configurationDirectory = argument.empty() ? "." : NativeText::toUTF8(argument);
}

/// FILE:SECTION:OPTION=[VALUE]
void applyConfigOption(Session& session, Options& options, const std::string& argument)
{
    const std::string text = NativeText::toUTF8(argument);
    const auto firstColon = text.find(':');
    const auto secondColon = firstColon == std::string::npos ? firstColon : text.find(':', firstColon + 1);
    const auto equals = secondColon == std::string::npos ? secondColon : text.find('=', secondColon + 1);
    constexpr const char* complaint = "Invalid syntax of argument of --config-option";
    if (equals == std::string::npos || firstColon == 0 || secondColon == firstColon + 1 || equals == secondColon + 1) {
        fail(ArgumentParsing, complaint);
    }
    HSVNConfigurationOption option{text.substr(0, firstColon),
                                   text.substr(firstColon + 1, secondColon - firstColon - 1),
                                   text.substr(secondColon + 1, equals - secondColon - 1), text.substr(equals + 1)};
    const bool isPlain = option.name.find(':') == std::string::npos;
    session.addConfigurationOption(options, std::move(option));
    if (!isPlain) {
        fail(ArgumentParsing, complaint);
    }
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
           "limit operation by depth ARG ('empty', 'files',\n'immediates', or 'infinity')", applyDepth,
           "empty files immediates infinity"},
    Option{OptionId::Recursive, "recursive", nullptr, 'R', nullptr, "descend recursively, same as --depth=infinity",
           applyRecursive},
    Option{OptionId::Targets, "targets", nullptr, 0, "ARG", "pass contents of file ARG as additional args",
           applyTargets},
    Option{OptionId::Changelist, "changelist", "cl", 0, "ARG", "operate only on members of changelist ARG",
           applyChangelist},
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
    Option{OptionId::WithRevprop, "with-revprop", nullptr, 0, "ARG",
           "set revision property ARG in new revision\nusing the name[=value] format", applyRevprop},
    Option{OptionId::Revprop, "revprop", nullptr, 0, nullptr, "operate on a revision property (use with -r)",
           set<&Options::revisionProperty>},
    Option{OptionId::ShowInheritedProps, "show-inherited-props", nullptr, 0, nullptr,
           "retrieve properties set on parents of the target", set<&Options::showInheritedProperties>},
    Option{OptionId::Strict, "strict", nullptr, 0, nullptr, "(deprecated; use --no-newline)", set<&Options::noNewline>},
    Option{OptionId::NoNewline, "no-newline", nullptr, 0, nullptr, "do not output the trailing newline",
           set<&Options::noNewline>},
    Option{OptionId::IgnoreKeywords, "ignore-keywords", nullptr, 0, nullptr, "don't expand keywords",
           set<&Options::ignoreKeywords>},
    Option{OptionId::Search, "search", nullptr, 0, "ARG",
           "use ARG as search pattern (glob syntax, case and\naccents aside)", applySearch},
    Option{OptionId::SearchAnd, "search-and", nullptr, 0, "ARG", "combine ARG with the previous search pattern",
           applySearchAnd},
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
           setText<&Options::showItem>,
           "kind url relative-url repos-root-url repos-uuid repos-size revision last-changed-revision "
           "last-changed-date last-changed-author wc-root schedule depth changelist"},
    Option{OptionId::Force, "force", nullptr, 0, nullptr, "force operation to run", set<&Options::force>},
    Option{OptionId::DryRun, "dry-run", nullptr, 0, nullptr, "try operation but make no changes",
           set<&Options::dryRun>},
    Option{OptionId::Parents, "parents", nullptr, 0, nullptr, "make intermediate directories", set<&Options::parents>},
    Option{OptionId::SetDepth, "set-depth", nullptr, 0, "ARG",
           "set new working copy depth to ARG ('exclude',\n"
           "'empty', 'files', 'immediates', or 'infinity')",
           applySetDepth, "exclude empty files immediates infinity"},
    Option{OptionId::Accept, "accept", nullptr, 0, "ARG",
           "specify automatic conflict resolution action\n"
           "('postpone', 'working', 'base', 'mine-conflict',\n"
           "'theirs-conflict', 'mine-full', 'theirs-full',\n"
           "'edit', 'launch', 'recommended') (shorthand:\n"
           "'p', 'mc', 'tc', 'mf', 'tf', 'e', 'l', 'r')",
           applyAccept,
           "postpone working base mine-conflict theirs-conflict mine-full theirs-full edit launch recommended"},
    Option{OptionId::AddsAsModification, "adds-as-modification", nullptr, 0, nullptr,
           "local additions are merged with incoming additions", set<&Options::addsAsModification>},
    Option{OptionId::AllowMixedRevisions, "allow-mixed-revisions", nullptr, 0, nullptr,
           "allow operation on a mixed-revision working copy;\n"
           "better run 'update' first",
           set<&Options::allowMixedRevisions>},
    Option{OptionId::RecordOnly, "record-only", nullptr, 0, nullptr, "merge only mergeinfo differences",
           set<&Options::recordOnly>},
    Option{OptionId::IgnoreAncestry, "ignore-ancestry", nullptr, 0, nullptr,
           "disable merge tracking; diff nodes as if related", set<&Options::ignoreAncestry>},
    Option{OptionId::Reintegrate, "reintegrate", nullptr, 0, nullptr, "deprecated", set<&Options::reintegrate>},
    Option{OptionId::Relocate, "relocate", nullptr, 0, nullptr, "deprecated; use 'relocate'", set<&Options::relocate>},
    Option{OptionId::NativeEOL, "native-eol", nullptr, 0, "ARG",
           "use a different EOL marker than the standard\n"
           "system marker for files with the svn:eol-style\n"
           "property set to 'native'.\n"
           "ARG may be one of 'LF', 'CR', 'CRLF'",
           applyNativeEOL, "LF CR CRLF"},
    Option{OptionId::AutoProps, "auto-props", nullptr, 0, nullptr, "enable automatic properties",
           set<&Options::autoProperties>},
    Option{OptionId::NoAutoProps, "no-auto-props", nullptr, 0, nullptr, "disable automatic properties",
           set<&Options::noAutoProperties>},
    Option{OptionId::KeepLocal, "keep-local", nullptr, 0, nullptr, "keep path in working copy",
           set<&Options::keepLocal>},
    Option{OptionId::PinExternals, "pin-externals", nullptr, 0, nullptr,
           "pin externals with no explicit revision to their\n"
           "current revision (recommended when tagging)",
           set<&Options::pinExternals>},
    Option{OptionId::NoUnlock, "no-unlock", nullptr, 0, nullptr, "don't unlock the targets", set<&Options::noUnlock>},
    Option{OptionId::KeepChangelists, "keep-changelists", nullptr, 0, nullptr, "don't delete changelists after commit",
           set<&Options::keepChangelists>},
    Option{OptionId::Remove, "remove", nullptr, 0, nullptr, "remove changelist association", set<&Options::remove>},
    Option{OptionId::RemoveAdded, "remove-added", nullptr, 0, nullptr,
           "reverting an added item will remove it from disk", set<&Options::removeAdded>},
    Option{OptionId::RemoveUnversioned, "remove-unversioned", nullptr, 0, nullptr, "remove unversioned items",
           set<&Options::removeUnversioned>},
    Option{OptionId::RemoveIgnored, "remove-ignored", nullptr, 0, nullptr, "remove ignored items",
           set<&Options::removeIgnored>},
    Option{OptionId::VacuumPristines, "vacuum-pristines", nullptr, 0, nullptr,
           "remove unreferenced pristines from .svn directory", set<&Options::vacuumPristines>},
    Option{OptionId::Message, "message", nullptr, 'm', "ARG", "specify log message ARG", setBytes<&Options::message>},
    Option{OptionId::File, "file", nullptr, 'F', "ARG", "read log message from file ARG", applyFile},
    Option{OptionId::ForceLog, "force-log", nullptr, 0, nullptr, "force validity of log message source",
           set<&Options::forceLog>},
    Option{OptionId::Encoding, "encoding", nullptr, 0, "ARG", "treat value as being in charset encoding ARG",
           setBytes<&Options::encoding>},
    Option{OptionId::EditorCmd, "editor-cmd", nullptr, 0, "ARG", "use ARG as external editor",
           setBytes<&Options::editorCommand>},
    Option{OptionId::Diff3Cmd, "diff3-cmd", nullptr, 0, "ARG", "use ARG as merge command",
           setBytes<&Options::mergeCommand>},
    Option{OptionId::DiffCmd, "diff-cmd", nullptr, 0, "ARG", "use ARG as diff command",
           setBytes<&Options::diffCommand>},
    Option{OptionId::InternalDiff, "internal-diff", nullptr, 0, nullptr, "override diff-cmd specified in config file",
           set<&Options::internalDiff>},
    Option{OptionId::Extensions, "extensions", nullptr, 'x', "ARG",
           "options of the program or the code that compares\n"
           "files, separated by spaces, '-u' by default. Those\n"
           "of the code that is built in are:\n"
           "  -u, --unified: show 3 lines of unified context\n"
           "  -b, --ignore-space-change: ignore changes in\n"
           "    amount of white space\n"
           "  -w, --ignore-all-space: ignore all white space\n"
           "  --ignore-eol-style: ignore changes in EOL style\n"
           "  -U ARG, --context ARG: show ARG lines of context\n"
           "  -p, --show-c-function: show C function name",
           setText<&Options::extensions>},
    Option{OptionId::Old, "old", nullptr, 0, "ARG", "use ARG as the older target", applyOld},
    Option{OptionId::New, "new", nullptr, 0, "ARG", "use ARG as the newer target", setBytes<&Options::newTarget>},
    Option{OptionId::NoDiffAdded, "no-diff-added", nullptr, 0, nullptr, "do not print differences for added files",
           set<&Options::noDiffAdded>},
    Option{OptionId::NoDiffDeleted, "no-diff-deleted", nullptr, 0, nullptr,
           "do not print differences for deleted files", set<&Options::noDiffDeleted>},
    Option{OptionId::IgnoreProperties, "ignore-properties", nullptr, 0, nullptr,
           "ignore properties during the operation", set<&Options::ignoreProperties>},
    Option{OptionId::PropertiesOnly, "properties-only", nullptr, 0, nullptr,
           "show only properties during the operation", set<&Options::propertiesOnly>},
    Option{OptionId::ShowCopiesAsAdds, "show-copies-as-adds", nullptr, 0, nullptr,
           "don't diff copied or moved files with their source", set<&Options::showCopiesAsAdds>},
    Option{OptionId::NoticeAncestry, "notice-ancestry", nullptr, 0, nullptr, "diff unrelated nodes as delete and add",
           set<&Options::noticeAncestry>},
    Option{OptionId::Summarize, "summarize", nullptr, 0, nullptr, "show a summary of the results",
           set<&Options::summarize>},
    Option{OptionId::Git, "git", nullptr, 0, nullptr, "use git's extended diff format", set<&Options::gitFormat>},
    Option{OptionId::PatchCompatible, "patch-compatible", nullptr, 0, nullptr,
           "generate diff suitable for generic third-party\n"
           "patch tools; currently the same as\n"
           "--show-copies-as-adds --ignore-properties",
           set<&Options::patchCompatible>},
    Option{OptionId::Diff, "diff", nullptr, 0, nullptr, "produce diff output", set<&Options::showDiff>},
    Option{OptionId::Graph, "graph", nullptr, 0, nullptr, "draw branches and merges beside the revisions",
           set<&Options::graph>},
    Option{OptionId::Word, "word", nullptr, 0, nullptr, "on a terminal, colour the words that differ",
           set<&Options::colourWords>},
    Option{OptionId::Strip, "strip", nullptr, 0, "ARG",
           "leave out the first ARG components of the paths in\n"
           "the patch; a '/' at their beginning is one itself.\n"
           "Of 'doc/guide/index.html', 1 leaves\n"
           "'guide/index.html' and 2 leaves 'index.html'. By\n"
           "default, 0, paths stay as they are",
           applyStrip},
    Option{OptionId::ReverseDiff, "reverse-diff", nullptr, 0, nullptr, "take the patch's changes back",
           set<&Options::reverseDiff>},
    Option{OptionId::IgnoreWhitespace, "ignore-whitespace", nullptr, 0, nullptr,
           "find lines whatever white space is in them", set<&Options::ignoreWhitespace>},
    Option{OptionId::ShowRevs, "show-revs", nullptr, 0, "ARG",
           "which revisions to list: 'merged' ones, or\n'eligible' ones, which could be", applyShowRevs,
           "merged eligible"},
    Option{OptionId::Log, "log", nullptr, 0, nullptr, "show revision log message, author and date",
           set<&Options::showLog>},
    Option{OptionId::ShowPasswords, "show-passwords", nullptr, 0, nullptr, "show cached passwords",
           set<&Options::showPasswords>},
    Option{OptionId::Viewspec, "x-viewspec", nullptr, 0, "ARG",
           "print the layout of the working copy, in the form\nARG: 'classic' or 'svn11'", applyViewspec,
           "classic svn11"},
    Option{OptionId::FileSystemType, "fs-type", nullptr, 0, "ARG",
           "type of repository: 'fsfs' (default), 'bdb' or 'fsx'", setText<&Options::fileSystemType>, "fsfs bdb fsx"},
    Option{OptionId::CompatibleVersion, "compatible-version", nullptr, 0, "ARG",
           "use repository format compatible with Subversion\n"
           "version ARG (\"1.5.5\", \"1.7\", etc.)",
           applyCompatibleVersion},
    Option{OptionId::Pre14Compatible, "pre-1.4-compatible", nullptr, 0, nullptr, "deprecated; see --compatible-version",
           setCompatible<3>},
    Option{OptionId::Pre15Compatible, "pre-1.5-compatible", nullptr, 0, nullptr, "deprecated; see --compatible-version",
           setCompatible<4>},
    Option{OptionId::Pre16Compatible, "pre-1.6-compatible", nullptr, 0, nullptr, "deprecated; see --compatible-version",
           setCompatible<5>},
    Option{OptionId::BDBTxnNosync, "bdb-txn-nosync", nullptr, 0, nullptr,
           "disable fsync at transaction commit [Berkeley DB]", set<&Options::bdbTransactionNoSync>},
    Option{OptionId::BDBLogKeep, "bdb-log-keep", nullptr, 0, nullptr,
           "disable automatic log file removal [Berkeley DB]", set<&Options::bdbLogKeep>},
    Option{OptionId::Incremental, "incremental", nullptr, 0, nullptr, "give output suitable for concatenation",
           set<&Options::incremental>},
    Option{OptionId::XML, "xml", nullptr, 0, nullptr, "output in XML", set<&Options::xml>},
    Option{OptionId::JSON, "json", nullptr, 0, nullptr, "output in JSON", set<&Options::json>},
    Option{OptionId::Username, "username", nullptr, 0, "ARG", "specify a username ARG",
           setClientText<&HSVNClientSettings::username>},
    Option{OptionId::Password, "password", nullptr, 0, "ARG",
           "specify a password ARG (caution: on many operating\nsystems, other users will be able to see this)",
           setClientText<&HSVNClientSettings::password>},
    Option{OptionId::PasswordFromStdin, "password-from-stdin", nullptr, 0, nullptr, "read password from stdin",
           set<&Options::passwordFromInput>},
    Option{OptionId::NoAuthCache, "no-auth-cache", nullptr, 0, nullptr, "do not cache authentication tokens",
           setClient<&HSVNClientSettings::noAuthCache>},
    Option{OptionId::NonInteractive, "non-interactive", nullptr, 0, nullptr,
           "do no interactive prompting (default is to prompt\nonly if standard input is a terminal device)",
           set<&Options::nonInteractive>},
    Option{OptionId::ForceInteractive, "force-interactive", nullptr, 0, nullptr,
           "do interactive prompting even if standard input\nis not a terminal device",
           set<&Options::forceInteractive>},
    Option{OptionId::NoPager, "no-pager", nullptr, 0, nullptr, "do not show long output in a pager",
           set<&Options::noPager>},
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
           applyTrustFailures, "unknown-ca cn-mismatch expired not-yet-valid other"},
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

constexpr std::array global{OptionId::Username,
                            OptionId::Password,
                            OptionId::PasswordFromStdin,
                            OptionId::NoAuthCache,
                            OptionId::NonInteractive,
                            OptionId::ForceInteractive,
                            OptionId::TrustServerCert,
                            OptionId::TrustServerCertFailures,
                            OptionId::ConfigDir,
                            OptionId::ConfigOption,
                            OptionId::NoPager};

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

std::string Option::synopsis() const { return synopsisWith(alias ? fmt::format(" [--{}]", alias) : ""); }

std::string Option::shortSynopsis() const { return synopsisWith(""); }

std::string Option::synopsisWith(const std::string& furtherName) const
{
    const std::string names =
        (letter != 0 ? fmt::format("-{} [--{}]", letter, name) : fmt::format("--{}", name)) + furtherName;
    return argument ? names + " " + argument : names;
}

std::span<const Option> optionTable() { return table; }

const Option& optionWithId(OptionId id) { return table.at(static_cast<std::size_t>(id)); }

std::span<const OptionId> globalOptions() { return global; }
