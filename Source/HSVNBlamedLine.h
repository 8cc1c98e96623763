#pragma once

#include "HSVNTypes.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// A revision that changed a line.
struct HSVNLineChange
{
    HSVNRevisionNumber revision = HSVNInvalidRevision; ///< its number
    std::map<std::string, std::string> properties{};   ///< of the revision: "svn:author", "svn:date" and others
};

/// One line of a file with its origin.
struct HSVNBlamedLine
{
    std::int64_t number = 0;                ///< from 0 on
    std::string text{};                     ///< its bytes without the line end
    std::optional<HSVNLineChange> change{}; ///< nil for a line older than the range, or changed locally
    bool isLocalChange = false;             ///< changed in the working copy
    /// The change that a merge brought; `change` itself for one that none did, nil when merges are not followed.
    std::optional<HSVNLineChange> mergedChange{};
    std::optional<std::string> mergedPath{};                   ///< where that was made, from the repository's root on
    HSVNRevisionNumber youngestRevision = HSVNInvalidRevision; ///< of the whole range; lines before 1.7 tell none
};
