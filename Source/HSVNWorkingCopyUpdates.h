#pragma once

#include "HSVNConflictedItem.h"
#include "HSVNContext.h"
#include "HSVNRevisionSpec.h"
#include "HSVNTypes.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Operations that bring a working copy, or a folder outside of any, to what the repository holds, with every choice
// that Subversion gives. Targets are texts; see HSVNArguments. Progress is told to the context's delegate; conflicts
// are left in the working copy, and `HSVNConflictedItem` resolves them.

/// How an update, a check-out or a switch goes about.
struct HSVNItemUpdateOptions
{
    HSVNDepth depth = HSVNDepthUnknown; ///< unknown keeps what the working copy has
    bool depthIsSticky = false;         ///< the working copy keeps the depth
    bool processExternals = true;       ///< bring externals along
    /// Unversioned items in the way become versioned, their contents unchanged.
    bool allowObstructions = false;
    /// A local addition where the repository adds the same kind of item is a change of it, not a conflict.
    bool addsAsModification = false;
    bool makeParents = false;    ///< check missing parent folders out, at depth empty
    bool ignoreAncestry = false; ///< of a switch: to an item without a common ancestor
};

/// How an export goes about.
struct HSVNItemExportOptions
{
    HSVNDepth depth = HSVNDepthInfinity;
    bool overwrite = false;       ///< what is in the way
    bool processExternals = true; ///< export what externals definitions place, too
    bool expandKeywords = true;   ///< as checked-out files have them
    /// "LF", "CR" or "CRLF", for files with native line ends; nil means the system's own.
    std::optional<std::string> nativeEndOfLine{};
};

/// Answers how a conflict is settled, by a choice from `Postpone` to `MergedText`. An exception ends the operation and
/// reaches the caller.
///
/// @param path  of the item, absolute
using HSVNMergeConflictChooser = std::function<HSVNResolutionChoice(const std::string& path, HSVNConflictKind kind)>;

/// How a merge goes about.
struct HSVNItemMergeOptions
{
    HSVNDepth depth = HSVNDepthUnknown;
    bool ignoreMergeInfo = false;         ///< neither read nor write what was merged before
    bool diffIgnoreAncestry = false;      ///< compare unrelated items of one kind as related
    bool forceDelete = false;             ///< delete items although they are changed or unversioned
    bool recordOnly = false;              ///< write down what was merged, and merge nothing else
    bool dryRun = false;                  ///< tell what would be done and leave the working copy as it is
    bool allowMixedRevisions = false;     ///< merge into a working copy of several revisions
    std::vector<std::string> arguments{}; ///< of the program, external or not, that merges texts
    /// Asked how each conflict is settled while the merge goes on; nil leaves all.
    HSVNMergeConflictChooser chooser{};
};

/// Brings working-copy items to a revision.
///
/// @param targets   local paths of versioned items, or of items that their parents' repository has
/// @param revision  not nil ("revision != nil")
/// @param context   not nil ("context != nil")
/// @return the revision of each target, in order; `HSVNInvalidRevision` for one that was skipped
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_update4; not offered by lines before 1.7.
HSVN_EXPORT std::vector<HSVNRevisionNumber> HSVNUpdateItems(const std::vector<std::string>& targets,
                                                            const HSVNRevisionRef& revision,
                                                            const HSVNItemUpdateOptions& options,
                                                            const HSVNContextRef& context);

/// Makes a working copy of a repository's folder.
///
/// @param url       of the folder
/// @param path      the working copy's place; made when it is missing
/// @param revision  not nil ("revision != nil"), the operative one HEAD, a number or a date
/// @param context   not nil ("context != nil")
/// @return the revision checked out
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_checkout3; not offered by lines before 1.5.
HSVN_EXPORT HSVNRevisionNumber HSVNCheckOutItem(const std::string& url, const std::string& path,
                                                const HSVNRevisionSpecRef& revision,
                                                const HSVNItemUpdateOptions& options, const HSVNContextRef& context);

/// Brings a working copy's item to another place of the same repository.
///
/// @param path      the item
/// @param url       the place
/// @param revision  not nil ("revision != nil"), the operative one HEAD, a number or a date
/// @param context   not nil ("context != nil")
/// @return the revision that the item is at
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_switch3; not offered by lines before 1.7.
HSVN_EXPORT HSVNRevisionNumber HSVNSwitchItem(const std::string& path, const std::string& url,
                                              const HSVNRevisionSpecRef& revision, const HSVNItemUpdateOptions& options,
                                              const HSVNContextRef& context);

/// Writes an item without Subversion's own data.
///
/// @param from      a URL, or a working copy's item
/// @param to        the place; "" means the item's own name in the current folder
/// @param revision  not nil ("revision != nil")
/// @param context   not nil ("context != nil")
/// @return the revision exported; `HSVNInvalidRevision` for a working copy's own state
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_export5; not offered by lines before 1.7.
HSVN_EXPORT HSVNRevisionNumber HSVNExportItem(const std::string& from, const std::string& to,
                                              const HSVNRevisionSpecRef& revision, const HSVNItemExportOptions& options,
                                              const HSVNContextRef& context);

/// Applies the difference of two trees to a working copy.
///
/// @param first, second  the two sides: URLs or working copies' items, each with its revision (not nil,
///                       "revision != nil")
/// @param target         the local item that is changed
/// @param context        not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_merge5; not offered by lines before 1.8.
HSVN_EXPORT void HSVNMergeTrees(const std::pair<std::string, HSVNRevisionRef>& first,
                                const std::pair<std::string, HSVNRevisionRef>& second, const std::string& target,
                                const HSVNItemMergeOptions& options, const HSVNContextRef& context);

/// Merges changes of one branch into a working copy of another.
///
/// @param source       the branch: a URL or a working copy's item
/// @param pegRevision  where the source is looked up; not nil ("pegRevision != nil")
/// @param ranges       the changes, each range in its own direction; nil means all that are not merged yet
/// @param target       the local item that is changed
/// @param context      not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_merge_peg5; not offered by lines before 1.8.
HSVN_EXPORT void HSVNMergeChanges(const std::string& source, const HSVNRevisionRef& pegRevision,
                                  const std::optional<std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>>>& ranges,
                                  const std::string& target, const HSVNItemMergeOptions& options,
                                  const HSVNContextRef& context);

/// Merges a branch that has been kept up to date back into the one it was made of.
///
/// @param source       the branch: a URL or a working copy's item
/// @param pegRevision  where the source is looked up; not nil ("pegRevision != nil")
/// @param target       the root of a working copy without changes, of one revision
/// @param options      of which `dryRun`, `arguments` and `chooser` count
/// @param context      not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_merge_reintegrate; not offered by lines before 1.5.
HSVN_EXPORT void HSVNReintegrate(const std::string& source, const HSVNRevisionRef& pegRevision,
                                 const std::string& target, const HSVNItemMergeOptions& options,
                                 const HSVNContextRef& context);
