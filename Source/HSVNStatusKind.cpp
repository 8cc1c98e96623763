#include "HSVNStatusKind.h"

#include "Internal/Subversion.h"

HSVNStatusKind HSVNConvertStatusKind(std::int32_t subversionKind)
{
    switch (subversionKind) {
    case svn_wc_status_none:
        return HSVNStatusKindNone;
    case svn_wc_status_unversioned:
        return HSVNStatusKindUnversioned;
    case svn_wc_status_normal:
        return HSVNStatusKindNormal;
    case svn_wc_status_added:
        return HSVNStatusKindAdded;
    case svn_wc_status_missing:
        return HSVNStatusKindMissing;
    case svn_wc_status_deleted:
        return HSVNStatusKindDeleted;
    case svn_wc_status_replaced:
        return HSVNStatusKindReplaced;
    case svn_wc_status_modified:
        return HSVNStatusKindModified;
    case svn_wc_status_merged:
        return HSVNStatusKindMerged;
    case svn_wc_status_conflicted:
        return HSVNStatusKindConflicted;
    case svn_wc_status_ignored:
        return HSVNStatusKindIgnored;
    case svn_wc_status_obstructed:
        return HSVNStatusKindObstructed;
    case svn_wc_status_external:
        return HSVNStatusKindExternal;
    case svn_wc_status_incomplete:
        return HSVNStatusKindIncomplete;
    default:
        return HSVNStatusKindUnknown;
    }
}

HSVNSchedule HSVNConvertSchedule(std::int32_t subversionSchedule)
{
    switch (subversionSchedule) {
    case svn_wc_schedule_normal:
        return HSVNScheduleNormal;
    case svn_wc_schedule_add:
        return HSVNScheduleAdd;
    case svn_wc_schedule_delete:
        return HSVNScheduleDelete;
    case svn_wc_schedule_replace:
        return HSVNScheduleReplace;
    default:
        return HSVNScheduleInvalid;
    }
}

bool HSVNIsAbnormalStatus(std::int32_t subversionKind)
{
    switch (subversionKind) {
    case svn_wc_status_none:
    case svn_wc_status_normal:
    case svn_wc_status_ignored:
    case svn_wc_status_external:
        return false;
    default:
        return true;
    }
}

const char* HSVNTextOfStatusKind(HSVNStatusKind kind)
{
    switch (kind) {
    case HSVNStatusKindNone:
        return "none";
    case HSVNStatusKindUnversioned:
        return "unversioned";
    case HSVNStatusKindNormal:
        return "normal";
    case HSVNStatusKindAdded:
        return "added";
    case HSVNStatusKindMissing:
        return "missing";
    case HSVNStatusKindDeleted:
        return "deleted";
    case HSVNStatusKindReplaced:
        return "replaced";
    case HSVNStatusKindModified:
        return "modified";
    case HSVNStatusKindMerged:
        return "merged";
    case HSVNStatusKindConflicted:
        return "conflicted";
    case HSVNStatusKindIgnored:
        return "ignored";
    case HSVNStatusKindObstructed:
        return "obstructed";
    case HSVNStatusKindExternal:
        return "external";
    case HSVNStatusKindIncomplete:
        return "incomplete";
    case HSVNStatusKindUnknown:
        break;
    }
    return "unknown";
}

const char* HSVNTextOfSchedule(HSVNSchedule schedule)
{
    switch (schedule) {
    case HSVNScheduleNormal:
        return "normal";
    case HSVNScheduleAdd:
        return "add";
    case HSVNScheduleDelete:
        return "delete";
    case HSVNScheduleReplace:
        return "replace";
    case HSVNScheduleInvalid:
        break;
    }
    return "none";
}
