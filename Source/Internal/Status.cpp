#include "Internal/Status.h"

#include "HSVNLocalPath.h"
#include "HSVNNode.h"
#include "HSVNRevision.h"
#include "HSVNStatus.h"
#include "Internal/CanonicalPath.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/KeptException.h"
#include "Internal/RevisionNumber.h"
#include "Internal/StatusScan.h"

#include <filesystem>

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
    std::string target = {}; // as lines report it that tell fewer depths apart
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

svn_error_t* receiveStatus(void* baton, const HSVNStatusFunctions::ItemStatus* item, apr_pool_t* pool)
{
    auto& call = *static_cast<StatusCall*>(baton);
    return HSVNGuardCallback(*call.operation.context(), [&]() -> svn_error_t* {
        const auto node = call.maker.makeNode(call.maker.makePath(item->status->local_abspath), *item, pool);
        settleRepositorySide(call, *node->status());
        return HSVNHandOver(call.operation, call.receiver, node);
    });
}

// MARK: Older lines

/// Ends a scan whose receiver wants no more: what its callback answers, Subversion does not see.
struct EnoughReported
{
};

/// Whether an item below the target is told of at a depth between the two that these lines tell apart. Of a directory
/// that is nowhere else the repository says what it is.
bool isAtDepth(HSVNDepth depth, const std::string& path, const svn_wc_status2_t& record)
{
    if (depth != HSVNDepthFiles) {
        return depth != HSVNDepthEmpty;
    }
    std::error_code failure;
    const auto attributes = std::filesystem::symlink_status(path, failure);
    const bool isThere = std::filesystem::exists(attributes);
    return record.entry ? record.entry->kind != svn_node_dir
           : isThere    ? !std::filesystem::is_directory(attributes)
                        : record.ood_kind != svn_node_dir;
}

void receiveOlderStatus(void* baton, const char* path, svn_wc_status2_t* record)
{
    auto& call = *static_cast<StatusCall*>(baton);
    if (HSVNKeptException::isIn(*call.operation.context())) {
        return; // Subversion stops at its next cancellation check
    }
    HSVNGuardVoidCallback(*call.operation.context(), [&] {
        const std::string item = path;
        if (item != call.target && !isAtDepth(call.choices.depth, item, *record)) {
            return;
        }
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
    if (const auto status = operation.newest(&HSVNStatusFunctions::client_status_on_threads)) {
        return call6(status, choices.threads);
    }
    if (const auto status = operation.newest(&HSVNStatusFunctions::client_status)) {
        return call6(status);
    }
    call.target = HSVNCanonicalLocalPath(HSVNLocalPath::pathWithString(*target == '\0' ? "." : target))->string();
    const bool recurses = choices.depth == HSVNDepthUnknown || choices.depth == HSVNDepthInfinity;
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
