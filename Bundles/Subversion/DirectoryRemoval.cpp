// Removing a directory removes what is in it. Subversion opens what it is to remove, and so empties the directory that
// a symbolic link leads to which has taken a versioned directory's place, wherever that is. Here the link goes.

#include "ItemsOnDisk.h"
#include "StandIns.h"

#include <svn_io.h>

using HSVNAdapter::isSymbolicLink;

#ifdef HSVN_STANDS_IN_FRONT
HSVN_STAND_IN svn_error_t* svn_io_remove_dir2(const char* path, svn_boolean_t ignoreMissing, svn_cancel_func_t cancel,
                                              void* baton, apr_pool_t* pool)
{
    return isSymbolicLink(path, pool) ? svn_io_remove_file2(path, ignoreMissing, pool)
                                      : HSVN_BEHIND(svn_io_remove_dir2)(path, ignoreMissing, cancel, baton, pool);
}
#elif defined(HSVN_WRAPS_DIRECTORY_REMOVAL)
// In a bundle of static libraries the linker leads their calls here.
extern "C" svn_error_t* __real_svn_io_remove_dir2(const char* path, svn_boolean_t ignoreMissing,
                                                  svn_cancel_func_t cancel, void* baton, apr_pool_t* pool);
extern "C" svn_error_t* __wrap_svn_io_remove_dir2(const char* path, svn_boolean_t ignoreMissing,
                                                  svn_cancel_func_t cancel, void* baton, apr_pool_t* pool)
{
    return isSymbolicLink(path, pool) ? svn_io_remove_file(path, pool)
                                      : __real_svn_io_remove_dir2(path, ignoreMissing, cancel, baton, pool);
}
#endif
