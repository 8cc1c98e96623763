#include "Internal/ScopedValue.h"
#include "ObstructedParents.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <svn_io.h>
#include <svn_wc.h>

// A symbolic link that has taken a versioned directory's place leads anywhere. Subversion writes and removes through it
// what it takes for the directory's items. All of that is prepared by few functions, before anything is on record of
// it: there it is refused. So are files below anything else in such a place, of which no clean-up could make an end.

using HSVNAdapter::refuseBelowAnyLink;
using HSVNAdapter::refuseBelowObstruction;

// Subversion's own, but in no header of the installed.
extern "C" {
struct svn_wc__db_t; // NOLINT(readability-identifier-naming)
struct svn_skel_t;   // NOLINT(readability-identifier-naming)

svn_error_t* svn_wc__wq_build_file_install(svn_skel_t** work, svn_wc__db_t* database, const char* path,
                                           const char* source, svn_boolean_t useCommitTimes,
                                           svn_boolean_t recordFileInfo, apr_pool_t* resultPool,
                                           apr_pool_t* scratchPool);
svn_error_t* svn_wc__wq_build_file_remove(svn_skel_t** work, svn_wc__db_t* database, const char* anyPath,
                                          const char* path, apr_pool_t* resultPool, apr_pool_t* scratchPool);
svn_error_t* svn_wc__wq_build_dir_remove(svn_skel_t** work, svn_wc__db_t* database, const char* anyPath,
                                         const char* path, svn_boolean_t recursive, apr_pool_t* resultPool,
                                         apr_pool_t* scratchPool);
svn_error_t* svn_wc__wq_build_file_move(svn_skel_t** work, svn_wc__db_t* database, const char* anyPath,
                                        const char* source, const char* destination, apr_pool_t* resultPool,
                                        apr_pool_t* scratchPool);
svn_error_t* svn_wc__wq_build_file_copy_translated(svn_skel_t** work, svn_wc__db_t* database, const char* path,
                                                   const char* source, const char* destination, apr_pool_t* resultPool,
                                                   apr_pool_t* scratchPool);
svn_error_t* svn_wc__wq_build_dir_install(svn_skel_t** work, svn_wc__db_t* database, const char* path,
                                          apr_pool_t* resultPool, apr_pool_t* scratchPool);
svn_error_t* svn_wc__ensure_directory(const char* path, apr_pool_t* pool);
}

namespace {

thread_local bool restores = false; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

} // namespace

HSVN_STAND_IN(svn_error_t*, svn_wc__wq_build_file_install)
(svn_skel_t** work, svn_wc__db_t* database, const char* path, const char* source, svn_boolean_t useCommitTimes,
 svn_boolean_t recordFileInfo, apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    SVN_ERR(refuseBelowAnyLink(path, scratchPool));
    SVN_ERR(refuseBelowObstruction(path, scratchPool));
    return HSVN_BEHIND(svn_wc__wq_build_file_install)(work, database, path, source, useCommitTimes, recordFileInfo,
                                                      resultPool, scratchPool);
}

HSVN_STAND_IN(svn_error_t*, svn_wc__wq_build_file_remove)
(svn_skel_t** work, svn_wc__db_t* database, const char* anyPath, const char* path, apr_pool_t* resultPool,
 apr_pool_t* scratchPool)
{
    SVN_ERR(refuseBelowAnyLink(path, scratchPool));
    return HSVN_BEHIND(svn_wc__wq_build_file_remove)(work, database, anyPath, path, resultPool, scratchPool);
}

HSVN_STAND_IN(svn_error_t*, svn_wc__wq_build_dir_remove)
(svn_skel_t** work, svn_wc__db_t* database, const char* anyPath, const char* path, svn_boolean_t recursive,
 apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    SVN_ERR(refuseBelowAnyLink(path, scratchPool));
    return HSVN_BEHIND(svn_wc__wq_build_dir_remove)(work, database, anyPath, path, recursive, resultPool, scratchPool);
}

HSVN_STAND_IN(svn_error_t*, svn_wc__wq_build_file_move)
(svn_skel_t** work, svn_wc__db_t* database, const char* anyPath, const char* source, const char* destination,
 apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    SVN_ERR(refuseBelowAnyLink(source, scratchPool));
    SVN_ERR(refuseBelowAnyLink(destination, scratchPool));
    return HSVN_BEHIND(svn_wc__wq_build_file_move)(work, database, anyPath, source, destination, resultPool,
                                                   scratchPool);
}

HSVN_STAND_IN(svn_error_t*, svn_wc__wq_build_file_copy_translated)
(svn_skel_t** work, svn_wc__db_t* database, const char* path, const char* source, const char* destination,
 apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    SVN_ERR(refuseBelowAnyLink(destination, scratchPool));
    return HSVN_BEHIND(svn_wc__wq_build_file_copy_translated)(work, database, path, source, destination, resultPool,
                                                              scratchPool);
}

HSVN_STAND_IN(svn_error_t*, svn_wc__wq_build_dir_install)
(svn_skel_t** work, svn_wc__db_t* database, const char* path, apr_pool_t* resultPool, apr_pool_t* scratchPool)
{
    SVN_ERR(refuseBelowAnyLink(path, scratchPool));
    return HSVN_BEHIND(svn_wc__wq_build_dir_install)(work, database, path, resultPool, scratchPool);
}

// An update makes the directories that come.
HSVN_STAND_IN(svn_error_t*, svn_wc__ensure_directory)(const char* path, apr_pool_t* pool)
{
    SVN_ERR(refuseBelowAnyLink(path, pool));
    return HSVN_BEHIND(svn_wc__ensure_directory)(path, pool);
}

// Before an update those that are missing are made, by a function that makes others as well.
HSVN_STAND_IN(svn_error_t*, svn_wc_crawl_revisions5)
(svn_wc_context_t* context, const char* path, const svn_ra_reporter3_t* reporter, void* report,
 svn_boolean_t restoreFiles, svn_depth_t depth, svn_boolean_t honorDepthExclude, svn_boolean_t depthCompatibilityTrick,
 svn_boolean_t useCommitTimes, svn_cancel_func_t cancel, void* cancelBaton, svn_wc_notify_func2_t notify,
 void* notifyBaton, apr_pool_t* pool)
{
    const HSVNScopedValue restoring{restores, restoreFiles != FALSE};
    return HSVN_BEHIND(svn_wc_crawl_revisions5)(context, path, reporter, report, restoreFiles, depth, honorDepthExclude,
                                                depthCompatibilityTrick, useCommitTimes, cancel, cancelBaton, notify,
                                                notifyBaton, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_io_dir_make)(const char* path, apr_fileperms_t permissions, apr_pool_t* pool)
{
    if (restores) {
        SVN_ERR(refuseBelowAnyLink(path, pool));
    }
    return HSVN_BEHIND(svn_io_dir_make)(path, permissions, pool);
}

#endif
