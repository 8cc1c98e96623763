#pragma once

#include "HSVNWorkingCopyPlace.h"
#include "Internal/Text.h"

/// Reads the place of an item from a record of Subversion, a `svn_client_status_t` or a `svn_wc_info_t`.
template <class Record>
void HSVNReadWorkingCopyPlace(HSVNWorkingCopyPlace& place, const Record& record)
{
    place.changelist = HSVNTextOrNil(record.changelist);
    place.depth = static_cast<HSVNDepth>(record.depth);
    place.movedFrom = HSVNTextOrNil(record.moved_from_abspath);
    place.movedTo = HSVNTextOrNil(record.moved_to_abspath);
}
