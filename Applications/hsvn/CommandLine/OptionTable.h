#pragma once

#include "CommandLine/Options.h"

#include <span>
#include <string>
#include <string_view>

class Session;

/// Every option of the program.
enum class OptionId : std::uint8_t
{
    Revision,
    Change,
    Quiet,
    Verbose,
    ShowUpdates,
    NonRecursive,
    Depth,
    Recursive,
    Targets,
    Changelist,
    IgnoreExternals,
    IncludeExternals,
    NoIgnore,
    StopOnCopy,
    UseMergeHistory,
    Limit,
    WithAllRevprops,
    WithNoRevprops,
    WithRevprop,
    Revprop,
    ShowInheritedProps,
    Strict,
    NoNewline,
    IgnoreKeywords,
    Search,
    SearchAnd,
    HumanReadable,
    ShowItem,
    Force,
    DryRun,
    Parents,
    SetDepth,
    Accept,
    AddsAsModification,
    AllowMixedRevisions,
    RecordOnly,
    IgnoreAncestry,
    Reintegrate,
    Relocate,
    NativeEOL,
    AutoProps,
    NoAutoProps,
    KeepLocal,
    PinExternals,
    NoUnlock,
    KeepChangelists,
    Remove,
    RemoveAdded,
    RemoveUnversioned,
    RemoveIgnored,
    VacuumPristines,
    Message,
    File,
    ForceLog,
    Encoding,
    EditorCmd,
    Diff3Cmd,
    DiffCmd,
    InternalDiff,
    Extensions,
    Old,
    New,
    NoDiffAdded,
    NoDiffDeleted,
    IgnoreProperties,
    PropertiesOnly,
    ShowCopiesAsAdds,
    NoticeAncestry,
    Summarize,
    Git,
    PatchCompatible,
    Diff,
    Graph,
    Word,
    Strip,
    ReverseDiff,
    IgnoreWhitespace,
    ShowRevs,
    Log,
    ShowPasswords,
    Viewspec,
    FileSystemType,
    CompatibleVersion,
    Pre14Compatible,
    Pre15Compatible,
    Pre16Compatible,
    BDBTxnNosync,
    BDBLogKeep,
    Incremental,
    XML,
    JSON,
    Username,
    Password,
    PasswordFromStdin,
    NoAuthCache,
    NonInteractive,
    ForceInteractive,
    NoPager,
    TrustServerCert,
    TrustServerCertFailures,
    ConfigDir,
    ConfigOption,
    Help,
    Version
};

/// One option: how it is written, what it says of itself, and what it does. Help, manual page, completions and the
/// parser are all made from the table of these.
struct Option
{
    OptionId id;
    const char* name;        ///< without "--"
    const char* alias;       ///< another long name, or null
    char letter;             ///< short form, or 0
    const char* argument;    ///< null when the option takes none
    const char* description; ///< lines after the first are indented by whoever prints them
    void (*apply)(Session& session, Options& options, const std::string& argument);
    const char* values = nullptr; ///< the words that the argument can be, separated by spaces; null for any

    /// "-r [--revision] ARG"
    std::string synopsis() const;
    /// The same without the alias.
    std::string shortSynopsis() const;
    std::string synopsisWith(const std::string& furtherName) const;
};

/// All options, each once, in the order of `OptionId`.
std::span<const Option> optionTable();
const Option& optionWithId(OptionId id);
/// The options that every subcommand accepts.
std::span<const OptionId> globalOptions();
