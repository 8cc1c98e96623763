#pragma once

#include "HSVNContext.h"
#include "HSVNForward.h"
#include "HSVNRevisionSpec.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// One item of a repository's listing.
struct HSVNListedItem
{
    std::string path;         ///< below the target; empty for the target itself
    std::string absolutePath; ///< of the target, from the repository's root on
    HSVNNodeKind kind = HSVNNodeKindUnknown;
    std::int64_t size = -1;                            ///< in bytes; -1 for folders and when it was not asked for
    bool hasProperties = false;                        ///< has any versioned property
    HSVNRevisionNumber revision = HSVNInvalidRevision; ///< of the last change, as are date and author
    std::optional<HSVNDate> date;
    std::optional<std::string> author;
    HSVNLockRef lock; ///< nil when it has none or none were asked for
    // Of an item that an externals definition brings in.
    std::optional<std::string> externalParentURL; ///< of the folder with the definition
    std::optional<std::string> externalTarget;    ///< where the definition places it
};

/// What is listed, and what is told of each item.
struct HSVNListingOptions
{
    HSVNDepth depth = HSVNDepthImmediates; ///< how far below the target
    bool allFields = false;                ///< size, revision, date and author too, not the kind alone
    bool fetchLocks = false;               ///< tell each item's lock
    bool includeExternals = false;         ///< list what externals definitions place, too
    std::vector<std::string> patterns;     ///< only items whose name matches one of these globs, case and accents
                                           ///< aside; none means all
};

using HSVNListingReceiver = std::function<void(const HSVNListedItem& item)>;

/// Lists a repository's folder, or one file.
///
/// @param target    a local path, whose URL is listed, or a URL; see HSVNArguments
/// @param revision  not nil ("revision != nil")
/// @param receiver  called for each item; an exception stops the operation and reaches the caller;
///                  not nil ("receiver != nil")
/// @param context   not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_list4; not offered by lines before 1.10.
HSVN_EXPORT void HSVNListItems(const std::string& target, const HSVNRevisionSpecRef& revision,
                               const HSVNListingOptions& options, const HSVNListingReceiver& receiver,
                               const HSVNContextRef& context);
