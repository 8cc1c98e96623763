#pragma once

#include "HSVNConflict.h"
#include "HSVNTypes.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

// Choices of the verbs on working copies that have no option class.

/// Choices of `HSVNContext::switchTo`.
struct HSVNSwitchChoices
{
    HSVNDepth depth = HSVNDepthUnknown; ///< unknown keeps what the working copy has
    bool depthIsSticky = false;         ///< the working copy keeps the depth
    bool processExternals = true;       ///< bring externals along
    bool allowObstructions = false;     ///< unversioned items in the way become versioned, their contents unchanged
    bool ignoreAncestry = false;        ///< to an item without a common ancestor, too
    HSVNConflictChooser chooser{};      ///< asked how each conflict is settled; nil leaves all
};

/// Choices of `HSVNContext::relocate`.
struct HSVNRelocateChoices
{
    bool processExternals = true; ///< working copies of externals, too
};

/// Choices of `HSVNContext::cleanUp`.
struct HSVNCleanUpChoices
{
    bool breakLocks = true;        ///< of the working copy, left by what was interrupted
    bool fixTimestamps = true;     ///< so that unchanged files are known as such faster
    bool clearWebCache = true;     ///< what was kept of servers reached by HTTP
    bool vacuumPristines = true;   ///< remove unchanged texts of which no file is a version any more
    bool includeExternals = false; ///< working copies of externals, too
};

/// Choices of `HSVNContext::vacuum`.
struct HSVNVacuumChoices
{
    bool removeUnversioned = false; ///< files and directories that are neither versioned nor ignored
    bool removeIgnored = false;     ///< ignored files and directories
    bool fixTimestamps = false;     ///< so that unchanged files are known as such faster
    bool vacuumPristines = false;   ///< of which no file is a version any more
    bool includeExternals = false;  ///< working copies of externals, too
};

/// Choices of `HSVNContext::addToChangelist` and `HSVNContext::removeFromChangelists`.
struct HSVNChangelistChoices
{
    HSVNDepth depth = HSVNDepthEmpty;       ///< how far below the targets
    std::vector<std::string> changelists{}; ///< only items of these; none means all
};

/// Choices of `HSVNContext::setProperty`.
struct HSVNSetPropertyChoices
{
    HSVNDepth depth = HSVNDepthEmpty;       ///< how far below the targets
    bool force = false;                     ///< do not ask whether name and value make sense for the item
    std::vector<std::string> changelists{}; ///< only items of these; none means all
};

/// Choices of `HSVNContext::setRevisionProperty`.
struct HSVNSetRevisionPropertyChoices
{
    bool force = false; ///< allow an author's name with a line end
    /// What the property has to be until now, else nothing changes: a value, or nil within for a property that the
    /// revision does not have. Nil outside means that it may be anything.
    std::optional<std::optional<std::string>> formerValue{};
};

/// Choices of the `HSVNContext::setProperty` of a URL.
struct HSVNCommitPropertyChoices
{
    bool force = false;                   ///< do not ask whether name and value make sense for the item
    std::optional<std::string> message{}; ///< the log message, UTF-8; nil asks the delegate
    std::map<std::string, std::string>
        revisionProperties{}; ///< further ones by name, values as bytes; none of Subversion's own
};

/// Choices of `HSVNContext::patch`.
struct HSVNPatchChoices
{
    bool dryRun = false;           ///< tell what would be done and leave the working copy as it is
    int strip = 0;                 ///< how many leading components the patch's paths lose
    bool reverse = false;          ///< take the patch's changes back
    bool ignoreWhitespace = false; ///< find a change's place whatever white space its lines have
};

/// Choices of `HSVNContext::conflicts`.
struct HSVNConflictsChoices
{
    HSVNDepth depth = HSVNDepthInfinity; ///< how far below the target
};

/// Choices of `HSVNContext::makeDirectories`.
struct HSVNMakeDirectoriesChoices
{
    bool makeParents = false;             ///< missing parents, too
    std::optional<std::string> message{}; ///< the log message, UTF-8; nil asks the delegate
    /// Further revision properties by name, values as bytes; none of Subversion's own.
    std::map<std::string, std::string> revisionProperties{};
};
