#include "Serf.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include "Internal/Subversion.h"

// A web server answers an update's request with what is read piece by piece. When it redirects the request instead,
// Subversion asks such a piece, which is none of an answer as a whole, for the answer's headers.

extern "C" svn_error_t* svn_ra_serf__expect_empty_body(serf_request_t* request, serf_bucket_t* response, void* baton,
                                                       apr_pool_t* pool);

HSVN_STAND_IN(svn_error_t*, svn_ra_serf__expect_empty_body)
(serf_request_t* request, serf_bucket_t* response, void* baton, apr_pool_t* pool)
{
    static const auto* const wholeAnswer =
        static_cast<const serf_bucket_type_t*>(dlsym(RTLD_NEXT, "serf_bucket_type_response"));
    if (wholeAnswer != nullptr && response->type != wholeAnswer) {
        return svn_error_create(SVN_ERR_RA_DAV_MALFORMED_DATA, nullptr,
                                "The server's answer is malformed: it answers a report with another status than 200");
    }
    return HSVN_BEHIND(svn_ra_serf__expect_empty_body)(request, response, baton, pool);
}

#endif
