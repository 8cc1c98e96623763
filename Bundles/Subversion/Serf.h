#pragma once

// What the adapter knows of the library that speaks with web servers, whose headers need not be installed.

#include "StandIns.h"

#include <apr_errno.h>

// NOLINTBEGIN(readability-identifier-naming)
struct serf_bucket_alloc_t;
struct serf_bucket_t;
struct serf_connection_t;
struct serf_request_t;

struct serf_bucket_type_t
{
    const char* name;
    void* reading[5]; // functions that nobody here calls
    apr_status_t (*peek)(serf_bucket_t* bucket, const char** bytes, apr_size_t* size);
};

struct serf_bucket_t
{
    const serf_bucket_type_t* type;
    void* data;
    serf_bucket_alloc_t* allocator;
};
// NOLINTEND(readability-identifier-naming)

#ifdef HSVN_STANDS_IN_FRONT

namespace HSVNAdapter {

/// Whether the library's records look in memory as they are known here.
inline bool isKnownSerf()
{
    static const bool isKnown = [] {
        int major = 0;
        int minor = 0;
        int patch = 0;
        behind<void(int*, int*, int*)>("serf_lib_version")(&major, &minor, &patch);
        return major == 1 && minor == 3;
    }();
    return isKnown;
}

} // namespace HSVNAdapter

#endif
