#pragma once

#include "HSVNExport.h"

#include <cstdint>
#include <optional>

/// State of an item's text or properties. Each kind but none is one bit, so that kinds combine into sets.
enum HSVNStatusKind : std::uint32_t
{
    HSVNStatusKindNone = 0,            ///< nothing known, such as the repository's side when it was not asked
    HSVNStatusKindUnversioned = 1,     ///< not under version control
    HSVNStatusKindNormal = 2,          ///< unchanged
    HSVNStatusKindAdded = 4,           ///< scheduled for addition
    HSVNStatusKindMissing = 8,         ///< under version control, but not there
    HSVNStatusKindDeleted = 16,        ///< scheduled for deletion
    HSVNStatusKindReplaced = 32,       ///< deleted and added again
    HSVNStatusKindModified = 64,       ///< changed
    HSVNStatusKindMerged = 128,        ///< changed here and in the repository, and merged
    HSVNStatusKindConflicted = 256,    ///< changed here and in the repository, in conflict
    HSVNStatusKindIgnored = 512,       ///< not under version control, and to be ignored
    HSVNStatusKindObstructed = 1024,   ///< something else is in the way
    HSVNStatusKindExternal = 2048,     ///< placed by an externals definition
    HSVNStatusKindIncomplete = 4096,   ///< a folder whose update was interrupted
    HSVNStatusKindUnknown = 0x10000000 ///< a kind that this library does not know
};

/// A set of status kinds: their bitwise union.
using HSVNStatusKinds = std::uint32_t;

/// What the next commit does with an item as a whole.
enum HSVNSchedule : std::int32_t
{
    HSVNScheduleInvalid = -1,
    HSVNScheduleNormal = 0,
    HSVNScheduleAdd = 1,
    HSVNScheduleDelete = 2,
    HSVNScheduleReplace = 3
};

/// A status kind as people read it, such as "modified"; "unknown" for a set of several.
HSVN_EXPORT const char* HSVNTextOfStatusKind(HSVNStatusKind kind);
/// A schedule, such as "add"; "none" for an invalid one.
HSVN_EXPORT const char* HSVNTextOfSchedule(HSVNSchedule schedule);

/// The kind of a Subversion `svn_wc_status_kind`; `HSVNStatusKindUnknown` for a value without a kind.
HSVN_EXPORT HSVNStatusKind HSVNConvertStatusKind(std::int32_t subversionKind);

/// The schedule of a Subversion `svn_wc_schedule_t`; `HSVNScheduleInvalid` for a value without one.
HSVN_EXPORT HSVNSchedule HSVNConvertSchedule(std::int32_t subversionSchedule);

/// Two kinds added to a set; a nil set is empty. No kind outranks another.
constexpr HSVNStatusKinds HSVNAggregateStatus(HSVNStatusKind a, HSVNStatusKind b, std::optional<HSVNStatusKinds> kinds)
{
    return kinds.value_or(0) | a | b;
}

/// Whether a Subversion `svn_wc_status_kind`, not converted, is other than none, normal, ignored and external.
HSVN_EXPORT bool HSVNIsAbnormalStatus(std::int32_t subversionKind);
