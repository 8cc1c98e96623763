#pragma once

#include "HSVNContext.h"
#include "HSVNRevision.h"
#include "HSVNTypes.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// One path that a revision changed.
struct HSVNChangedPath
{
    std::string path;  ///< from the repository's root on
    char action = 'M'; ///< A, D, R or M
    HSVNNodeKind kind = HSVNNodeKindUnknown;
    std::optional<std::string> copyFromPath;                   ///< what it is a copy of; nil for no copy
    HSVNRevisionNumber copyFromRevision = HSVNInvalidRevision; ///< none for no copy
    std::optional<bool> textModified;                          ///< nil when the server does not say
    std::optional<bool> propertiesModified;                    ///< nil when the server does not say
};

/// One revision of a log with every revision property that was asked for.
struct HSVNLogEntry
{
    HSVNRevisionNumber revision = HSVNInvalidRevision; ///< none ends the entries merged by an earlier one
    std::map<std::string, std::string> properties;     ///< by name: "svn:author", "svn:date", "svn:log" and others
    std::optional<std::vector<HSVNChangedPath>> changedPaths; ///< by path; nil when they were not asked for
    bool hasChildren = false;                                 ///< entries that this one merged follow
    bool isSubtractiveMerge = false;                          ///< those were merged in reverse
};

/// Which part of the history is read, and what is told of each revision.
struct HSVNLogReadingOptions
{
    /// The ranges, each in its own direction.
    std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>> ranges;
    int limit = 0;                ///< most entries; 0 means all
    bool changedPaths = false;    ///< tell which paths each revision changed
    bool stopOnCopy = false;      ///< do not go on to what an item is a copy of
    bool mergedRevisions = false; ///< tell the revisions that a revision merged, too
    /// Names of the revision properties wanted; nil means all.
    std::optional<std::vector<std::string>> properties;
};

using HSVNLogEntryReceiver = std::function<void(const HSVNLogEntry& entry)>;

/// Reads the history of items.
///
/// @param targets      one local path, or a URL and paths relative to it; see HSVNArguments
/// @param pegRevision  where the first target is looked up; not nil ("pegRevision != nil")
/// @param receiver     called for each entry; an exception stops the operation and reaches the caller;
///                     not nil ("receiver != nil")
/// @param context      not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_log5; not offered by lines before 1.6.
HSVN_EXPORT void HSVNReadLog(const std::vector<std::string>& targets, const HSVNRevisionRef& pegRevision,
                             const HSVNLogReadingOptions& options, const HSVNLogEntryReceiver& receiver,
                             const HSVNContextRef& context);
