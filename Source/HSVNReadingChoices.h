#pragma once

#include "HSVNForward.h"
#include "HSVNTarget.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Choices of the verbs that read and have no option class.

/// Choices of `HSVNContext::info`.
struct HSVNInfoChoices
{
    HSVNDepth depth = HSVNDepthEmpty;       ///< how far below the target
    bool includeExternals = false;          ///< what externals definitions place, too
    std::vector<std::string> changelists{}; ///< only items of these; none means all
};

/// Choices of `HSVNContext::list`.
struct HSVNListChoices
{
    HSVNDepth depth = HSVNDepthImmediates; ///< how far below the target
    bool allFields = true;                 ///< size, revision, date and author, too, not the kind alone
    bool fetchLocks = false;               ///< tell each item's lock
    bool includeExternals = false;         ///< list what externals definitions place, too
    std::vector<std::string> patterns{};   ///< only items whose name matches one of these globs, case and accents
                                           ///< aside; none means all
};

/// Choices of `HSVNContext::contents`.
struct HSVNContentsChoices
{
    bool expandKeywords = true; ///< translate keywords and line ends as in a working copy
};

/// Choices of `HSVNContext::blame`.
struct HSVNBlameChoices
{
    bool ignoreContentType = false;       ///< read files of binary types, too
    bool mergedRevisions = false;         ///< follow merges to their sources
    std::vector<std::string> arguments{}; ///< such as "-w"; see `HSVNContext::checkBlameArguments`
};

/// Choices of `HSVNContext::properties` and `HSVNContext::property`.
struct HSVNPropertiesChoices
{
    HSVNDepth depth = HSVNDepthEmpty;       ///< how far below the target
    bool inherited = false;                 ///< the target's inherited properties, too
    std::vector<std::string> changelists{}; ///< only items of these; none means all
};

/// Who compares files for the text of `HSVNContext::diff`.
enum class HSVNDiffProgram : std::uint8_t
{
    Internal,   ///< Subversion itself, whatever the user's configuration says
    Configured, ///< what the configuration names ("diff-cmd", "diff-extensions"), or Subversion where it names none
    External    ///< the program that the choices name
};

/// Choices of `HSVNContext::diff`, `HSVNContext::treeDiff` and `HSVNContext::diffSummary`.
struct HSVNDiffChoices
{
    HSVNDepth depth = HSVNDepthUnknown;     ///< unknown means everything below
    bool ignoreAncestry = true;             ///< compare unrelated items of one kind as related
    std::vector<std::string> changelists{}; ///< of a working copy's items only those of these; none means all
    // How a text shows the differences; a summary has no use for what follows.
    bool omitAdded = false;         ///< leave files out that were added
    bool omitDeleted = false;       ///< leave files out that were deleted
    bool copiesAsAdds = false;      ///< show copies and moves whole, not beside their source
    bool ignoreContentType = false; ///< compare files of binary types as texts
    bool ignoreProperties = false;  ///< show texts alone; not together with `propertiesOnly`
    bool propertiesOnly = false;    ///< show properties alone
    /// With the headers of Git, which name copies and modes. Names in them are below the repository's root: `patch`
    /// finds its items by them, so that a text of a working copy of "/trunk" is applied with a `strip` of 1.
    bool gitFormat = false;
    /// The local directory that names of local items are told relative to, as a patch for somebody else needs it; they
    /// are at or below it, else HSVNException. Nil: as the targets are given. Git's own headers have names of their
    /// own.
    std::optional<HSVNTarget> relativeTo{};
    HSVNDiffProgram program =
        HSVNDiffProgram::Internal;        ///< makes no difference to `treeDiff`, which is always internal
    std::optional<std::string> command{}; ///< the external program, as the configuration would name it; not nil then
    /// What compares files is given these; nil means none, or of what is configured those of the configuration.
    std::optional<std::vector<std::string>> arguments{};
};

/// Choices of `HSVNContext::mergedRevisions`.
struct HSVNMergedRevisionsChoices
{
    bool eligible = false; ///< those that could be merged instead of those that are
    /// Only revisions of the source from the first to the second, both among them; nil at both ends means all.
    std::pair<HSVNRevisionRef, HSVNRevisionRef> range{};
    HSVNDepth depth = HSVNDepthEmpty;                     ///< also what was merged below the target
    bool changedPaths = true;                             ///< tell which paths each revision changed
    std::optional<std::vector<std::string>> properties{}; ///< names of the revision properties wanted; nil means all
};
