// Removing a directory removes what is in it. Subversion opens what it is to remove, and so empties the directory that
// a symbolic link leads to which has taken a versioned directory's place, wherever that is. Here the link goes. Nothing
// goes that a database records below a link, which it never does of itself; what a revert removes is on record no more.

#include "Internal/ScopedValue.h"
#include "ItemsOnDisk.h"
#include "ObstructedParents.h"
#include "StandIns.h"

#include <svn_io.h>
#include <svn_wc.h>

using HSVNAdapter::isSymbolicLink;

#ifdef HSVN_GUARDS_DATABASES
namespace {

thread_local bool reverts = false; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

svn_error_t* refuse(const char* path, apr_pool_t* pool)
{
    return reverts ? HSVNAdapter::refuseBelowAnyLink(path, pool) : HSVNAdapter::refuseBelowDirectoryLink(path, pool);
}

template <class Revert, class... Arguments>
svn_error_t* whileReverting(Revert revert, Arguments... arguments)
{
    const HSVNScopedValue reverting{reverts, true};
    return revert(arguments...);
}

} // namespace

#if HSVN_LINE_MINOR >= 11
HSVN_STAND_IN(svn_error_t*, svn_wc_revert6)
(svn_wc_context_t* context, const char* path, svn_depth_t depth, svn_boolean_t useCommitTimes,
 const apr_array_header_t* changelists, svn_boolean_t clearChangelists, svn_boolean_t metadataOnly,
 svn_boolean_t keepAdded, svn_cancel_func_t cancel, void* cancelBaton, svn_wc_notify_func2_t notify, void* notifyBaton,
 apr_pool_t* pool)
{
    return whileReverting(HSVN_BEHIND(svn_wc_revert6), context, path, depth, useCommitTimes, changelists,
                          clearChangelists, metadataOnly, keepAdded, cancel, cancelBaton, notify, notifyBaton, pool);
}
#elif HSVN_LINE_MINOR >= 9
HSVN_STAND_IN(svn_error_t*, svn_wc_revert5)
(svn_wc_context_t* context, const char* path, svn_depth_t depth, svn_boolean_t useCommitTimes,
 const apr_array_header_t* changelists, svn_boolean_t clearChangelists, svn_boolean_t metadataOnly,
 svn_cancel_func_t cancel, void* cancelBaton, svn_wc_notify_func2_t notify, void* notifyBaton, apr_pool_t* pool)
{
    return whileReverting(HSVN_BEHIND(svn_wc_revert5), context, path, depth, useCommitTimes, changelists,
                          clearChangelists, metadataOnly, cancel, cancelBaton, notify, notifyBaton, pool);
}
#else
HSVN_STAND_IN(svn_error_t*, svn_wc_revert4)
(svn_wc_context_t* context, const char* path, svn_depth_t depth, svn_boolean_t useCommitTimes,
 const apr_array_header_t* changelists, svn_cancel_func_t cancel, void* cancelBaton, svn_wc_notify_func2_t notify,
 void* notifyBaton, apr_pool_t* pool)
{
    return whileReverting(HSVN_BEHIND(svn_wc_revert4), context, path, depth, useCommitTimes, changelists, cancel,
                          cancelBaton, notify, notifyBaton, pool);
}
#endif

HSVN_STAND_IN(svn_error_t*, svn_io_remove_dir2)
(const char* path, svn_boolean_t ignoreMissing, svn_cancel_func_t cancel, void* baton, apr_pool_t* pool)
{
    SVN_ERR(refuse(path, pool));
    return isSymbolicLink(path, pool) ? svn_io_remove_file2(path, ignoreMissing, pool)
                                      : HSVN_BEHIND(svn_io_remove_dir2)(path, ignoreMissing, cancel, baton, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_io_dir_remove_nonrecursive)(const char* path, apr_pool_t* pool)
{
    SVN_ERR(refuse(path, pool));
    return HSVN_BEHIND(svn_io_dir_remove_nonrecursive)(path, pool);
}

HSVN_STAND_IN(svn_error_t*, svn_io_remove_file2)(const char* path, svn_boolean_t ignoreMissing, apr_pool_t* pool)
{
    SVN_ERR(refuse(path, pool));
    return HSVN_BEHIND(svn_io_remove_file2)(path, ignoreMissing, pool);
}
#elif defined(HSVN_GUARDS_ENTRIES) && HSVN_LINE_MINOR >= 5
HSVN_STAND_IN(svn_error_t*, svn_io_remove_dir2)
(const char* path, svn_boolean_t ignoreMissing, svn_cancel_func_t cancel, void* baton, apr_pool_t* pool)
{
    return isSymbolicLink(path, pool) ? svn_io_remove_file(path, pool)
                                      : HSVN_BEHIND(svn_io_remove_dir2)(path, ignoreMissing, cancel, baton, pool);
}
#endif
