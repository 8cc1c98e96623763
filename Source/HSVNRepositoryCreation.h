#pragma once

#include "HSVNContext.h"
#include "HSVNVersion.h"

#include <optional>
#include <string>

/// Choices for a new repository, as Subversion's administration program offers them.
struct HSVNRepositoryCreationChoices
{
    std::optional<std::string> type{}; ///< "fsfs", "bdb" or "fsx"; nil for the line's own choice
    /// Be readable by lines from this one on; nil for the bundle's line. Lines before 1.9 tell 1.4, 1.5, 1.6 and 1.8
    /// apart only, as far as they are not newer.
    std::optional<HSVNVersion> compatibleVersion{};
    // Of type "bdb".
    bool syncAtTransactionCommit = true; ///< have each commit on the disk before it ends
    bool automaticLogFileRemoval = true; ///< remove log files that are no longer needed
};

/// Creates a repository.
///
/// @param path     of a local directory, missing or empty
/// @param context  whose bundle makes it; not nil ("context != nil")
/// @throws HSVNException for every Subversion error
/// Stands for svn_repos_create.
HSVN_EXPORT void HSVNCreateRepository(const HSVNTarget& path, const HSVNRepositoryCreationChoices& choices,
                                      const HSVNContextRef& context);
