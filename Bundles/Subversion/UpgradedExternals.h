#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// Makes an upgrade in a pool or one of its sub-pools change no external below the target that is reached through a
/// symbolic link: who may set `svn:externals` does not choose what is upgraded elsewhere.
///
/// @param target  absolute; lives as long as the pool
void leaveLinkedExternals(const char* target, apr_pool_t* pool);

} // namespace HSVNAdapter
