#include "ExtensionTable.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include "CanonicalPaths.h"
#include "CompletedStatus.h"
#include "DatabaseConnections.h"
#include "ErrorCodes.h"
#include "ExtensionTargets.h"
#include "FoldersAhead.h"
#include "WalkedFolders.h"
#include "WorkingCopyPlace.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <svn_config.h>
#include <svn_dirent_uri.h>
#include <svn_path.h>
#include <thread>
#include <utility>

namespace HSVNAdapter {
namespace {

/// The walk itself goes on one: more readers would wait for it.
constexpr unsigned mostThreads = 4;

/// How many may read beside the caller's thread.
unsigned readersFor(unsigned threads, const std::string& database)
{
    const unsigned most = std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads);
    const unsigned wanted = threads == 0 && isWorthThreads(database) ? most : std::max(threads, 1U);
    return std::min(wanted, most) - 1;
}

/// Whether no other connection may read the database.
bool locksExclusively(const svn_client_ctx_t& ctx)
{
    auto* const configuration =
        ctx.config == nullptr
            ? nullptr
            : static_cast<svn_config_t*>(apr_hash_get(ctx.config, SVN_CONFIG_CATEGORY_CONFIG, APR_HASH_KEY_STRING));
    svn_boolean_t isExclusive = FALSE;
    svn_error_clear(svn_config_get_bool(configuration, &isExclusive, SVN_CONFIG_SECTION_WORKING_COPY,
                                        SVN_CONFIG_OPTION_SQLITE_EXCLUSIVE, FALSE));
    return isExclusive != FALSE;
}

svn_error_t* find(WalkedPlace& place, const char* path, apr_pool_t* pool)
{
    const char* target = nullptr;
    const char* native = nullptr;
    const char* accent = nullptr;
    SVN_ERR(svn_dirent_get_absolute(&target, path, pool));
    SVN_ERR(svn_path_cstring_from_utf8(&native, target, pool));
    place.target = target;
    place.nativeTarget = native;
    place.root = workingCopyRoot(target, pool);
    place.database = databaseOf(place.root, pool);
    constexpr const char* accentInUTF8 = "\xC3\xA9";
    svn_error_t* const error = svn_path_cstring_from_utf8(&accent, accentInUTF8, pool);
    place.isNativeUTF8 = error == nullptr && std::string_view{accent} == accentInUTF8;
    svn_error_clear(error);
    return SVN_NO_ERROR;
}

/// Null where reading ahead does not pay or is not possible.
std::unique_ptr<FoldersAhead> foldersReadAhead(unsigned threads, const svn_client_ctx_t& ctx, const char* path,
                                               apr_pool_t* pool)
{
    WalkedPlace place;
    if (svn_error_t* const error = find(place, path, pool)) {
        svn_error_clear(error); // the walk tells of it
        return nullptr;
    }
    const unsigned readers = place.root.empty() || locksExclusively(ctx) ? 0 : readersFor(threads, place.database);
    return readers == 0 ? nullptr : std::make_unique<FoldersAhead>(std::move(place), readers);
}

/// A walk that finds folders read ahead. What it calls may begin another walk, which has to find them as they are then.
class WalkAhead
{
  public:
    WalkAhead(FoldersAhead* ahead, svn_client_ctx_t* ctx, HSVNStatusFunctions::StatusReceiver receiver, void* baton,
              apr_pool_t* pool)
        : _folders{ahead}, _completed{receiver, baton, ctx, pool}, _ctx{ctx}, _cancel{ctx->cancel_func},
          _cancelBaton{ctx->cancel_baton}
    {
        if (_cancel != nullptr) {
            _ctx->cancel_func = askWhetherToStop;
            _ctx->cancel_baton = this;
        }
    }
    ~WalkAhead()
    {
        if (_ctx->cancel_baton == this) {
            _ctx->cancel_func = _cancel;
            _ctx->cancel_baton = _cancelBaton;
        }
    }
    WalkAhead(const WalkAhead&) = delete;
    WalkAhead& operator=(const WalkAhead&) = delete;

    static svn_error_t* receive(void* baton, const char* path, const svn_client_status_t* status, apr_pool_t* pool)
    {
        const WalkedFolders asTheyAre{nullptr};
        return CompletedStatus::receive(&static_cast<WalkAhead*>(baton)->_completed, path, status, pool);
    }

  private:
    static svn_error_t* askWhetherToStop(void* baton)
    {
        const WalkedFolders asTheyAre{nullptr};
        const auto& walk = *static_cast<const WalkAhead*>(baton);
        return walk._cancel(walk._cancelBaton);
    }

    WalkedFolders _folders;
    CompletedStatus _completed;
    svn_client_ctx_t* _ctx;
    svn_cancel_func_t _cancel;
    void* _cancelBaton;
};

svn_error_t* statusOnThreads(unsigned threads, svn_revnum_t* result, svn_client_ctx_t* ctx, const char* path,
                             const svn_opt_revision_t* revision, svn_depth_t depth, svn_boolean_t getAll,
                             svn_boolean_t checkOutOfDate, svn_boolean_t noIgnore, svn_boolean_t ignoreExternals,
                             const apr_array_header_t* changelists, HSVNStatusFunctions::StatusReceiver receiver,
                             void* baton, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    std::unique_ptr<FoldersAhead> ahead;
    if (threads != 1 && !checkOutOfDate && (depth == svn_depth_infinity || depth == svn_depth_unknown)) {
        try {
            ahead = foldersReadAhead(threads, *ctx, path, pool);
        } catch (const std::exception&) {
            // Out of memory: the walk reads for itself.
        }
    }
    WalkAhead walk{ahead.get(), ctx, receiver, baton, pool};
    return svn_client_status6(result, ctx, path, revision, depth, getAll, checkOutOfDate, TRUE, noIgnore,
                              ignoreExternals, FALSE, changelists, WalkAhead::receive, &walk, pool);
}

} // namespace

void fillStatusOnThreads(HSVNStatusFunctions& table) { table.client_status_on_threads = statusOnThreads; }

} // namespace HSVNAdapter

#else

void HSVNAdapter::fillStatusOnThreads(HSVNStatusFunctions& /*table*/) {}

#endif
