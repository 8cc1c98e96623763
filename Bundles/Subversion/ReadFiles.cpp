#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <svn_io.h>
#include <sys/stat.h>

// A pipe that has taken a versioned file's place would be waited for until somebody writes to it.

HSVN_STAND_IN svn_error_t* svn_stream_open_readonly(svn_stream_t** stream, const char* path, apr_pool_t* resultPool,
                                                    apr_pool_t* scratchPool)
{
    struct stat attributes
    {
    };
    if (::stat(path, &attributes) == 0 && S_ISFIFO(attributes.st_mode)) {
        return svn_error_createf(SVN_ERR_NODE_UNEXPECTED_KIND, nullptr, "'%s' is not a file", path);
    }
    return HSVN_BEHIND(svn_stream_open_readonly)(stream, path, resultPool, scratchPool);
}

#endif
