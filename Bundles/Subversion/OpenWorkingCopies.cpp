#include "OpenWorkingCopies.h"

#include "CanonicalPaths.h"
#include "DatabaseConnections.h"
#include "ExtensionTable.h"
#include "RelativePaths.h"
#include "WorkingCopyContexts.h"

#if HSVN_LINE_MINOR >= 7

#include <algorithm>
#include <ctime>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace HSVNAdapter {
namespace {

constexpr const char* openWorkingCopiesKey = "HSVNAdapter::OpenWorkingCopies";
/// A client that visits more of them would sooner or later run out of descriptors.
constexpr std::size_t mostOpen = 64;
/// How long a stop waits for the queue of work to be empty: of the time that the thread itself works, so that it waits
/// for as much on a busy machine, and by the clock.
constexpr std::chrono::milliseconds patience{300};
constexpr std::chrono::seconds longestWait{3};

std::chrono::nanoseconds timeOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

apr_status_t forget(void* record)
{
    const std::unique_ptr<OpenWorkingCopies> owner{static_cast<OpenWorkingCopies*>(record)};
    return APR_SUCCESS;
}

/// The targets as absolute paths; those that cannot be paths are the operation's to refuse.
std::vector<std::string> absolutePaths(const apr_array_header_t* targets, apr_pool_t* pool)
{
    std::vector<std::string> paths;
    for (int index = 0; index < targets->nelts; ++index) {
        const char* path = APR_ARRAY_IDX(targets, index, const char*);
        if (svn_error_t* const error = canonicalize(&path, TargetKind::Path, pool)) {
            svn_error_clear(error);
        } else {
            paths.emplace_back(path);
        }
    }
    return paths;
}

/// The folder of a file, and of a symbolic link that lies in a working copy, to which it belongs; else the item itself.
std::string holderOf(const std::string& path, apr_pool_t* pool)
{
    struct stat attributes
    {
    };
    if (::lstat(path.c_str(), &attributes) == 0 && !S_ISDIR(attributes.st_mode)) {
        std::string folder = path.substr(0, path.rfind('/'));
        if (!S_ISLNK(attributes.st_mode) || !workingCopyRoot(folder, pool).empty()) {
            return folder;
        }
    }
    return path;
}

/// The root that an item's own working copy has.
std::string rootOf(const std::string& path, apr_pool_t* pool) { return workingCopyRoot(holderOf(path, pool), pool); }

apr_time_t changeOf(const std::string& file)
{
    struct stat attributes
    {
    };
    return ::stat(file.c_str(), &attributes) != 0
               ? 0
               : apr_time_from_sec(attributes.st_mtim.tv_sec) + attributes.st_mtim.tv_nsec / 1000;
}

#ifdef HSVN_FAST_STATUS
/// The directories that externals of a working copy are checked out in.
std::vector<std::string> externalsIn(const std::string& root, const std::string& database)
{
    std::vector<std::string> folders;
    const auto connection = openDatabase(database);
    const auto row = connection
                         ? prepareStatement(connection.get(), "SELECT local_relpath FROM externals WHERE kind = 'dir'")
                         : nullptr;
    while (row && sqlite3_step(row.get()) == SQLITE_ROW) {
        const auto path = textInColumn(row.get(), 0);
        if (!path.empty() && isRelativePath(path)) { // anyone may have written it
            folders.push_back(root + '/' + std::string{path});
        }
    }
    return folders;
}

bool hasWork(const std::string& database)
{
    const auto connection = openDatabase(database);
    if (connection) {
        sqlite3_busy_timeout(connection.get(), 0);
    }
    const auto row =
        connection ? prepareStatement(connection.get(), "SELECT EXISTS (SELECT 1 FROM work_queue)") : nullptr;
    // A database that is being written to has work as well.
    return row && (sqlite3_step(row.get()) != SQLITE_ROW || sqlite3_column_int(row.get(), 0) != 0);
}
#else
std::vector<std::string> externalsIn(const std::string& /*root*/, const std::string& /*database*/) { return {}; }

bool hasWork(const std::string& /*database*/) { return false; }
#endif

} // namespace

OpenWorkingCopies& OpenWorkingCopies::of(svn_client_ctx_t* ctx, apr_pool_t* contextPool)
{
    OpenWorkingCopies* record = in(contextPool);
    if (record == nullptr) {
        record = new OpenWorkingCopies{ctx, contextPool}; // NOLINT(cppcoreguidelines-owning-memory): goes with the pool
        apr_pool_userdata_setn(record, openWorkingCopiesKey, forget, contextPool);
    }
    return *record;
}

