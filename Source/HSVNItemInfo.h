#pragma once

#include "HSVNConflict.h"
#include "HSVNDate.h"
#include "HSVNForward.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What only a working copy's item has.
struct HSVNWorkingCopyInfo
{
    std::optional<std::string> changelist{};                   ///< that the item belongs to; nil for none
    HSVNDepth depth = HSVNDepthUnknown;                        ///< of a directory
    std::optional<std::string> movedFrom{};                    ///< absolute path
    std::optional<std::string> movedTo{};                      ///< absolute path
    HSVNSchedule schedule = HSVNScheduleNormal;                ///< what the next commit will do with the item
    std::optional<std::string> copyFromURL{};                  ///< what it is a copy of; nil for no copy
    HSVNRevisionNumber copyFromRevision = HSVNInvalidRevision; ///< none for no copy
    std::optional<std::string> checksum{};                     ///< hexadecimal digits
    bool checksumIsSHA1 = true;                                ///< otherwise MD5
    std::optional<HSVNDate> textTime{};                        ///< of the file when it was last known unchanged
    std::vector<HSVNConflictRecord> conflicts{};               ///< empty for an item without any
    std::optional<std::string> rootPath{};                     ///< absolute path of the working copy
};

/// One item, of a working copy or a repository, with every field that Subversion reports.
struct HSVNItemInfo
{
    std::string target{};             ///< absolute path, or for a URL the path relative to its parent's
    std::optional<std::string> url{}; ///< nil when the item has none
    HSVNRevisionNumber revision = HSVNInvalidRevision;            ///< the one asked for, or that of the working copy
    std::optional<std::string> repositoryRootURL{};               ///< nil when not known
    std::optional<std::string> uuid{};                            ///< of the repository; nil when not known
    HSVNNodeKind kind = HSVNNodeKindUnknown;                      ///< of the item
    std::int64_t size = -1;                                       ///< in the repository, in bytes; -1 when unknown
    HSVNRevisionNumber lastChangedRevision = HSVNInvalidRevision; ///< in which the item last changed
    std::optional<HSVNDate> lastChangedDate{};                    ///< when it did
    std::optional<std::string> lastChangedAuthor{};               ///< who changed it
    HSVNLockRef lock{};                                           ///< of the item asked for; nil when it has none
    std::optional<HSVNWorkingCopyInfo> workingCopy{};             ///< nil for an item of a repository
};
