#include "CompletedStatus.h"

#if HSVN_LINE_MINOR >= 9

#include "EntryPointTable.h"

#include <exception>
#include <string_view>

namespace HSVNAdapter {
namespace {

/// Whether the record lacks what was there: that of a copy tells of its source.
bool lacksFormer(const svn_client_status_t& status)
{
    const bool goes = status.node_status == svn_wc_status_deleted || status.node_status == svn_wc_status_replaced;
    return goes && status.versioned && !status.copied && status.revision == SVN_INVALID_REVNUM;
}

/// Whether the state tells something else than what is scheduled.
[[maybe_unused]] bool hidesSchedule(const svn_client_status_t& status)
{
    return status.versioned &&
           (status.node_status == svn_wc_status_missing || status.node_status == svn_wc_status_obstructed ||
            status.node_status == svn_wc_status_incomplete || status.node_status == svn_wc_status_conflicted);
}

svn_wc_schedule_t reportedSchedule(const svn_client_status_t& status)
{
    switch (status.node_status) {
    case svn_wc_status_added:
        return svn_wc_schedule_add;
    case svn_wc_status_deleted:
        return svn_wc_schedule_delete;
    case svn_wc_status_replaced:
        return svn_wc_schedule_replace;
    default:
        return svn_wc_schedule_normal;
    }
}

struct FormerNode
{
    svn_client_status_t& status;
    apr_pool_t* pool;
};

void takeFormerNode(void* baton, const char* path, svn_wc_status2_t* record)
{
    const auto& former = *static_cast<const FormerNode*>(baton);
    auto& status = former.status;
    const auto* const entry = record->entry;
    // 0: nothing was committed there, only what the item took the place of was copied.
    if (entry == nullptr || entry->revision <= 0 || std::string_view{status.local_abspath} != path) {
        return;
    }
    status.revision = entry->revision;
    if (status.node_status == svn_wc_status_deleted) {
        status.changed_rev = entry->cmt_rev;
        status.changed_date = entry->cmt_date;
        status.changed_author = entry->cmt_author ? apr_pstrdup(former.pool, entry->cmt_author) : nullptr;
    }
}

/// The older record tells; the item's information tells the revision of the directory that goes with it instead.
svn_error_t* readFormerNode(svn_client_status_t& status, svn_client_ctx_t* ctx, apr_pool_t* pool)
{
    FormerNode former{status, pool};
    const svn_opt_revision_t unspecified{svn_opt_revision_unspecified, {}};
    return entryPointTable().client_status2(nullptr, status.local_abspath, &unspecified, takeFormerNode, &former, FALSE,
                                            TRUE, FALSE, TRUE, TRUE, ctx, pool);
}

} // namespace

CompletedStatus::CompletedStatus(HSVNStatusFunctions::StatusReceiver receiver, void* baton, svn_client_ctx_t* ctx,
                                 [[maybe_unused]] apr_pool_t* pool)
    : _receiver{receiver}, _baton{baton}, _ctx{ctx}
#ifdef HSVN_FAST_STATUS
      ,
      _formerNodes{pool}
#endif
{
}

svn_error_t* CompletedStatus::complete(svn_client_status_t& status, apr_pool_t* pool)
{
#ifdef HSVN_FAST_STATUS
    try {
        if (_formerNodes.complete(status, pool)) {
            return SVN_NO_ERROR;
        }
    } catch (const std::exception&) {
        // Out of memory: it is asked for.
    }
#endif
    return readFormerNode(status, _ctx, pool);
}

svn_wc_schedule_t CompletedStatus::scheduleOf(const svn_client_status_t& status)
{
#ifdef HSVN_FAST_STATUS
    if (hidesSchedule(status)) {
        try {
            return _formerNodes.scheduleOf(status.local_abspath).value_or(svn_wc_schedule_normal);
        } catch (const std::exception&) {
            // Out of memory: the state has to do.
        }
    }
#endif
    return reportedSchedule(status);
}

svn_error_t* CompletedStatus::receive(void* baton, const char* /*path*/, const svn_client_status_t* status,
                                      apr_pool_t* pool)
{
    auto& walk = *static_cast<CompletedStatus*>(baton);
    HSVNStatusFunctions::ItemStatus item{status, FALSE, FALSE, FALSE, walk.scheduleOf(*status)};
    if (status->conflicted) {
        SVN_ERR(svn_wc_conflicted_p3(&item.textConflicted, &item.propertiesConflicted, &item.treeConflicted,
                                     walk._ctx->wc_ctx, status->local_abspath, pool));
    }
    if (!lacksFormer(*status)) {
        return walk._receiver(walk._baton, &item, pool);
    }
    svn_client_status_t completed = *status;
    SVN_ERR(walk.complete(completed, pool));
    item.status = &completed;
    return walk._receiver(walk._baton, &item, pool);
}

} // namespace HSVNAdapter

#endif