OpenWorkingCopies* OpenWorkingCopies::in(apr_pool_t* contextPool)
{
    void* record = nullptr;
    apr_pool_userdata_get(&record, openWorkingCopiesKey, contextPool);
    return static_cast<OpenWorkingCopies*>(record);
}

svn_error_t* OpenWorkingCopies::refresh(const apr_array_header_t* targets, apr_pool_t* pool)
{
    destroyFormer();
    const bool isLocked = holdsLock(pool); // for the former targets
    _targets.clear();
    std::vector<std::string> roots;
    for (const auto& path : absolutePaths(targets, pool)) {
        roots.push_back(_targets.emplace(path, rootOf(path, pool)).first->second);
    }
    _askedForWork.reset();
    // Where nothing is open, what was missing is remembered as such.
    const bool mustRenew = _seen.empty() ? !_targets.empty()
                                         : _seen.size() > mostOpen || isLocked || _keepsOthersOut ||
                                               keepsOthersOut(_ctx) || isStale(pool) || isMistaken(pool);
    if (mustRenew) {
        SVN_ERR(close(pool));
    }
    noteRoots(roots, pool);
    _made.clear();
    return SVN_NO_ERROR;
}

void OpenWorkingCopies::note(const apr_array_header_t* targets, apr_pool_t* pool)
{
    std::vector<std::string> roots;
    for (const auto& path : absolutePaths(targets, pool)) {
        roots.push_back(rootAfter(path, pool));
    }
    noteRoots(roots, pool);
}

void OpenWorkingCopies::noteRoots(const std::vector<std::string>& roots, apr_pool_t* pool)
{
    for (const auto& root : roots) {
        noteRoot(root, pool);
    }
    std::vector<std::string> seen;
    for (const auto& [root, record] : _seen) {
        seen.push_back(root);
    }
    for (const auto& root : seen) {
        noteExternals(root, _seen[root], pool);
    }
}

/// The root of a path's working copy once an operation on it is over, which may have made one there but none above.
std::string OpenWorkingCopies::rootAfter(const std::string& path, apr_pool_t* pool) const
{
    const auto known = _targets.find(path);
    const bool isAsBefore = known != _targets.end() && !known->second.empty() && known->second != path &&
                            identityOf(databaseOf(path, pool)) == FileIdentity{};
    return isAsBefore ? known->second : rootOf(path, pool);
}

svn_error_t* OpenWorkingCopies::close(apr_pool_t* pool)
{
    apr_pool_t* const generationPool = svn_pool_create(_contextPool);
    svn_wc_context_t* fresh = nullptr;
    if (svn_error_t* const error = createWorkingCopyContext(&fresh, _ctx, generationPool, pool)) {
        svn_pool_destroy(generationPool);
        return error;
    }
    if (_generationPool != nullptr) {
        _formerPools.push_back(_generationPool);
    }
    _generationPool = generationPool;
    _keepsOthersOut = keepsOthersOut(_ctx);
    _seen.clear();
    return svn_wc_context_destroy(std::exchange(_ctx->wc_ctx, fresh));
}

void OpenWorkingCopies::destroyFormer()
{
    for (apr_pool_t* const pool : std::exchange(_formerPools, {})) {
        svn_pool_destroy(pool);
    }
}

bool OpenWorkingCopies::hasUnfinishedWork(const std::string& path)
{
    const Moment now{timeOf(CLOCK_THREAD_CPUTIME_ID), timeOf(CLOCK_MONOTONIC)};
    _askedForWork = _askedForWork.value_or(now);
    if (now.worked - _askedForWork->worked > patience || now.passed - _askedForWork->passed > longestWait) {
        return false;
    }
    std::set<std::string> roots{workingCopyRoot(path, _contextPool)};
    for (const auto& target : _targets) {
        roots.insert(workingCopyRoot(target.first, _contextPool));
    }
    return std::any_of(roots.begin(), roots.end(),
                       [&](const auto& root) { return !root.empty() && hasWork(databaseOf(root, _contextPool)); });
}

