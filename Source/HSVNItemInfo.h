#pragma once

#include "HSVNConflict.h"
#include "HSVNContext.h"
#include "HSVNForward.h"
#include "HSVNRevisionSpec.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"
#include "HSVNWorkingCopyPlace.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// What only a working copy's item has.
struct HSVNWorkingCopyInfo : HSVNWorkingCopyPlace
{
    HSVNSchedule schedule = HSVNScheduleNormal;                ///< what the next commit will do with the item
    std::optional<std::string> copyFromURL;                    ///< what it is a copy of; nil for no copy
    HSVNRevisionNumber copyFromRevision = HSVNInvalidRevision; ///< none for no copy
    std::optional<std::string> checksum;                       ///< hexadecimal digits
    bool checksumIsSHA1 = true;                                ///< otherwise MD5
    std::optional<HSVNDate> textTime;                          ///< of the file when it was last known unchanged
    std::vector<HSVNConflictRecord> conflicts;                 ///< empty for an item without any
    std::optional<std::string> rootPath;                       ///< absolute path of the working copy
};

/// One item, of a working copy or a repository, with every field that Subversion reports.
struct HSVNItemInfo
{
    std::string target;             ///< absolute path, or for a URL the path relative to its parent's
    std::optional<std::string> url; ///< nil when the item has none
    HSVNRevisionNumber revision = HSVNInvalidRevision; ///< the one asked for, or that of the working copy
    std::optional<std::string> repositoryRootURL;      ///< nil when not known
    std::optional<std::string> uuid;                   ///< of the repository; nil when not known
    HSVNNodeKind kind = HSVNNodeKindUnknown;
    std::int64_t size = -1;                                       ///< in the repository, in bytes; -1 when unknown
    HSVNRevisionNumber lastChangedRevision = HSVNInvalidRevision; ///< in which the item last changed
    std::optional<HSVNDate> lastChangedDate;                      ///< when it did
    std::optional<std::string> lastChangedAuthor;                 ///< who changed it
    HSVNLockRef lock;                                             ///< of the item asked for; nil when it has none
    std::optional<HSVNWorkingCopyInfo> workingCopy;               ///< nil for an item of a repository
};

/// Which items are asked for.
struct HSVNItemInfoOptions
{
    HSVNDepth depth = HSVNDepthEmpty;     ///< how far below the target
    bool includeExternals = false;        ///< what externals definitions place, too
    std::vector<std::string> changelists; ///< only items of these; none means all
};

using HSVNItemInfoReceiver = std::function<void(const HSVNItemInfo& info)>;

/// Reports what is known of items, without asking the repository for a working copy's unless the revision needs it.
///
/// @param target    a local path or a URL; see HSVNArguments
/// @param revision  not nil ("revision != nil")
/// @param receiver  called for each item; an exception stops the operation and reaches the caller;
///                  not nil ("receiver != nil")
/// @param context   not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_info4; not offered by lines before 1.9.
HSVN_EXPORT void HSVNReadItemInfo(const std::string& target, const HSVNRevisionSpecRef& revision,
                                  const HSVNItemInfoOptions& options, const HSVNItemInfoReceiver& receiver,
                                  const HSVNContextRef& context);
