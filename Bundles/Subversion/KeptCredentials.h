#pragma once

#include "SubversionLine.h"

// What a client was answered once is kept by Subversion for as long as the client lives, whatever becomes of it.

namespace HSVNAdapter {

/// Lets a baton forget a server's trust when the server shows another certificate, and the user's own certificate and
/// its passphrase when no server has taken them: the next connection asks again.
///
/// @param pool  the baton's own
void forgetDoubtfulCredentials(svn_auth_baton_t* baton, apr_pool_t* pool);

} // namespace HSVNAdapter
