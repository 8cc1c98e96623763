#include "Internal/Status.h"

#include "HSVNLocalPath.h"
#include "HSVNNode.h"
#include "HSVNRevision.h"
#include "HSVNStatus.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"
#include "Internal/StatusScan.h"
#include "Internal/Text.h"

namespace {

struct StatusCall
{
    StatusCall(HSVNOperation& theOperation, const HSVNStatusChoices& theChoices,
               const HSVNReceiver<const HSVNNodeRef&>& theReceiver)
        : operation{theOperation}, choices{theChoices}, receiver{theReceiver}, maker{theOperation.version(),
                                                                                     theOperation.pool()}
    {
        maker.refillNodes();
    }

    HSVNOperation& operation;
    const HSVNStatusChoices& choices;
    const HSVNReceiver<const HSVNNodeRef&>& receiver;
    HSVNStatusNodeMaker maker;
};

/// What the repository was asked for and has no change of is unchanged, and known to be so.
void settleRepositorySide(const StatusCall& call, HSVNStatus& status)
{
    if (!call.choices.contactRepository) {
        return;
    }
    if (status.repositoryTextStatus() == HSVNStatusKindNone) {
        status.setRepositoryTextStatus(HSVNStatusKindNormal);
    }
    if (status.repositoryPropertyStatus() == HSVNStatusKindNone) {
        status.setRepositoryPropertyStatus(HSVNStatusKindNormal);
    }
}

// MARK: Lines from 1.9 on

svn_error_t* readConflicts(const StatusCall& call, HSVNStatus& status, const svn_client_status_t& record,
                           apr_pool_t* pool)
{
    if (!record.conflicted) {
        return nullptr;
    }
    svn_boolean_t text = FALSE;
    svn_boolean_t properties = FALSE;
    svn_boolean_t tree = FALSE;
    const auto read = call.operation.extension(&HSVNBundleExtensions::wc_conflicted);
    svn_error_t* const error = read(&text, &properties, &tree, record.local_abspath, call.operation.ctx(), pool);
    status.setTextConflicted(text != FALSE);
    status.setPropertiesConflicted(properties != FALSE);
    status.setTreeConflicted(tree != FALSE);
    return error;
}

struct FormerRevision
{
    const char* path;
    HSVNNode& node;
};

void takeFormerRevision(void* baton, const char* path, svn_wc_status2_t* record)
{
    const auto& former = *static_cast<const FormerRevision*>(baton);
    const auto* const entry = record->entry;
    // 0: nothing was committed there, only what the item took the place of was copied.
    if (!entry || entry->revision <= 0 || std::string_view{former.path} != path) {
        return;
    }
    auto& status = *former.node.status();
    status.setRevision(HSVNRevisionNumberFromSubversion(entry->revision));
    if (status.nodeStatus() == HSVNStatusKindDeleted) {
        status.setLastChangedRevision(HSVNRevisionNumberFromSubversion(entry->cmt_rev));
        status.setLastChangedDate(HSVNDate::dateWithAPRTime(entry->cmt_date));
        status.setLastChangedAuthor(HSVNTextOrNil(entry->cmt_author));
        former.node.setRevision(status.lastChangedRevision());
        former.node.setExactDate(HSVNDateOrNil(entry->cmt_date));
        former.node.setSharedAuthor(status.sharedLastChangedAuthor());
    }
}

/// An item that goes, or that took another's place, shows what was there until now, which the record does not say. The
/// older record does; the item's information tells the revision of the directory that goes with it instead.
svn_error_t* readFormerRevision(const StatusCall& call, HSVNNode& node, const svn_client_status_t& record,
                                apr_pool_t* pool)
{
    const bool goes = record.node_status == svn_wc_status_deleted || record.node_status == svn_wc_status_replaced;
    if (!goes || !record.versioned || record.copied || record.revision != SVN_INVALID_REVNUM) {
        return nullptr;
    }
    FormerRevision former{record.local_abspath, node};
    const svn_opt_revision_t unspecified{svn_opt_revision_unspecified, {}};
    return call.operation->client_status2(nullptr, former.path, &unspecified, takeFormerRevision, &former, FALSE, TRUE,
                                          FALSE, TRUE, TRUE, call.operation.ctx(), pool);
}

svn_error_t* receiveStatus(void* baton, const char* /*path*/, const svn_client_status_t* record, apr_pool_t* pool)
{
    auto& call = *static_cast<StatusCall*>(baton);
    return HSVNGuardCallback(*call.operation.context(), [&]() -> svn_error_t* {
        const auto node = call.maker.makeNode(call.maker.makePath(record->local_abspath), *record, pool);
        settleRepositorySide(call, *node->status());
        svn_error_t* error = readConflicts(call, *node->status(), *record, pool);
        error = error ? error : readFormerRevision(call, *node, *record, pool);
        return error ? error : HSVNHandOver(call.operation, call.receiver, node);
    });
}

// MARK: Older lines

/// Ends a scan whose receiver wants no more: what its callback answers, Subversion does not see.
struct EnoughReported
{
};

void receiveOlderStatus(void* baton, const char* path, svn_wc_status2_t* record)
{
    auto& call = *static_cast<StatusCall*>(baton);
    if (call.operation.context()->hasKeptException()) {
        return; // Subversion stops at its next cancellation check
    }
    HSVNGuardVoidCallback(*call.operation.context(), [&] {
        const auto node = call.maker.makeNode(call.maker.makePath(path), *record);
        settleRepositorySide(call, *node->status());
        if (!call.receiver(node)) {
            throw EnoughReported{};
        }
    });
}

svn_error_t* callStatus(StatusCall& call, svn_revnum_t* result, const char* target)
{
    auto& operation = call.operation;
    const auto& choices = call.choices;
    const auto revision = (choices.revision ? choices.revision : HSVNRevision::HEAD())->SVNRevision();
    const auto call6 = [&](auto status, auto... threads) {
        return status(threads..., result, operation.ctx(), target, &revision, HSVNDepthForSubversion(choices.depth),
                      choices.getAll, choices.contactRepository, !choices.matchIgnorePatterns,
                      !choices.processExternals, HSVNFilterArray(operation, choices.changelists), receiveStatus, &call,
                      operation.pool());
    };
    if (const auto status = operation.newest(&HSVNBundleExtensions::client_status_on_threads)) {
        return call6(status, choices.threads);
    }
    if (const auto status = operation.newest(&HSVNBundleExtensions::client_status)) {
        return call6(status);
    }
    const bool recurses = choices.depth == HSVNDepthUnknown || choices.depth == HSVNDepthInfinity;
    operation.refuse(!recurses && choices.depth != HSVNDepthImmediates, "depth");
    operation.refuse(!choices.changelists.empty(), "changelists");
    return operation->client_status2(result, target, &revision, receiveOlderStatus, &call, recurses, choices.getAll,
                                     choices.contactRepository, !choices.matchIgnorePatterns, !choices.processExternals,
                                     operation.ctx(), operation.pool());
}

} // namespace

HSVNRevisionNumber HSVNReportStatus(HSVNOperation& operation, const std::string& target,
                                    const HSVNStatusChoices& choices, const HSVNReceiver<const HSVNNodeRef&>& receiver)
{
    StatusCall call{operation, choices, receiver};
    svn_revnum_t result = SVN_INVALID_REVNUM;
    try {
        operation.check(callStatus(call, &result, operation.cString(target)));
    } catch (const EnoughReported&) {
        return HSVNInvalidRevision;
    }
    return HSVNRevisionNumberFromSubversion(result);
}
