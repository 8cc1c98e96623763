#include "FormerAreas.h"

#if HSVN_LINE_MINOR >= 7

#include "DatabaseConnections.h"
#include "ItemsOnDisk.h"
#include "ObstructedParents.h"
#include "RelativePaths.h"
#include "WorkingCopyPlace.h"

#include <svn_dirent_uri.h>
#include <svn_io.h>

namespace HSVNAdapter {
namespace {

/// Removes the area of a directory, unless it is the root of a working copy.
svn_error_t* removeFormerArea(const char* directory, apr_pool_t* pool)
{
    const char* const area = svn_dirent_join(directory, svn_wc_get_adm_dir(pool), pool);
    const bool isRoot = identityOf(databaseOf(directory, pool)) != FileIdentity{};
    if (isRoot || kindOnDisk(area, pool) != svn_node_dir) {
        return SVN_NO_ERROR;
    }
    svn_error_t* const error = svn_io_remove_dir2(area, TRUE, nullptr, nullptr, pool);
    return error == nullptr
               ? SVN_NO_ERROR
               : svn_error_createf(SVN_ERR_INCOMPLETE_DATA, error,
                                   "The working copy is upgraded, but '%s', which it needs no longer, could not be "
                                   "removed: remove it, or '%s' is taken for a working copy of the former format",
                                   area, directory);
}

} // namespace

const svn_wc_notify_t* FormerAreas::heard(const svn_wc_notify_t* notification, apr_pool_t* /*pool*/)
{
    if (notification->action == svn_wc_notify_upgraded_path) {
        const char* path = nullptr;
        svn_error_t* const error = svn_dirent_get_absolute(&path, notification->path, _pool);
        if (error == nullptr) {
            _upgraded.push_back(path);
        }
        svn_error_clear(error);
    }
    return notification;
}

svn_error_t* FormerAreas::remove() const
{
    for (const char* const directory : _upgraded) {
        SVN_ERR(removeFormerArea(directory, _pool));
    }
    return SVN_NO_ERROR;
}

#ifdef HSVN_FAST_STATUS

std::string rootOfUnfinishedUpgrade(const char* path, apr_pool_t* pool)
{
    const std::string root = workingCopyRoot(path, pool);
    const SQLiteDatabase database = openDatabase(databaseOf(root, pool));
    const SQLiteStatement work =
        database ? prepareStatement(database.get(), "SELECT 1 FROM work_queue WHERE INSTR(work, 'postupgrade')")
                 : nullptr;
    return work && sqlite3_step(work.get()) == SQLITE_ROW ? root : std::string{};
}

svn_error_t* removeFormerAreas(const std::string& root, apr_pool_t* pool)
{
    const SQLiteDatabase database = root.empty() ? nullptr : openDatabase(databaseOf(root, pool));
    const SQLiteStatement directories =
        database ? prepareStatement(database.get(), "SELECT DISTINCT local_relpath FROM nodes "
                                                    "WHERE kind = 'dir' AND local_relpath != ''")
                 : nullptr;
    while (directories && sqlite3_step(directories.get()) == SQLITE_ROW) {
        const auto name = textInColumn(directories.get(), 0);
        if (!isRelativePath(name)) {
            continue; // not of a database that Subversion has written
        }
        const std::string directory = root + '/' + std::string{name};
        // With its list of entries it is whole, and maybe of another working copy.
        const std::string entries = directory + '/' + svn_wc_get_adm_dir(pool) + "/entries";
        if (!isBelowAnyLink(entries.c_str(), pool) && kindOnDisk(entries.c_str(), pool) == svn_node_none) {
            SVN_ERR(removeFormerArea(directory.c_str(), pool));
        }
    }
    return SVN_NO_ERROR;
}

#else

std::string rootOfUnfinishedUpgrade(const char* /*path*/, apr_pool_t* /*pool*/) { return {}; }

svn_error_t* removeFormerAreas(const std::string& /*root*/, apr_pool_t* /*pool*/) { return SVN_NO_ERROR; }

#endif

} // namespace HSVNAdapter

#endif
