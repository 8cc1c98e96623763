#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <svn_io.h>
#include <svn_subst.h>
#include <sys/stat.h>

// A pipe that has taken a versioned file's place would be waited for until somebody writes to it, and what is neither a
// file nor a link in the place of a versioned link is taken for an impossibility.

namespace {

svn_error_t* refuse(const char* path)
{
    return svn_error_createf(SVN_ERR_NODE_UNEXPECTED_KIND, nullptr, "'%s' is not a file", path);
}

bool isPipe(const char* path)
{
    struct stat attributes
    {
    };
    return ::stat(path, &attributes) == 0 && S_ISFIFO(attributes.st_mode);
}

} // namespace

HSVN_STAND_IN svn_error_t* svn_stream_open_readonly(svn_stream_t** stream, const char* path, apr_pool_t* resultPool,
                                                    apr_pool_t* scratchPool)
{
    return isPipe(path) ? refuse(path) : HSVN_BEHIND(svn_stream_open_readonly)(stream, path, resultPool, scratchPool);
}

HSVN_STAND_IN svn_error_t* svn_io_file_open(apr_file_t** file, const char* path, apr_int32_t flags,
                                            apr_fileperms_t permissions, apr_pool_t* pool)
{
    return (flags & APR_WRITE) == 0 && isPipe(path)
               ? refuse(path)
               : HSVN_BEHIND(svn_io_file_open)(file, path, flags, permissions, pool);
}

HSVN_STAND_IN svn_error_t* svn_subst_read_specialfile(svn_stream_t** stream, const char* path, apr_pool_t* resultPool,
                                                      apr_pool_t* scratchPool)
{
    struct stat attributes
    {
    };
    const bool isOther =
        ::lstat(path, &attributes) == 0 && !S_ISREG(attributes.st_mode) && !S_ISLNK(attributes.st_mode);
    return isOther ? refuse(path) : HSVN_BEHIND(svn_subst_read_specialfile)(stream, path, resultPool, scratchPool);
}

#endif
