#include "HSVNItemInfo.h"

#include "HSVNLock.h"
#include "Internal/Browsing.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/RevisionNumber.h"
#include "Internal/WorkingCopyPlace.h"

#include <array>
#include <svn_checksum.h>

namespace {

std::optional<HSVNConflictVersion> versionOf(const svn_wc_conflict_version_t* record)
{
    if (!record) {
        return std::nullopt;
    }
    return HSVNConflictVersion{HSVNTextOrNil(record->repos_url), HSVNTextOrNil(record->repos_uuid),
                               HSVNRevisionNumberFromSubversion(record->peg_rev), HSVNTextOrNil(record->path_in_repos),
                               static_cast<HSVNNodeKind>(record->node_kind)};
}

HSVNConflictRecord conflictOf(const svn_wc_conflict_description2_t& record)
{
    HSVNConflictRecord conflict;
    conflict.kind = static_cast<HSVNConflictKind>(record.kind);
    conflict.nodeKind = static_cast<HSVNNodeKind>(record.node_kind);
    conflict.action = static_cast<HSVNConflictAction>(record.action);
    conflict.reason = static_cast<HSVNConflictReason>(record.reason);
    conflict.operation = static_cast<HSVNConflictOperation>(record.operation);
    conflict.propertyName = HSVNTextOrNil(record.property_name);
    conflict.basePath = HSVNTextOrNil(record.base_abspath);
    conflict.theirPath = HSVNTextOrNil(record.their_abspath);
    conflict.myPath = HSVNTextOrNil(record.my_abspath);
    conflict.propertyRejectPath = HSVNTextOrNil(record.prop_reject_abspath);
    conflict.sourceLeft = versionOf(record.src_left_version);
    conflict.sourceRight = versionOf(record.src_right_version);
    return conflict;
}

std::string hexadecimal(const svn_checksum_t& checksum)
{
    constexpr std::array sizes{std::size_t{16}, std::size_t{20}}; // MD5 and SHA-1
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (std::size_t index = 0; index < sizes.at(checksum.kind == svn_checksum_sha1 ? 1 : 0); ++index) {
        text += digits[checksum.digest[index] >> 4U];
        text += digits[checksum.digest[index] & 15U];
    }
    return text;
}

HSVNWorkingCopyInfo workingCopyOf(const svn_wc_info_t& record)
{
    HSVNWorkingCopyInfo info;
    HSVNReadWorkingCopyPlace(info, record);
    info.schedule = HSVNConvertSchedule(record.schedule);
    info.copyFromURL = HSVNTextOrNil(record.copyfrom_url);
    info.copyFromRevision = HSVNRevisionNumberFromSubversion(record.copyfrom_rev);
    if (record.checksum) {
        info.checksum = hexadecimal(*record.checksum);
        info.checksumIsSHA1 = record.checksum->kind == svn_checksum_sha1;
    }
    info.textTime = HSVNDateOrNil(record.recorded_time);
    for (int index = 0; record.conflicts && index < record.conflicts->nelts; ++index) {
        info.conflicts.push_back(
            conflictOf(*APR_ARRAY_IDX(record.conflicts, index, const svn_wc_conflict_description2_t*)));
    }
    info.rootPath = HSVNTextOrNil(record.wcroot_abspath);
    return info;
}

HSVNItemInfo infoOf(const char* target, const svn_client_info2_t& record)
{
    HSVNItemInfo info;
    info.target = target;
    info.url = HSVNTextOrNil(record.URL);
    info.revision = HSVNRevisionNumberFromSubversion(record.rev);
    info.repositoryRootURL = HSVNTextOrNil(record.repos_root_URL);
    info.uuid = HSVNTextOrNil(record.repos_UUID);
    info.kind = static_cast<HSVNNodeKind>(record.kind);
    info.size = record.size;
    info.lastChangedRevision = HSVNRevisionNumberFromSubversion(record.last_changed_rev);
    info.lastChangedDate = HSVNDateOrNil(record.last_changed_date);
    info.lastChangedAuthor = HSVNTextOrNil(record.last_changed_author);
    info.lock = HSVNLock::lockWithSVNLock(record.lock, info.target);
    if (record.wc_info) {
        info.workingCopy = workingCopyOf(*record.wc_info);
    }
    return info;
}

struct InfoCall
{
    HSVNContext& context;
    const HSVNItemInfoReceiver& receiver;
};

svn_error_t* receiveInfo(void* baton, const char* target, const svn_client_info2_t* record, apr_pool_t*)
{
    const auto& call = *static_cast<InfoCall*>(baton);
    return HSVNGuardCallback(call.context, [&]() -> svn_error_t* {
        call.receiver(infoOf(target, *record));
        return nullptr;
    });
}

} // namespace

void HSVNReadItemInfo(const std::string& target, const HSVNRevisionSpecRef& revision,
                      const HSVNItemInfoOptions& options, const HSVNItemInfoReceiver& receiver,
                      const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNItemInfo",
                            "readItemInfo:revision:withOptions:receiver:withContext:",
                            {{"target", target}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_info);
    const HSVNRevisionRecords revisions{*revision};
    InfoCall call{*context, receiver};
    operation.check(function(operation.cString(target), &revisions.peg, &revisions.operative,
                             HSVNDepthForSubversion(options.depth), options.includeExternals,
                             HSVNFilterArray(operation, options.changelists), receiveInfo, &call, operation.ctx(),
                             operation.pool()));
}
