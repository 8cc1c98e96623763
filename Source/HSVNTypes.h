#pragma once

#include "HSVNExport.h"

#include <cstdint>

/// A Subversion revision number as the library hands it out; -1 (`HSVNInvalidRevision`) means none.
using HSVNRevisionNumber = std::int32_t;

/// Reported where there is no revision.
inline constexpr HSVNRevisionNumber HSVNInvalidRevision = -1;

/// How deep an operation goes; the values equal those of `svn_depth_t`.
enum HSVNDepth : std::int32_t
{
    HSVNDepthUnknown = -2,   ///< let Subversion decide: the working copy's own (sticky) depth
    HSVNDepthExclude = -1,   ///< exclude the item
    HSVNDepthEmpty = 0,      ///< the item only
    HSVNDepthFiles = 1,      ///< the item and its file children
    HSVNDepthImmediates = 2, ///< the item and all its immediate children
    HSVNDepthInfinity = 3    ///< the item and everything below
};

/// Kind of an item; the values equal those of `svn_node_kind_t`.
enum HSVNNodeKind : std::int32_t
{
    HSVNNodeKindNone = 0,
    HSVNNodeKindFile = 1,
    HSVNNodeKindDirectory = 2,
    HSVNNodeKindUnknown = 3
};

/// A depth as people read it, such as "immediates". As the other functions of this name, it takes any value, answers
/// "unknown" for one that it does not know, and may be called on any thread at any time.
HSVN_EXPORT const char* HSVNTextOfDepth(HSVNDepth depth);
/// A kind of item: "file", "directory", "none" or "unknown".
HSVN_EXPORT const char* HSVNTextOfNodeKind(HSVNNodeKind kind);

/// Order of two values, as `compare` answers it.
enum HSVNComparisonResult : std::int32_t
{
    HSVNOrderedAscending = -1,
    HSVNOrderedSame = 0,
    HSVNOrderedDescending = 1
};