/// Also after what another program has written, which may be an upgrade: the format is read as a database is opened.
bool OpenWorkingCopies::isStale(apr_pool_t* pool) const
{
    return std::any_of(_seen.begin(), _seen.end(), [pool](const auto& seen) {
        const std::string database = databaseOf(seen.first, pool);
        return seen.second.identity != identityOf(database) || seen.second.changed != changeOf(database);
    });
}

bool OpenWorkingCopies::holdsLock(apr_pool_t* pool) const
{
    const auto isLocked = [&](const auto& place) {
        svn_boolean_t isHeld = FALSE;
        svn_error_clear(svn_wc_locked2(&isHeld, nullptr, _ctx->wc_ctx, place.first.c_str(), pool));
        return isHeld != FALSE;
    };
    return !_seen.empty() && (std::ranges::any_of(_targets, isLocked) || std::ranges::any_of(_seen, isLocked));
}

bool OpenWorkingCopies::isMistaken(apr_pool_t* pool) const
{
    // The directory of an external was looked at before there was a working copy in it: a commit of what is changed in
    // externals, too, found nothing there.
    return std::ranges::any_of(_made, [&](const auto& root) { return isMistakenAbout(root, root, pool); }) ||
           std::ranges::any_of(_targets,
                               [&](const auto& target) { return isMistakenAbout(target.first, target.second, pool); });
}

bool OpenWorkingCopies::isMistakenAbout(const std::string& path, const std::string& root, apr_pool_t* pool) const
{
    const char* believed = nullptr;
    svn_error_clear(svn_client_get_wc_root(&believed, holderOf(path, pool).c_str(), _ctx, pool, pool));
    if (believed == nullptr) {
        return !root.empty(); // Subversion keeps the kind of the last path in mind, also of one that was missing
    }
    return root.empty() ||
           (root != believed && identityOf(databaseOf(root, pool)) != identityOf(databaseOf(believed, pool)));
}

void OpenWorkingCopies::noteRoot(const std::string& root, apr_pool_t* pool)
{
    if (!root.empty() && !_seen.contains(root)) {
        const auto seen = _seen.emplace(root, Seen{identityOf(databaseOf(root, pool))}).first;
        _made.push_back(root);
        noteExternals(root, seen->second, pool);
    }
}

void OpenWorkingCopies::noteExternals(const std::string& root, Seen& seen, apr_pool_t* pool)
{
    const std::string database = databaseOf(root, pool);
    const apr_time_t changed = changeOf(database);
    if (std::exchange(seen.changed, changed) == changed) {
        return;
    }
    for (const auto& folder : externalsIn(root, database)) {
        const auto identity = identityOf(databaseOf(folder, pool));
        // Symbolic links may lead to one and the same working copy in endless ways.
        const bool isSeen = std::any_of(_seen.begin(), _seen.end(),
                                        [&](const auto& other) { return other.second.identity == identity; });
        if (identity != FileIdentity{} && !isSeen) {
            noteRoot(folder, pool);
        }
    }
}

namespace {

svn_error_t* refreshWorkingCopies(const apr_array_header_t* targets, svn_client_ctx_t* ctx, apr_pool_t* contextPool,
                                  apr_pool_t* pool)
{
    return OpenWorkingCopies::of(ctx, contextPool).refresh(targets, pool);
}

void noteWorkingCopies(const apr_array_header_t* targets, svn_client_ctx_t* ctx, apr_pool_t* contextPool,
                       apr_pool_t* pool)
{
    OpenWorkingCopies::of(ctx, contextPool).note(targets, pool);
}

svn_error_t* closeWorkingCopies(svn_client_ctx_t* ctx, apr_pool_t* contextPool, apr_pool_t* pool)
{
    return OpenWorkingCopies::of(ctx, contextPool).close(pool);
}

#ifdef HSVN_FAST_STATUS
svn_boolean_t hasUnfinishedWork(const char* path, apr_pool_t* contextPool)
{
    OpenWorkingCopies* const record = OpenWorkingCopies::in(contextPool);
    return record != nullptr && record->hasUnfinishedWork(path);
}
#endif

} // namespace

void fillOpenWorkingCopies(HSVNDatabaseFunctions& table)
{
    table.refresh_working_copies = refreshWorkingCopies;
    table.note_working_copies = noteWorkingCopies;
    table.close_working_copies = closeWorkingCopies;
#ifdef HSVN_FAST_STATUS
    table.has_unfinished_work = hasUnfinishedWork;
#endif
}

} // namespace HSVNAdapter

#endif
