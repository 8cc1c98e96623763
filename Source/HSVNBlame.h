#pragma once

#include "HSVNContext.h"
#include "HSVNRevision.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A revision that changed a line.
struct HSVNLineChange
{
    HSVNRevisionNumber revision = HSVNInvalidRevision;
    std::map<std::string, std::string> properties; ///< of the revision: "svn:author", "svn:date" and others
};

/// One line of a file with its origin.
struct HSVNBlamedLine
{
    std::int64_t number = 0;              ///< from 0 on
    std::string_view text;                ///< its bytes without the line end; valid while the receiver runs
    std::optional<HSVNLineChange> change; ///< nil for a line older than the range, or changed locally
    bool isLocalChange = false;           ///< changed in the working copy
    /// The change that a merge brought; `change` itself for one that none did, nil when merges are not followed.
    std::optional<HSVNLineChange> mergedChange;
    std::optional<std::string> mergedPath;                     ///< where that was made, from the repository's root on
    HSVNRevisionNumber youngestRevision = HSVNInvalidRevision; ///< of the whole range
};

/// Where lines are looked for, and what counts as a change.
struct HSVNBlameOptions
{
    bool ignoreContentType = false;     ///< read files of binary types, too
    bool mergedRevisions = false;       ///< follow merges to their sources
    std::vector<std::string> arguments; ///< such as "-w"; see `HSVNCheckBlameArguments`
};

using HSVNBlameReceiver = std::function<void(const HSVNBlamedLine& line)>;

/// Tells for each line of a file which revision changed it last, or, in a range that runs backwards, next.
///
/// @param target       a local path or a URL; see HSVNArguments
/// @param pegRevision  where the target is looked up; not nil ("pegRevision != nil")
/// @param range        how far to look back, and the revision whose lines are told; not nil ("revision != nil")
/// @param receiver     called for each line, in order; an exception stops the operation and reaches the caller;
///                     not nil ("receiver != nil")
/// @param context      not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_client_blame6; not offered by lines before 1.12.
HSVN_EXPORT void HSVNReadBlame(const std::string& target, const HSVNRevisionRef& pegRevision,
                               const std::pair<HSVNRevisionRef, HSVNRevisionRef>& range,
                               const HSVNBlameOptions& options, const HSVNBlameReceiver& receiver,
                               const HSVNContextRef& context);

/// Refuses arguments that Subversion's own comparison of lines does not know.
///
/// @param context  not nil ("context != nil")
/// @throws HSVNException naming the argument
/// Stands for svn_diff_file_options_parse.
HSVN_EXPORT void HSVNCheckBlameArguments(const std::vector<std::string>& arguments, const HSVNContextRef& context);
