#pragma once

#include "SubversionLine.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <svn_delta.h>

namespace HSVNAdapter {

/// Refuses what is no item directly in the folder, both relative to the same: an absolute path, one that is not
/// canonical, one that leads upwards or deeper.
svn_error_t* requireChild(const char* folder, const char* path);

/// Puts an editor in front of the one that a server drives, which refuses what the latter takes for granted and ends
/// the process for: items outside of the folder they are sent with, folders closed before what is in them, texts
/// without an end.
///
/// @param pool  of the new editor; it lives as long as the drive
void checkDrive(const svn_delta_editor_t** editor, void** baton, apr_pool_t* pool);

} // namespace HSVNAdapter

#endif
