#pragma once

#include <HSVN/HSVN.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A revision argument: one revision, or a range of two.
struct RevisionArgument
{
    HSVNRevisionRef start = HSVNRevision::UNSPECIFIED();
    HSVNRevisionRef end = HSVNRevision::UNSPECIFIED();
};

/// How --accept settles conflicts.
enum class Accept : std::uint8_t
{
    Unspecified,
    Postpone,
    Working,
    Base,
    MineConflict,
    TheirsConflict,
    MineFull,
    TheirsFull,
    Edit,
    Launch,
    Recommended
};

/// Which revisions --show-revs asks for.
enum class ShownRevisions : std::uint8_t
{
    Unspecified,
    Merged,
    Eligible
};

/// How --x-viewspec writes the layout of a working copy down.
enum class Viewspec : std::uint8_t
{
    Unspecified,
    Classic, ///< as the script of that name reads it
    Svn11    ///< as command lines that make it
};

/// A revision property of --with-revprop.
struct RevisionPropertyArgument
{
    std::string name;
    std::optional<std::string> value; ///< what follows "="
};

/// What the options of a command line ask for. There is one of it, so its fields stand by subject, not by size.
struct Options // NOLINT(clang-analyzer-optin.performance.Padding)
{
    // Revisions
    std::vector<RevisionArgument> revisions; ///< of -r and -c, in order
    std::optional<long> missingRevision{};   ///< one of them that is no revision's number, where the last one stands
    bool usedRevision = false;
    bool usedChange = false;

    // What is looked at
    HSVNDepth depth = HSVNDepthUnknown;
    bool nonRecursive = false;
    std::vector<std::string> changelists;
    std::vector<std::string> targets;             ///< of --targets files
    std::vector<std::vector<std::string>> search; ///< of --search each, with the --search-and that follow it
    bool ignoreExternals = false;
    bool includeExternals = false;
    bool noIgnore = false;
    bool stopOnCopy = false;
    bool useMergeHistory = false;
    bool showUpdates = false;
    bool revisionProperty = false;
    bool showInheritedProperties = false;
    bool ignoreKeywords = false;
    std::optional<int> limit;
    bool allRevisionProperties = false;
    bool noRevisionProperties = false;
    std::vector<RevisionPropertyArgument> revisionProperties;

    // What is changed
    bool force = false;
    bool dryRun = false;
    bool parents = false;
    HSVNDepth setDepth = HSVNDepthUnknown; ///< HSVNDepthExclude among others
    Accept accept = Accept::Unspecified;
    bool addsAsModification = false;
    bool allowMixedRevisions = false;
    bool recordOnly = false;
    bool ignoreAncestry = false;
    bool reintegrate = false;
    bool relocate = false;
    std::optional<std::string> nativeEOL; ///< "LF", "CR" or "CRLF"
    bool autoProperties = false;
    bool noAutoProperties = false;
    bool keepLocal = false;
    bool pinExternals = false;
    bool noUnlock = false;
    bool keepChangelists = false;
    bool remove = false;
    bool removeAdded = false;
    bool removeUnversioned = false;
    bool removeIgnored = false;
    bool vacuumPristines = false;

    // Log messages and other values; bytes in `encoding`, or in the locale's where there is none
    std::optional<std::string> message;
    std::optional<std::string> file;         ///< of -F, its path as UTF-8
    std::optional<std::string> fileContents; ///< of -F
    bool forceLog = false;
    std::optional<std::string> encoding;

    // Programs to run, in the locale's encoding
    std::optional<std::string> editorCommand;
    std::optional<std::string> mergeCommand;
    std::optional<std::string> diffCommand;

    // Differences
    bool internalDiff = false;
    std::optional<std::string> extensions;
    std::optional<std::string> oldTarget;
    std::optional<std::string> newTarget;
    bool noDiffAdded = false;
    bool noDiffDeleted = false;
    bool ignoreProperties = false;
    bool propertiesOnly = false;
    bool showCopiesAsAdds = false;
    bool noticeAncestry = false;
    bool summarize = false;
    bool gitFormat = false;
    bool patchCompatible = false;
    bool showDiff = false;
    bool graph = false;
    bool colourWords = false;

    // A patch
    int strip = 0;
    bool reverseDiff = false;
    bool ignoreWhitespace = false;

    // A new repository
    std::optional<std::string> fileSystemType;
    std::optional<HSVNVersion> compatibleVersion;
    bool bdbTransactionNoSync = false;
    bool bdbLogKeep = false;

    // How it is shown
    bool quiet = false;
    bool verbose = false;
    bool xml = false;
    bool json = false;
    bool incremental = false;
    bool humanReadable = false;
    bool noNewline = false;
    bool noPager = false;
    std::optional<std::string> showItem;
    ShownRevisions shownRevisions = ShownRevisions::Unspecified;
    bool showLog = false; ///< of merged revisions
    bool showPasswords = false;
    Viewspec viewspec = Viewspec::Unspecified;

    // The client
    HSVNClientSettings client;
    bool forceInteractive = false;
    bool nonInteractive = false;
    bool passwordFromInput = false;

    bool help = false;
    bool version = false;

    /// The one revision of subcommands that take one.
    const HSVNRevisionRef& startRevision() const { return revisions.front().start; }
    const HSVNRevisionRef& endRevision() const { return revisions.front().end; }
    /// The depth asked for, or another when none was.
    HSVNDepth depthOr(HSVNDepth other) const { return depth == HSVNDepthUnknown ? other : depth; }
    /// The depth that the working copy shall keep, or else the one asked for.
    HSVNDepth depthOfUpdate() const { return setDepth == HSVNDepthUnknown ? depth : setDepth; }
};
