#include "Serf.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include "Internal/Subversion.h"

// A web server may send more than it was asked for. What comes when the next request is waiting, but has not been sent,
// is taken for the latter's answer, by a function of the request's that is only set when it is sent: whatever was in
// that memory before is called. So each request begins with functions that refuse any answer.

namespace {

using Acceptor = serf_bucket_t* (*)(serf_request_t* request, serf_bucket_t* stream, void* baton, apr_pool_t* pool);
using Handler = apr_status_t (*)(serf_request_t* request, serf_bucket_t* response, void* baton, apr_pool_t* pool);
using Setup = apr_status_t (*)(serf_request_t* request, void* baton, serf_bucket_t** content, Acceptor* acceptor,
                               void** acceptorBaton, Handler* handler, void** handlerBaton, apr_pool_t* pool);

/// How a request begins in memory, in 1.3 of the library.
struct RequestBeginning
{
    serf_connection_t* connection;
    apr_pool_t* pool;
    serf_bucket_alloc_t* allocator;
    serf_bucket_t* content;
    Setup setup;
    void* setupBaton;
    Acceptor acceptor;
    void* acceptorBaton;
    Handler handler;
    void* handlerBaton;
};

serf_bucket_t* accept(serf_request_t* /*request*/, serf_bucket_t* stream, void* /*baton*/, apr_pool_t* /*pool*/)
{
    using Create = serf_bucket_t*(serf_bucket_t*, serf_bucket_alloc_t*);
    static auto* const createBarrier = HSVNAdapter::behind<Create>("serf_bucket_barrier_create");
    static auto* const createResponse = HSVNAdapter::behind<Create>("serf_bucket_response_create");
    return createResponse(createBarrier(stream, stream->allocator), stream->allocator);
}

apr_status_t refuse(serf_request_t* /*request*/, serf_bucket_t* /*response*/, void* /*baton*/, apr_pool_t* /*pool*/)
{
    return SVN_ERR_RA_DAV_MALFORMED_DATA;
}

/// Lets a new request refuse what comes before it is sent; one whose memory looks otherwise is left alone.
serf_request_t* guarded(serf_request_t* request, const serf_connection_t* connection, Setup setup, const void* baton)
{
    auto& beginning = *reinterpret_cast<RequestBeginning*>(request);
    if (HSVNAdapter::isKnownSerf() && beginning.connection == connection && beginning.setup == setup &&
        beginning.setupBaton == baton)
    {
        beginning.acceptor = accept;
        beginning.acceptorBaton = nullptr;
        beginning.handler = refuse;
        beginning.handlerBaton = nullptr;
    }
    return request;
}

} // namespace

extern "C" serf_request_t* serf_connection_request_create(serf_connection_t* connection, Setup setup, void* baton);
extern "C" serf_request_t* serf_connection_priority_request_create(serf_connection_t* connection, Setup setup,
                                                                   void* baton);

HSVN_STAND_IN(serf_request_t*, serf_connection_request_create)(serf_connection_t* connection, Setup setup, void* baton)
{
    return guarded(HSVN_BEHIND(serf_connection_request_create)(connection, setup, baton), connection, setup, baton);
}

HSVN_STAND_IN(serf_request_t*, serf_connection_priority_request_create)
(serf_connection_t* connection, Setup setup, void* baton)
{
    return guarded(HSVN_BEHIND(serf_connection_priority_request_create)(connection, setup, baton), connection, setup,
                   baton);
}

#endif
