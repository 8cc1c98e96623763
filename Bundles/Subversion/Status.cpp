#include "CanonicalPaths.h"
#include "CompletedStatus.h"
#include "EntryPointTable.h"
#include "ErrorCodes.h"
#include "ExtensionTable.h"
#include "ExtensionTargets.h"
#include "StatusRecords.h"

namespace HSVNAdapter {
namespace {

struct StatusReceiver
{
    svn_wc_status_func2_t function;
    void* baton;
};

/// Lines before 1.6 know of none, and their records end before it.
bool hasTreeConflict([[maybe_unused]] const svn_wc_status2_t& status)
{
#if HSVN_LINE_MINOR >= 6
    return status.tree_conflict != nullptr;
#else
    return false;
#endif
}

/// Newer lines report an item that is nowhere, neither here nor in the repository, with nothing to say of it.
bool saysNothing(const svn_wc_status2_t& status)
{
    return status.entry == nullptr && status.text_status == svn_wc_status_none &&
           status.repos_text_status == svn_wc_status_none && status.repos_lock == nullptr && !hasTreeConflict(status);
}

void receiveStatus(void* baton, const char* path, svn_wc_status2_t* status)
{
    const auto* receiver = static_cast<const StatusReceiver*>(baton);
    if (!saysNothing(*status)) {
        receiver->function(receiver->baton, path, status);
    }
}

svn_error_t* status2(svn_revnum_t* result, const char* path, const svn_opt_revision_t* revision,
                     svn_wc_status_func2_t receiver, void* baton, svn_boolean_t recurse, svn_boolean_t getAll,
                     svn_boolean_t update, svn_boolean_t noIgnore, svn_boolean_t ignoreExternals, svn_client_ctx_t* ctx,
                     apr_pool_t* pool)
{
    HSVN_CANONICAL_PATH(path, pool);
    StatusReceiver filter{receiver, baton};
#ifdef HSVN_FAST_STATUS
    StatusRecords records{ctx, path, recurse, getAll, receiveStatus, &filter, pool};
    // Asked for the whole depth for good, the repository would tell of everything that sparse folders leave out.
    const svn_boolean_t depthIsSticky = !recurse;
    svn_error_t* error = svn_client_status6(
        result, ctx, path, revision, recurse ? svn_depth_infinity : svn_depth_immediates, getAll, update, TRUE,
        noIgnore, ignoreExternals, depthIsSticky, nullptr, StatusRecords::receive, &records, pool);
#elif HSVN_LINE_MINOR >= 5
    // Asked for a certain depth, the repository would tell of everything that sparse folders leave out.
    svn_error_t* error = svn_client_status3(result, path, revision, receiveStatus, &filter,
                                            recurse ? svn_depth_unknown : svn_depth_immediates, getAll, update,
                                            noIgnore, ignoreExternals, nullptr, ctx, pool);
#else
    svn_error_t* error = svn_client_status2(result, path, revision, receiveStatus, &filter, recurse, getAll, update,
                                            noIgnore, ignoreExternals, ctx, pool);
#endif
#if HSVN_LINE_MINOR >= 7
    // Below an unversioned folder.
    return smoothed(error, {{SVN_ERR_WC_PATH_NOT_FOUND, SVN_ERR_WC_NOT_DIRECTORY}});
#else
    return smoothed(error);
#endif
}

#if HSVN_LINE_MINOR >= 9
svn_error_t* status6(svn_revnum_t* result, svn_client_ctx_t* ctx, const char* path, const svn_opt_revision_t* revision,
                     svn_depth_t depth, svn_boolean_t getAll, svn_boolean_t checkOutOfDate, svn_boolean_t noIgnore,
                     svn_boolean_t ignoreExternals, const apr_array_header_t* changelists,
                     HSVNStatusFunctions::StatusReceiver receiver, void* baton, apr_pool_t* pool)
{
    SVN_ERR(checkLocalTarget(&path, pool));
    CompletedStatus walk{receiver, baton, ctx, pool};
    return svn_client_status6(result, ctx, path, revision, depth, getAll, checkOutOfDate, TRUE, noIgnore,
                              ignoreExternals, FALSE, changelists, CompletedStatus::receive, &walk, pool);
}
#endif

} // namespace

void fillStatus(HSVNBundleEntryPoints& table) { table.client_status2 = status2; }

void fillStatus([[maybe_unused]] HSVNStatusFunctions& table)
{
#if HSVN_LINE_MINOR >= 9
    table.client_status = status6;
#endif
}

} // namespace HSVNAdapter
