#include "ServerDrive.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <svn_ra.h>

// What a server changes, checked before the editors of update, switch, status and comparisons see it.

using HSVNAdapter::checkDrive;

HSVN_STAND_IN(svn_error_t*, svn_ra_do_update3)
(svn_ra_session_t* session, const svn_ra_reporter3_t** reporter, void** report, svn_revnum_t revision,
 const char* target, svn_depth_t depth, svn_boolean_t sendCopies, svn_boolean_t ignoreAncestry,
 const svn_delta_editor_t* editor, void* baton, apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    checkDrive(&editor, &baton, resultPool);
    return HSVN_BEHIND(svn_ra_do_update3)(session, reporter, report, revision, target, depth, sendCopies,
                                          ignoreAncestry, editor, baton, resultPool, scratchPool);
}

HSVN_STAND_IN(svn_error_t*, svn_ra_do_switch3)
(svn_ra_session_t* session, const svn_ra_reporter3_t** reporter, void** report, svn_revnum_t revision,
 const char* target, svn_depth_t depth, const char* url, svn_boolean_t sendCopies, svn_boolean_t ignoreAncestry,
 const svn_delta_editor_t* editor, void* baton, apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    checkDrive(&editor, &baton, resultPool);
    return HSVN_BEHIND(svn_ra_do_switch3)(session, reporter, report, revision, target, depth, url, sendCopies,
                                          ignoreAncestry, editor, baton, resultPool, scratchPool);
}

HSVN_STAND_IN(svn_error_t*, svn_ra_do_status2)
(svn_ra_session_t* session, const svn_ra_reporter3_t** reporter, void** report, const char* target,
 svn_revnum_t revision, svn_depth_t depth, const svn_delta_editor_t* editor, void* baton, apr_pool_t* pool)
{
    checkDrive(&editor, &baton, pool);
    return HSVN_BEHIND(svn_ra_do_status2)(session, reporter, report, target, revision, depth, editor, baton, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_ra_do_diff3)
(svn_ra_session_t* session, const svn_ra_reporter3_t** reporter, void** report, svn_revnum_t revision,
 const char* target, svn_depth_t depth, svn_boolean_t ignoreAncestry, svn_boolean_t textDeltas, const char* url,
 const svn_delta_editor_t* editor, void* baton, apr_pool_t* pool)
{
    checkDrive(&editor, &baton, pool);
    return HSVN_BEHIND(svn_ra_do_diff3)(session, reporter, report, revision, target, depth, ignoreAncestry, textDeltas,
                                        url, editor, baton, pool);
}

#endif
