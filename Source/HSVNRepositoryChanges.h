#pragma once

#include "HSVNCommitResult.h"
#include "HSVNContext.h"
#include "HSVNRevisionSpec.h"
#include "HSVNTypes.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Commits, imports, and folders, deletions, copies and moves in working copies or right in a repository, with every
// choice of Subversion's own command line, for targets as a user writes them (see HSVNArguments). What is done to a
// working copy is scheduled there and asks for no log message; what is done to a repository is committed at once and
// asks the context's delegate for one, and a delegate that aborts leaves everything as it was.

/// Called for each commit once it is done, on the operation's thread; several repositories make several. An exception
/// stops the operation, not the commit, and reaches its caller.
using HSVNCommitReceiver = std::function<void(const HSVNCommitResult& result)>;

/// What every new revision is given.
struct HSVNRevisionWishes
{
    /// Further revision properties by name, values as bytes; none of Subversion's own.
    std::map<std::string, std::string> properties;
    HSVNCommitReceiver receiver; ///< may be empty
};

/// Choices of `HSVNCommitItems`.
struct HSVNItemCommitOptions
{
    HSVNDepth depth = HSVNDepthInfinity;
    bool keepLocks = false;
    bool keepChangelists = false;
    bool includeExternals = false;
    std::vector<std::string> changelists; ///< only members of these; all items when empty
};

/// Commits local changes.
///
/// @param targets  local items, in one or several working copies
/// @param context  not nil ("context != nil")
/// @throws HSVNException for every Subversion error, URLs among the targets included
/// Stands for svn_client_commit6; not offered by lines before 1.8.
HSVN_EXPORT void HSVNCommitItems(const std::vector<std::string>& targets, const HSVNItemCommitOptions& options,
                                 const HSVNRevisionWishes& wishes, const HSVNContextRef& context);

/// Choices of `HSVNImportItem`.
struct HSVNItemImportOptions
{
    HSVNDepth depth = HSVNDepthInfinity;
    bool matchIgnorePatterns = true; ///< leave out what the patterns match
    bool automaticProperties = true; ///< as far as the configuration asks for them
    bool ignoreUnknownKinds = false; ///< leave out devices, pipes and the like, which are an error otherwise
};

/// Commits an unversioned file, or the contents of a folder, to a URL; missing parents are made.
///
/// @param context  not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_import5; not offered by lines before 1.8.
HSVN_EXPORT void HSVNImportItem(const std::string& path, const std::string& url, const HSVNItemImportOptions& options,
                                const HSVNRevisionWishes& wishes, const HSVNContextRef& context);

/// Makes folders, all local or all of repositories.
///
/// @param makeParents  make missing parents too
/// @param context      not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_mkdir4; not offered by lines before 1.7.
HSVN_EXPORT void HSVNMakeFolders(const std::vector<std::string>& targets, bool makeParents,
                                 const HSVNRevisionWishes& wishes, const HSVNContextRef& context);

/// Choices of `HSVNDeleteItems`.
struct HSVNItemDeleteOptions
{
    bool force = false;     ///< delete modified and unversioned items too
    bool keepLocal = false; ///< leave files and folders where they are, unversioned from the commit on
};

/// Deletes items, all local or all of repositories.
///
/// @param context  not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_delete4; not offered by lines before 1.7.
HSVN_EXPORT void HSVNDeleteItems(const std::vector<std::string>& targets, const HSVNItemDeleteOptions& options,
                                 const HSVNRevisionWishes& wishes, const HSVNContextRef& context);

/// What is copied.
struct HSVNCopySource
{
    std::string target;
    HSVNRevisionSpecRef revision; ///< not nil
};

/// Choices of `HSVNCopyItems`.
struct HSVNItemCopyOptions
{
    bool asChild = false;         ///< into the destination when that exists
    bool makeParents = false;     ///< make missing parents of the destination
    bool ignoreExternals = false; ///< do not fetch the externals of what comes into a working copy
    bool pinExternals = false;    ///< give externals without a revision their present one
};

/// Copies items with their history, within or between working copies and a repository.
///
/// @param sources  all local or all of repositories
/// @param context  not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_copy7; not offered by lines before 1.9.
HSVN_EXPORT void HSVNCopyItems(const std::vector<HSVNCopySource>& sources, const std::string& destination,
                               const HSVNItemCopyOptions& options, const HSVNRevisionWishes& wishes,
                               const HSVNContextRef& context);

/// Choices of `HSVNMoveItems`.
struct HSVNItemMoveOptions
{
    bool asChild = false;             ///< into the destination when that exists
    bool makeParents = false;         ///< make missing parents of the destination
    bool allowMixedRevisions = false; ///< move folders whose items are of several revisions
};

/// Moves items within a working copy or within a repository.
///
/// @param context  not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_move7; not offered by lines before 1.8.
HSVN_EXPORT void HSVNMoveItems(const std::vector<std::string>& sources, const std::string& destination,
                               const HSVNItemMoveOptions& options, const HSVNRevisionWishes& wishes,
                               const HSVNContextRef& context);
