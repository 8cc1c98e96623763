#include "HSVNItemStatus.h"

#include "HSVNLock.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"
#include "Internal/WorkingCopyPlace.h"

namespace {

HSVNItemStatus statusOf(const char* path, const svn_client_status_t& record)
{
    HSVNItemStatus status;
    HSVNReadWorkingCopyPlace(status, record);
    status.path = path;
    status.absolutePath = record.local_abspath;
    status.kind = static_cast<HSVNNodeKind>(record.kind);
    status.size = record.filesize;
    status.versioned = record.versioned;
    status.conflicted = record.conflicted;
    status.nodeStatus = HSVNConvertStatusKind(record.node_status);
    status.textStatus = HSVNConvertStatusKind(record.text_status);
    status.propertyStatus = HSVNConvertStatusKind(record.prop_status);
    status.locked = record.wc_is_locked;
    status.copied = record.copied;
    status.switched = record.switched;
    status.fileExternal = record.file_external;
    status.revision = HSVNRevisionNumberFromSubversion(record.revision);
    status.changedRevision = HSVNRevisionNumberFromSubversion(record.changed_rev);
    status.changedDate = HSVNDateOrNil(record.changed_date);
    status.changedAuthor = HSVNTextOrNil(record.changed_author);
    status.lock = HSVNLock::lockWithSVNLock(record.lock, status.absolutePath);
    status.repositoryNodeStatus = HSVNConvertStatusKind(record.repos_node_status);
    status.repositoryTextStatus = HSVNConvertStatusKind(record.repos_text_status);
    status.repositoryPropertyStatus = HSVNConvertStatusKind(record.repos_prop_status);
    status.repositoryLock = HSVNLock::lockWithSVNLock(record.repos_lock, status.absolutePath);
    return status;
}

struct Scan
{
    HSVNOperation& operation;
    const HSVNItemStatusReceiver& receiver;
};

svn_error_t* readConflict(const HSVNOperation& operation, HSVNItemStatus& status, apr_pool_t* pool)
{
    svn_boolean_t text = false;
    svn_boolean_t properties = false;
    svn_boolean_t tree = false;
    if (status.conflicted) {
        const auto function = operation.extension(&HSVNBundleExtensions::wc_conflicted);
        if (svn_error_t* const error =
                function(&text, &properties, &tree, status.absolutePath.c_str(), operation.ctx(), pool)) {
            return error;
        }
    }
    status.treeConflicted = tree;
    return nullptr;
}

void takeFormerRevision(HSVNItemStatus& status, const svn_wc_entry_t& entry)
{
    status.revision = HSVNRevisionNumberFromSubversion(entry.revision);
    if (status.nodeStatus == HSVNStatusKindDeleted) {
        status.changedRevision = HSVNRevisionNumberFromSubversion(entry.cmt_rev);
        status.changedDate = HSVNDateOrNil(entry.cmt_date);
        status.changedAuthor = HSVNTextOrNil(entry.cmt_author);
    }
}

/// An item that goes, or that took another's place, shows what was there until now, which the record does not say. The
/// older record does; the item's information tells the revision of the folder that goes with it instead.
svn_error_t* readFormerRevision(const HSVNOperation& operation, HSVNItemStatus& status, apr_pool_t* pool)
{
    const bool goes = status.nodeStatus == HSVNStatusKindDeleted || status.nodeStatus == HSVNStatusKindReplaced;
    if (!goes || !status.versioned || status.copied || status.revision != HSVNInvalidRevision) {
        return nullptr;
    }
    const auto take = [](void* baton, const char* path, svn_wc_status2_t* record) {
        auto& taken = *static_cast<HSVNItemStatus*>(baton);
        // 0: nothing was committed there, only what the item took the place of was copied.
        if (record->entry && taken.absolutePath == path && record->entry->revision > 0) {
            takeFormerRevision(taken, *record->entry);
        }
    };
    const svn_opt_revision_t unspecified{svn_opt_revision_unspecified, {}};
    return operation->client_status2(nullptr, status.absolutePath.c_str(), &unspecified, take, &status, false, true,
                                     false, true, true, operation.ctx(), pool);
}

svn_error_t* receiveStatus(void* baton, const char* path, const svn_client_status_t* record, apr_pool_t* pool)
{
    const auto& scan = *static_cast<Scan*>(baton);
    return HSVNGuardCallback(*scan.operation.context(), [&]() -> svn_error_t* {
        auto status = statusOf(path, *record);
        for (auto* const read : {readConflict, readFormerRevision}) {
            if (svn_error_t* const error = read(scan.operation, status, pool)) {
                return error;
            }
        }
        scan.receiver(status);
        return nullptr;
    });
}

} // namespace

HSVNRevisionNumber HSVNScanItemStatus(const std::string& target, const HSVNRevisionRef& revision,
                                      const HSVNItemStatusOptions& options, const HSVNItemStatusReceiver& receiver,
                                      const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNItemStatus",
                            "scanItemStatus:revision:withOptions:receiver:withContext:",
                            {{"target", target}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_status);
    const auto record = revision->SVNRevision();
    Scan scan{operation, receiver};
    svn_revnum_t result = HSVNInvalidRevision;
    operation.check(function(&result, operation.ctx(), operation.cString(target), &record,
                             HSVNDepthForSubversion(options.depth), options.getAll, options.contactRepository,
                             !options.matchIgnorePatterns, !options.processExternals,
                             HSVNFilterArray(operation, options.changelists), receiveStatus, &scan, operation.pool()));
    return HSVNRevisionNumberFromSubversion(result);
}
