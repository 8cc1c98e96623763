#pragma once

#include "Internal/Subversion.h"

/// What every client context tells of its transfers, with the context as baton.
struct HSVNTransferCallback
{
    /// Counts what the outermost operation transfers, and tells the context's observer.
    static void receive(apr_off_t bytes, apr_off_t total, void* baton, apr_pool_t* pool);
};
