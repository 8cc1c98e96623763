#include "ObstructedParents.h"

#if defined(HSVN_FAST_STATUS) || defined(HSVN_GUARDS_DATABASES)

#include "CanonicalPaths.h"
#include "DatabaseConnections.h"
#include "ItemsOnDisk.h"
#include "WorkingCopyPlace.h"

#include <exception>
#include <fcntl.h>
#include <linux/openat2.h>
#include <svn_dirent_uri.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace HSVNAdapter {
namespace {

constexpr const char* itemKind =
    "SELECT kind, presence FROM nodes WHERE local_relpath = ? ORDER BY op_depth DESC LIMIT 1";

/// Whether something is there, but no directory.
bool isObstruction(const char* path, apr_pool_t* pool)
{
    const svn_node_kind_t kind = kindOnDisk(path, pool);
    return kind != svn_node_none && kind != svn_node_dir;
}

/// Whether a directory is there and no part of its path is a link: told at once for each of the thousands of files that
/// a check-out writes. False, too, where the system cannot tell.
bool isReachedWithoutLinks(const std::string& directory)
{
    open_how how{};
    how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    const auto descriptor = syscall(SYS_openat2, AT_FDCWD, directory.c_str(), &how, sizeof how);
    return descriptor >= 0 && close(static_cast<int>(descriptor)) == 0;
}

using Test = bool (*)(const char* path, apr_pool_t* pool);

/// Asks for what is recorded of an item.
class RecordedItem
{
  public:
    RecordedItem(std::string_view root, std::string_view path, apr_pool_t* pool)
        : _database{openDatabase(databaseOf(root, pool))}, _row{_database ? prepareStatement(_database.get(), itemKind)
                                                                          : nullptr}
    {
        if (_row) {
            const std::string_view name = path.substr(root.size() + 1);
            sqlite3_bind_text(_row.get(), 1, name.data(), static_cast<int>(name.size()), SQLITE_TRANSIENT);
            _result = sqlite3_step(_row.get());
        }
    }

    /// Whether it may be there, as a directory or as anything.
    bool mayBeDirectory() const
    {
        return _result == SQLITE_ROW
                   ? textInColumn(_row.get(), 0) == "dir" && textInColumn(_row.get(), 1) != "base-deleted"
                   : _result != SQLITE_DONE;
    }
    bool mayBeThere() const { return _result != SQLITE_DONE; }

  private:
    SQLiteDatabase _database;
    SQLiteStatement _row;
    int _result = SQLITE_ERROR;
};

/// Which of what passes a test is in the way: what has the place of a versioned directory, or is above an item that is
/// recorded below it; or anything.
enum class InTheWay
{
    OfRecordedItems,
    Anything
};

/// What passes the test above a path, in its working copy; empty when nothing does.
std::string foundAbove(std::string_view path, Test test, InTheWay which, apr_pool_t* pool)
{
    const auto parentOf = [](std::string_view item) { return item.substr(0, item.rfind('/')); };
    if (!path.starts_with('/') || isReachedWithoutLinks(std::string{parentOf(path)})) {
        return {};
    }
    std::vector<std::string> found;
    const std::string area = std::string{"/"} + svn_wc_get_adm_dir(pool);
    const auto isInTheWay = [&](std::string_view root, const std::string& item) {
        return which == InTheWay::Anything || RecordedItem{root, item, pool}.mayBeDirectory() ||
               RecordedItem{root, path, pool}.mayBeThere();
    };
    for (auto folder = parentOf(path); folder.starts_with('/'); folder = parentOf(folder)) {
        if (identityOf(databaseOf(folder, pool)) != FileIdentity{}) {
            for (const std::string& item : found) {
                if (isInTheWay(folder, item)) {
                    return item;
                }
            }
            return {};
        }
        if (std::string item{folder}; !item.ends_with(area) && test(item.c_str(), pool)) {
            found.push_back(std::move(item));
        }
    }
    return {};
}

svn_error_t* refuse(const char* path, Test test, InTheWay which, apr_pool_t* pool)
{
    try {
        const std::string item = foundAbove(path, test, which, pool);
        return item.empty() ? SVN_NO_ERROR
                            : svn_error_createf(SVN_ERR_NODE_UNEXPECTED_KIND, nullptr,
                                                "%s in the place of the directory '%s' is in the way of '%s': "
                                                "move it away first",
                                                isSymbolicLink(item.c_str(), pool) ? "A symbolic link" : "What is",
                                                item.c_str(), path);
    } catch (const std::exception&) { // it must not pass through Subversion
        return svn_error_create(APR_ENOMEM, nullptr, nullptr);
    }
}

} // namespace

bool isBelowAnyLink(const char* path, apr_pool_t* pool)
{
    svn_error_t* const error = refuseBelowAnyLink(path, pool);
    svn_error_clear(error);
    return error != nullptr;
}

svn_error_t* refuseBelowObstruction(const char* path, apr_pool_t* pool)
{
    return refuse(path, isObstruction, InTheWay::OfRecordedItems, pool);
}

svn_error_t* refuseBelowDirectoryLink(const char* path, apr_pool_t* pool)
{
    return refuse(path, isSymbolicLink, InTheWay::OfRecordedItems, pool);
}

svn_error_t* refuseBelowAnyLink(const char* path, apr_pool_t* pool)
{
    return refuse(path, isSymbolicLink, InTheWay::Anything, pool);
}

svn_error_t* refuseTargetBelowDirectoryLink(const char* target, apr_pool_t* pool)
{
    if (isURL(target)) {
        return SVN_NO_ERROR;
    }
    SVN_ERR(svn_dirent_get_absolute(&target, target, pool));
    return refuseBelowDirectoryLink(target, pool);
}

#else

namespace HSVNAdapter {

bool isBelowAnyLink(const char* /*path*/, apr_pool_t* /*pool*/) { return false; }

svn_error_t* refuseBelowObstruction(const char* /*path*/, apr_pool_t* /*pool*/) { return SVN_NO_ERROR; }

svn_error_t* refuseBelowDirectoryLink(const char* /*path*/, apr_pool_t* /*pool*/) { return SVN_NO_ERROR; }

svn_error_t* refuseBelowAnyLink(const char* /*path*/, apr_pool_t* /*pool*/) { return SVN_NO_ERROR; }

svn_error_t* refuseTargetBelowDirectoryLink(const char* /*target*/, apr_pool_t* /*pool*/) { return SVN_NO_ERROR; }

#endif

svn_error_t* refuseBelowDirectoryLinks(const apr_array_header_t* targets, apr_pool_t* pool)
{
    for (int index = 0; index < targets->nelts; ++index) {
        SVN_ERR(refuseTargetBelowDirectoryLink(APR_ARRAY_IDX(targets, index, const char*), pool));
    }
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter
