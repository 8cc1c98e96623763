#include "HalfMoves.h"

#if HSVN_LINE_MINOR >= 7

#include "CanonicalPaths.h"
#include "DatabaseConnections.h"
#include "Internal/ScopedValue.h"
#include "ItemsOnDisk.h"
#include "ObstructedParents.h"
#include "RelativePaths.h"
#include "WorkingCopyPlace.h"

#include <exception>
#include <map>
#include <svn_dirent_uri.h>
#include <svn_io.h>
#include <svn_wc.h>
#include <utility>

namespace HSVNAdapter {
namespace {

/// Whether an item is only on record: it is neither deleted there nor on disk.
bool isMissing(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    svn_wc_status3_t* status = nullptr;
    svn_error_t* const error = svn_wc_status3(&status, ctx->wc_ctx, path, pool, pool);
    svn_error_clear(error);
    return error == nullptr && status->node_status == svn_wc_status_missing;
}

/// Takes off the record what was to be at a move's destination, where nothing is.
svn_error_t* forget(const std::string& destination, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    const HSVNScopedValue unstoppable{ctx->cancel_func, nullptr};
    const HSVNScopedValue unheard{ctx->notify_func2, nullptr};
    auto* const targets = apr_array_make(pool, 1, sizeof(const char*));
    APR_ARRAY_PUSH(targets, const char*) = destination.c_str();
    // Not a revert, which fails without the other half of the move.
    svn_error_t* const error = svn_client_delete4(targets, TRUE, TRUE, nullptr, nullptr, nullptr, ctx, pool);
    return error == nullptr ? SVN_NO_ERROR
                            : svn_error_createf(SVN_ERR_INCOMPLETE_DATA, error,
                                                "What was to be moved to '%s' is in its place, but the move is still "
                                                "on record: a clean-up ends it",
                                                destination.c_str());
}

svn_error_t* takeBack(const std::string& source, const std::string& destination, svn_client_ctx_t* ctx,
                      apr_pool_t* pool)
{
    if (svn_error_t* error = svn_io_file_rename(destination.c_str(), source.c_str(), pool)) {
        return svn_error_createf(SVN_ERR_INCOMPLETE_DATA, error,
                                 "What was '%s' is at '%s', where its move ended: a clean-up puts it back",
                                 source.c_str(), destination.c_str());
    }
    return forget(destination, ctx, pool);
}

} // namespace

MovesUnderWay::MovesUnderWay(const std::vector<const char*>& sources, const char* destination, apr_pool_t* pool)
    : _pool{pool}
{
    if (isURL(destination)) {
        return;
    }
    const bool isPlace = sources.size() == 1 && kindOnDisk(destination, pool) == svn_node_none;
    for (const char* const source : sources) {
        if (isURL(source) || kindOnDisk(source, pool) == svn_node_none) {
            continue;
        }
        const char* const to =
            isPlace ? destination : svn_dirent_join(destination, svn_dirent_basename(source, pool), pool);
        const char* from = source;
        const char* absolute = to;
        if (kindOnDisk(to, pool) != svn_node_none) {
            continue;
        }
        svn_error_t* const error = svn_error_compose_create(svn_dirent_get_absolute(&from, source, pool),
                                                            svn_dirent_get_absolute(&absolute, to, pool));
        if (error == nullptr) {
            _moves.push_back({from, absolute});
        }
        svn_error_clear(error); // the move itself meets it
    }
}

svn_error_t* MovesUnderWay::takenBack(svn_error_t* failure, svn_client_ctx_t* ctx) const
{
    if (failure == nullptr) {
        return SVN_NO_ERROR;
    }
    for (const Move& move : _moves) {
        if (kindOnDisk(move.source.c_str(), _pool) == svn_node_none &&
            kindOnDisk(move.destination.c_str(), _pool) != svn_node_none && isMissing(move.source.c_str(), ctx, _pool))
        {
            failure = svn_error_compose_create(failure, takeBack(move.source, move.destination, ctx, _pool));
        }
    }
    return failure;
}

#ifdef HSVN_FAST_STATUS

namespace {

// What has come by a move that nothing has left by, with each item that is of the same origin.
constexpr const char* halfMoves =
    "SELECT n.local_relpath, s.local_relpath FROM nodes n JOIN nodes s ON s.wc_id = n.wc_id AND s.repos_id = "
    "n.repos_id "
    "AND s.repos_path = n.repos_path AND s.revision = n.revision AND s.kind = n.kind "
    "AND s.local_relpath != n.local_relpath "
    "WHERE n.moved_here = 1 AND n.presence = 'normal' AND s.presence = 'normal' "
    "AND n.op_depth = LENGTH(n.local_relpath) - LENGTH(REPLACE(n.local_relpath, '/', '')) + 1 "
    "AND NOT EXISTS (SELECT 1 FROM nodes m WHERE m.wc_id = n.wc_id AND m.moved_to = n.local_relpath) "
    "AND s.op_depth = (SELECT MAX(op_depth) FROM nodes t WHERE t.wc_id = s.wc_id AND t.local_relpath = "
    "s.local_relpath)";

/// By destination the sources that are not on disk; those of a destination that is not there either do not matter.
std::map<std::string, std::vector<std::string>> foundHalfMoves(const std::string& root, apr_pool_t* pool)
{
    std::map<std::string, std::vector<std::string>> moves;
    const SQLiteDatabase database = openDatabase(databaseOf(root, pool));
    const SQLiteStatement rows = database ? prepareStatement(database.get(), halfMoves) : nullptr;
    while (rows && sqlite3_step(rows.get()) == SQLITE_ROW) {
        const auto to = textInColumn(rows.get(), 0);
        const auto from = textInColumn(rows.get(), 1);
        if (!isRelativePath(to) || !isRelativePath(from)) {
            continue; // not of a database that Subversion has written
        }
        const std::string destination = root + '/' + std::string{to};
        std::string source = root + '/' + std::string{from};
        if (isBelowAnyLink(destination.c_str(), pool) || isBelowAnyLink(source.c_str(), pool)) {
            continue;
        }
        auto& sources = moves[destination];
        if (kindOnDisk(source.c_str(), pool) == svn_node_none) {
            sources.push_back(std::move(source));
        }
    }
    return moves;
}

} // namespace

svn_error_t* takeBackHalfMoves(const char* path, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    try {
        std::string former; // with which everything below goes
        for (const auto& [destination, sources] : foundHalfMoves(workingCopyRoot(path, pool), pool)) {
            if (!former.empty() && svn_dirent_is_ancestor(former.c_str(), destination.c_str())) {
                continue;
            }
            former = destination;
            if (kindOnDisk(destination.c_str(), pool) == svn_node_none) {
                SVN_ERR(forget(destination, ctx, pool));
            } else if (sources.size() == 1 && isMissing(sources.front().c_str(), ctx, pool)) {
                SVN_ERR(takeBack(sources.front(), destination, ctx, pool));
            }
        }
        return SVN_NO_ERROR;
    } catch (const std::exception&) { // it must not pass through Subversion
        return svn_error_create(APR_ENOMEM, nullptr, nullptr);
    }
}

#else

svn_error_t* takeBackHalfMoves(const char* /*path*/, svn_client_ctx_t* /*ctx*/, apr_pool_t* /*pool*/)
{
    return SVN_NO_ERROR;
}

#endif

} // namespace HSVNAdapter

#else

namespace HSVNAdapter {

MovesUnderWay::MovesUnderWay(const std::vector<const char*>& /*sources*/, const char* /*destination*/, apr_pool_t* pool)
    : _pool{pool}
{
}

svn_error_t* MovesUnderWay::takenBack(svn_error_t* failure, svn_client_ctx_t* /*ctx*/) const { return failure; }

svn_error_t* takeBackHalfMoves(const char* /*path*/, svn_client_ctx_t* /*ctx*/, apr_pool_t* /*pool*/)
{
    return SVN_NO_ERROR;
}

} // namespace HSVNAdapter

#endif
