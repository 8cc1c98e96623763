#pragma once

#include "HSVNContext.h"
#include "HSVNForward.h"
#include "HSVNRevision.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"
#include "HSVNWorkingCopyPlace.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// One item's status with every field that Subversion reports, as lists of whole working copies show it.
struct HSVNItemStatus : HSVNWorkingCopyPlace
{
    std::string path; ///< as the target was given, relative targets relative
    std::string absolutePath;
    HSVNNodeKind kind = HSVNNodeKindUnknown;
    std::int64_t size = -1;                             ///< of the file on disk, in bytes; -1 when unknown
    bool versioned = false;                             ///< known to the working copy
    bool conflicted = false;                            ///< in any conflict
    bool treeConflicted = false;                        ///< found out for conflicted items only
    HSVNStatusKind nodeStatus = HSVNStatusKindNone;     ///< of the item as a whole
    HSVNStatusKind textStatus = HSVNStatusKindNone;     ///< of its text alone
    HSVNStatusKind propertyStatus = HSVNStatusKindNone; ///< of its properties alone
    bool locked = false;                                ///< the working copy is locked for writing
    bool copied = false;                                ///< added with history
    bool switched = false;                              ///< its URL is not that of its place
    bool fileExternal = false;                          ///< a file that an externals definition placed
    // Of an item that is deleted: what it was until now.
    HSVNRevisionNumber revision = HSVNInvalidRevision;
    HSVNRevisionNumber changedRevision = HSVNInvalidRevision; ///< in which it last changed
    std::optional<HSVNDate> changedDate;                      ///< when it did
    std::optional<std::string> changedAuthor;                 ///< who changed it
    HSVNLockRef lock;                                         ///< the working copy's lock token
    // The repository's side; none when it was not asked.
    HSVNStatusKind repositoryNodeStatus = HSVNStatusKindNone;
    HSVNStatusKind repositoryTextStatus = HSVNStatusKindNone;
    HSVNStatusKind repositoryPropertyStatus = HSVNStatusKindNone;
    HSVNLockRef repositoryLock; ///< nil when it has none
};

/// What a status scan looks at.
struct HSVNItemStatusOptions
{
    HSVNDepth depth = HSVNDepthUnknown;   ///< unknown means all that the working copy has
    bool getAll = false;                  ///< unchanged items too
    bool contactRepository = false;       ///< compare with the repository too
    bool matchIgnorePatterns = true;      ///< leave ignored items out
    bool processExternals = true;         ///< go on into externals
    std::vector<std::string> changelists; ///< only items of these; none means all
};

using HSVNItemStatusReceiver = std::function<void(const HSVNItemStatus& status)>;

/// Reports the status of items in the order in which Subversion finds them.
///
/// @param target    a local path; see HSVNArguments
/// @param revision  what to compare with when the repository is asked; not nil ("revision != nil")
/// @param receiver  called for each item; an exception stops the scan and reaches the caller;
///                  not nil ("receiver != nil")
/// @param context   not nil ("context != nil")
/// @return the revision compared with; `HSVNInvalidRevision` when the repository was not asked
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_status6; not offered by lines before 1.9.
HSVN_EXPORT HSVNRevisionNumber HSVNScanItemStatus(const std::string& target, const HSVNRevisionRef& revision,
                                                  const HSVNItemStatusOptions& options,
                                                  const HSVNItemStatusReceiver& receiver,
                                                  const HSVNContextRef& context);
