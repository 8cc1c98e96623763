#pragma once

#include "SubversionLine.h"

namespace HSVNAdapter {

/// Takes an external for one that is followed until the pool is cleared, unless the same is being followed around it:
/// then it is refused, for it contains itself.
///
/// @param url   outlives the pool's contents
/// @param pool  inside the pools of all that the external is in
svn_error_t* followExternal(const char* url, const svn_opt_revision_t& pegRevision, const svn_opt_revision_t& revision,
                            apr_pool_t* pool);

#ifdef HSVN_STANDS_IN_FRONT
/// Refuses the URL that was put in the place of such an external's; any other is let pass.
svn_error_t* refuseExternalCycle(const char* url);
#endif

} // namespace HSVNAdapter
