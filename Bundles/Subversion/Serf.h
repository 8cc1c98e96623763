#pragma once

// What the adapter knows of the library that speaks with web servers, whose headers need not be installed.

// NOLINTBEGIN(readability-identifier-naming)
struct serf_bucket_alloc_t;
struct serf_bucket_type_t;
struct serf_connection_t;
struct serf_request_t;

struct serf_bucket_t
{
    const serf_bucket_type_t* type;
    void* data;
    serf_bucket_alloc_t* allocator;
};
// NOLINTEND(readability-identifier-naming)
