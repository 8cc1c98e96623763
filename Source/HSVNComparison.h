#pragma once

#include "HSVNContents.h"
#include "HSVNContext.h"
#include "HSVNRevision.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Comparisons of items in two places or in two revisions, as a text or item by item. Targets are texts; see
// HSVNArguments.

/// What is compared, and how the differences are shown.
struct HSVNComparisonOptions
{
    HSVNDepth depth = HSVNDepthUnknown;   ///< unknown means everything below
    bool ignoreAncestry = true;           ///< compare unrelated items of one kind as related
    std::vector<std::string> changelists; ///< of a working copy's items only those of these; none means all
    // How a text shows the differences; a summary has no use for what follows.
    bool omitAdded = false;         ///< leave files out that were added
    bool omitDeleted = false;       ///< leave files out that were deleted
    bool copiesAsAdds = false;      ///< show copies and moves whole, not beside their source
    bool ignoreContentType = false; ///< compare files of binary types as texts
    bool ignoreProperties = false;  ///< not together with `propertiesOnly`
    bool propertiesOnly = false;
    bool gitFormat = false; ///< with the headers of Git, which name copies and modes
    /// Of the program, external or not, that compares files; nil means what the configuration says.
    std::optional<std::vector<std::string>> arguments;
};

/// Where the text of a comparison goes. Headers are in the locale's encoding, lines are the files' own bytes.
///
/// Nil means the process's own stream, past all that the program itself has not flushed yet. An external program then
/// writes to it directly; a receiver gets what such a program wrote when it has ended well.
struct HSVNComparisonReceivers
{
    HSVNContentsReceiver output; ///< called for each piece, in order; an exception stops the operation
    HSVNContentsReceiver errors; ///< the same for what an external program writes to its standard error
};

/// One item that differs.
struct HSVNDifference
{
    std::string path;                           ///< below the target; "" is the target itself
    HSVNStatusKind status = HSVNStatusKindNone; ///< Added, Deleted, Modified, or None
    bool propertiesModified = false;            ///< of an item that is on both sides
    HSVNNodeKind kind = HSVNNodeKindUnknown;
};

using HSVNDifferenceReceiver = std::function<void(const HSVNDifference& difference)>;

/// Writes the differences of two items in the unified format.
///
/// @param first      a local path or a URL, and its revision; not nil ("revision != nil")
/// @param second     the same of the item that it became
/// @param receivers  take the text; an exception reaches the caller
/// @param context    not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_diff7; not offered by lines before 1.11.
HSVN_EXPORT void HSVNCompareItems(const std::pair<std::string, HSVNRevisionRef>& first,
                                  const std::pair<std::string, HSVNRevisionRef>& second,
                                  const HSVNComparisonOptions& options, const HSVNComparisonReceivers& receivers,
                                  const HSVNContextRef& context);
/// The same of one item in two revisions.
///
/// @param target       a local path or a URL
/// @param pegRevision  where the target is looked up; not nil ("pegRevision != nil")
/// @param revisions    the older one and the younger one; not nil ("revision != nil")
/// Stands for svn_client_diff_peg7; not offered by lines before 1.11.
HSVN_EXPORT void HSVNCompareRevisions(const std::string& target, const HSVNRevisionRef& pegRevision,
                                      const std::pair<HSVNRevisionRef, HSVNRevisionRef>& revisions,
                                      const HSVNComparisonOptions& options, const HSVNComparisonReceivers& receivers,
                                      const HSVNContextRef& context);

/// Tells which items differ, without comparing their lines; otherwise as `HSVNCompareItems`.
///
/// @param receiver  called for each item; an exception stops the operation and reaches the caller;
///                  not nil ("receiver != nil")
/// Stands for svn_client_diff_summarize2; not offered by lines before 1.5.
HSVN_EXPORT void HSVNSummarizeItems(const std::pair<std::string, HSVNRevisionRef>& first,
                                    const std::pair<std::string, HSVNRevisionRef>& second,
                                    const HSVNComparisonOptions& options, const HSVNDifferenceReceiver& receiver,
                                    const HSVNContextRef& context);
/// The same of one item in two revisions; otherwise as `HSVNCompareRevisions`.
///
/// Stands for svn_client_diff_summarize_peg2; not offered by lines before 1.5.
HSVN_EXPORT void HSVNSummarizeRevisions(const std::string& target, const HSVNRevisionRef& pegRevision,
                                        const std::pair<HSVNRevisionRef, HSVNRevisionRef>& revisions,
                                        const HSVNComparisonOptions& options, const HSVNDifferenceReceiver& receiver,
                                        const HSVNContextRef& context);
