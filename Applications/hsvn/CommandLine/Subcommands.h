#pragma once

#include "CommandLine/OptionTable.h"

#include <span>
#include <string_view>
#include <utility>
#include <vector>

class Session;

/// How many revisions -r and -c may name.
enum class RevisionUse : std::uint8_t
{
    One,   ///< one revision
    Range, ///< one, or a range
    Ranges ///< several of either
};

/// One subcommand: its names, what it says of itself, the options it takes, and what it does.
struct Subcommand
{
    const char* name;
    std::vector<const char*> aliases;
    const char* summary;                                        ///< one sentence
    const char* usage;                                          ///< lines of arguments, one per form
    const char* details;                                        ///< the explanation, paragraphs of lines; may be empty
    std::vector<OptionId> options;                              ///< beside the global ones, in the order of `help`
    std::vector<std::pair<OptionId, const char*>> descriptions; ///< of options that mean something of their own here
    void (*run)(Session& session);
    RevisionUse revisionUse = RevisionUse::One;   ///< what -r and -c may name
    HSVNDepth nonRecursiveDepth = HSVNDepthFiles; ///< what -N means
    /// One of Subversion's program for repositories, not of its client: the global options mean nothing to it.
    bool isAdministrative = false;

    bool accepts(OptionId option) const;
    /// The option's description here.
    const char* descriptionOf(const Option& option) const;
    /// "status (stat, st)"
    std::string heading() const;
};

// One source file each.
const Subcommand& addSubcommand();
const Subcommand& authSubcommand();
const Subcommand& blameSubcommand();
const Subcommand& catSubcommand();
const Subcommand& changelistSubcommand();
const Subcommand& checkoutSubcommand();
const Subcommand& cleanupSubcommand();
const Subcommand& commitSubcommand();
const Subcommand& copySubcommand();
const Subcommand& createSubcommand();
const Subcommand& deleteSubcommand();
const Subcommand& diffSubcommand();
const Subcommand& exportSubcommand();
const Subcommand& helpSubcommand();
const Subcommand& importSubcommand();
const Subcommand& infoSubcommand();
const Subcommand& listSubcommand();
const Subcommand& lockSubcommand();
const Subcommand& logSubcommand();
const Subcommand& mergeSubcommand();
const Subcommand& mergeinfoSubcommand();
const Subcommand& mkdirSubcommand();
const Subcommand& moveSubcommand();
const Subcommand& patchSubcommand();
const Subcommand& propdelSubcommand();
const Subcommand& propeditSubcommand();
const Subcommand& propgetSubcommand();
const Subcommand& proplistSubcommand();
const Subcommand& propsetSubcommand();
const Subcommand& relocateSubcommand();
const Subcommand& resolveSubcommand();
const Subcommand& resolvedSubcommand();
const Subcommand& revertSubcommand();
const Subcommand& statusSubcommand();
const Subcommand& switchSubcommand();
const Subcommand& unlockSubcommand();
const Subcommand& updateSubcommand();
const Subcommand& upgradeSubcommand();

/// All subcommands in the order of `help`.
std::span<const Subcommand* const> subcommands();
/// The names of all subcommands, without aliases.
std::vector<const char*> subcommandNames();
/// By name or alias; null when there is none.
const Subcommand* subcommandNamed(std::string_view name);
