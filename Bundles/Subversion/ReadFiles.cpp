#include "StandIns.h"

#ifdef HSVN_GUARDS_DATABASES

#include <apr_portable.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <svn_io.h>
#include <svn_subst.h>
#include <svn_wc.h>
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

/// Whether a path lies in an administrative area, where nothing but files is read.
bool isInArea(std::string_view path, apr_pool_t* pool)
{
    return path.find(std::string{"/"} + svn_wc_get_adm_dir(pool) + "/") != std::string_view::npos;
}

/// Closes a pipe that was opened without waiting, and what may have no end in the place of an area's file; anything
/// else waits from now on when it is read.
svn_error_t* refusePipe(apr_file_t** file, const char* path, apr_pool_t* pool)
{
    apr_os_file_t handle = -1;
    struct stat attributes
    {
    };
    apr_os_file_get(&handle, *file);
    if (::fstat(handle, &attributes) != 0 || S_ISREG(attributes.st_mode)) { // of a file nothing is waited for
        return SVN_NO_ERROR;
    }
    if (!S_ISFIFO(attributes.st_mode) && !isInArea(path, pool)) {
        ::fcntl(handle, F_SETFL, ::fcntl(handle, F_GETFL) & ~O_NONBLOCK);
        return SVN_NO_ERROR;
    }
    svn_error_clear(svn_io_file_close(*file, pool));
    *file = nullptr;
    return refuse(path);
}

} // namespace

HSVN_STAND_IN(svn_error_t*, svn_io_file_open)
(apr_file_t** file, const char* path, apr_int32_t flags, apr_fileperms_t permissions, apr_pool_t* pool)
{
    const auto open = HSVN_BEHIND(svn_io_file_open);
    if ((flags & APR_WRITE) != 0) {
        return open(file, path, flags, permissions, pool);
    }
    // A question about the path before each opening would take as long as the opening.
    svn_error_t* const error = open(file, path, flags | APR_FOPEN_NONBLOCK, permissions, pool);
    if (error == nullptr) {
        return refusePipe(file, path, pool);
    }
    if (!APR_STATUS_IS_EAGAIN(error->apr_err)) {
        return error;
    }
    svn_error_clear(error); // another program has to give up its hold on the file first
    return isPipe(path) ? refuse(path) : open(file, path, flags, permissions, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_subst_read_specialfile)
(svn_stream_t** stream, const char* path, apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    struct stat attributes
    {
    };
    const bool isOther =
        ::lstat(path, &attributes) == 0 && !S_ISREG(attributes.st_mode) && !S_ISLNK(attributes.st_mode);
    return isOther ? refuse(path) : HSVN_BEHIND(svn_subst_read_specialfile)(stream, path, resultPool, scratchPool);
}

#endif
