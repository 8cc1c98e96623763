#include "ObstructedParents.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <svn_io.h>

// The flags of a file that is missing are set when it comes back. Subversion fails instead, amid work that no clean-up
// can end before somebody puts a file there. An item below a link that leads elsewhere is missing, too.

using HSVNAdapter::isBelowAnyLink;

HSVN_STAND_IN(svn_error_t*, svn_io_set_file_executable)
(const char* path, svn_boolean_t executable, svn_boolean_t /*ignoreMissing*/, apr_pool_t* pool)
{
    return isBelowAnyLink(path, pool) ? SVN_NO_ERROR
                                      : HSVN_BEHIND(svn_io_set_file_executable)(path, executable, TRUE, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_io_set_file_read_only)
(const char* path, svn_boolean_t /*ignoreMissing*/, apr_pool_t* pool)
{
    return isBelowAnyLink(path, pool) ? SVN_NO_ERROR : HSVN_BEHIND(svn_io_set_file_read_only)(path, TRUE, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_io_set_file_read_write)
(const char* path, svn_boolean_t /*ignoreMissing*/, apr_pool_t* pool)
{
    return isBelowAnyLink(path, pool) ? SVN_NO_ERROR : HSVN_BEHIND(svn_io_set_file_read_write)(path, TRUE, pool);
}

#endif
