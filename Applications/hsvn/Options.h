#pragma once

#include <HSVN/HSVN.h>

#include <optional>
#include <string>
#include <vector>

/// A revision argument: one revision, or a range of two.
struct RevisionArgument
{
    HSVNRevisionRef start = HSVNRevision::UNSPECIFIED();
    HSVNRevisionRef end = HSVNRevision::UNSPECIFIED();
};

/// What the options of a command line ask for.
struct Options
{
    // Revisions
    std::vector<RevisionArgument> revisions; ///< of -r and -c, in order
    bool usedRevision = false;
    bool usedChange = false;

    // What is looked at
    HSVNDepth depth = HSVNDepthUnknown;
    bool nonRecursive = false;
    std::vector<std::string> changelists;
    std::vector<std::string> targets; ///< of --targets files
    std::vector<std::string> search;
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
    std::vector<std::string> revisionProperties; ///< names, of --with-revprop

    // How it is shown
    bool quiet = false;
    bool verbose = false;
    bool xml = false;
    bool json = false;
    bool incremental = false;
    bool humanReadable = false;
    bool noNewline = false;
    std::optional<std::string> showItem;

    // The client
    HSVNClientSettings client;
    bool forceInteractive = false;
    bool passwordFromInput = false;

    bool help = false;
    bool version = false;

    /// The one revision of subcommands that take one.
    const HSVNRevisionRef& startRevision() const { return revisions.front().start; }
    const HSVNRevisionRef& endRevision() const { return revisions.front().end; }
    /// The depth asked for, or another when none was.
    HSVNDepth depthOr(HSVNDepth other) const { return depth == HSVNDepthUnknown ? other : depth; }
};
