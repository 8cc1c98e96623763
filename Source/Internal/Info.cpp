#include "Internal/Info.h"

#include "HSVNLock.h"
#include "Internal/Browsing.h"
#include "Internal/ConflictRecord.h"
#include "Internal/DepthTranslation.h"
#include "Internal/ExtensionCall.h"
#include "Internal/Hexadecimal.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <span>
#include <svn_checksum.h>

namespace {

constexpr std::size_t sha1Size = 20;

std::string hexadecimal(const svn_checksum_t& checksum)
{
    constexpr std::size_t md5Size = 16;
    return HSVNHexadecimal::textOf(std::span{checksum.digest, checksum.kind == svn_checksum_sha1 ? sha1Size : md5Size});
}

HSVNWorkingCopyInfo workingCopyOf(const svn_wc_info_t& record, const HSVNVersion& line)
{
    HSVNWorkingCopyInfo info;
    info.changelist = HSVNTextOrNil(record.changelist);
    info.depth = static_cast<HSVNDepth>(record.depth);
    info.movedFrom = HSVNTextOrNil(record.moved_from_abspath);
    info.movedTo = HSVNTextOrNil(record.moved_to_abspath);
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
            HSVNConflictRecordOf(*APR_ARRAY_IDX(record.conflicts, index, const svn_wc_conflict_description2_t*), line));
    }
    info.rootPath = HSVNTextOrNil(record.wcroot_abspath);
    return info;
}

/// What Subversion's records of all lines share.
template <class Record>
HSVNItemInfo commonOf(const char* target, const Record& record)
{
    HSVNItemInfo info;
    info.target = target;
    info.url = HSVNTextOrNil(record.URL);
    info.revision = HSVNRevisionNumberFromSubversion(record.rev);
    info.repositoryRootURL = HSVNTextOrNil(record.repos_root_URL);
    info.uuid = HSVNTextOrNil(record.repos_UUID);
    info.kind = static_cast<HSVNNodeKind>(record.kind);
    info.lastChangedRevision = HSVNRevisionNumberFromSubversion(record.last_changed_rev);
    info.lastChangedDate = HSVNDateOrNil(record.last_changed_date);
    info.lastChangedAuthor = HSVNTextOrNil(record.last_changed_author);
    info.lock = HSVNLock::lockWithSVNLock(record.lock, info.target);
    return info;
}

HSVNItemInfo infoOf(const HSVNOperation& operation, const char* target, const svn_client_info2_t& record)
{
    HSVNItemInfo info = commonOf(target, record);
    info.size = record.size;
    if (record.wc_info) {
        info.workingCopy = workingCopyOf(*record.wc_info, operation.version());
    }
    return info;
}

/// A conflict's file, which the older record names within the item's directory; nil for none.
std::optional<std::string> besideOf(const HSVNItemInfo& info, const char* name)
{
    if (!name || *name == '/') {
        return HSVNTextOrNil(name);
    }
    const auto& target = info.target;
    const auto length = info.kind == HSVNNodeKindDirectory ? target.size() : target.rfind('/');
    return target.substr(0, length) + '/' + name;
}

HSVNConflictRecord treeConflictOf(const svn_wc_conflict_description_t& record, const HSVNVersion& line)
{
    HSVNConflictRecord conflict;
    conflict.kind = HSVNConflictKind::Tree;
    conflict.nodeKind = static_cast<HSVNNodeKind>(record.node_kind);
    conflict.action = static_cast<HSVNConflictAction>(record.action);
    conflict.reason = static_cast<HSVNConflictReason>(record.reason);
    conflict.operation = static_cast<HSVNConflictOperation>(record.operation);
    conflict.sourceLeft = HSVNConflictVersionOf(record.src_left_version, line);
    conflict.sourceRight = HSVNConflictVersionOf(record.src_right_version, line);
    return conflict;
}

std::vector<HSVNConflictRecord> conflictsOf(const HSVNItemInfo& info, const svn_info_t& record, const HSVNVersion& line)
{
    std::vector<HSVNConflictRecord> conflicts;
    if (record.conflict_old || record.conflict_new || record.conflict_wrk) {
        HSVNConflictRecord conflict;
        conflict.nodeKind = info.kind;
        conflict.basePath = besideOf(info, record.conflict_old);
        conflict.theirPath = besideOf(info, record.conflict_new);
        conflict.myPath = besideOf(info, record.conflict_wrk);
        conflicts.push_back(std::move(conflict));
    }
    if (record.prejfile) {
        HSVNConflictRecord conflict;
        conflict.kind = HSVNConflictKind::Property;
        conflict.nodeKind = info.kind;
        conflict.propertyRejectPath = besideOf(info, record.prejfile);
        conflicts.push_back(std::move(conflict));
    }
    if (!line.isLessThan(HSVNVersion::version1_6()) && record.tree_conflict) {
        conflicts.push_back(treeConflictOf(*record.tree_conflict, line));
    }
    return conflicts;
}

/// Reads no field that the record of the operation's line does not have.
HSVNItemInfo infoOf(const HSVNOperation& operation, const char* target, const svn_info_t& record)
{
    const bool isAtLeast1_5 = operation.isAtLeast(HSVNVersion::version1_5());
    const bool isAtLeast1_6 = operation.isAtLeast(HSVNVersion::version1_6());
    HSVNItemInfo info = commonOf(target, record);
    if (isAtLeast1_6) {
        info.size = record.size64;
    } else if (isAtLeast1_5 && record.size != SVN_INFO_SIZE_UNKNOWN) {
        info.size = static_cast<std::int64_t>(record.size);
    }
    if (!record.has_wc_info) {
        return info;
    }
    HSVNWorkingCopyInfo workingCopy;
    workingCopy.schedule = HSVNConvertSchedule(record.schedule);
    workingCopy.copyFromURL = HSVNTextOrNil(record.copyfrom_url);
    workingCopy.copyFromRevision = HSVNRevisionNumberFromSubversion(record.copyfrom_rev);
    workingCopy.checksum = HSVNTextOrNil(record.checksum);
    workingCopy.checksumIsSHA1 = workingCopy.checksum && workingCopy.checksum->size() == 2 * sha1Size;
    workingCopy.textTime = HSVNDateOrNil(record.text_time);
    workingCopy.conflicts = conflictsOf(info, record, operation.version());
    if (isAtLeast1_5) {
        workingCopy.changelist = HSVNTextOrNil(record.changelist);
        workingCopy.depth = static_cast<HSVNDepth>(record.depth);
    }
    info.workingCopy = std::move(workingCopy);
    return info;
}

struct InfoCall : HSVNItemsCall<const HSVNItemInfo&>
{
    HSVNDepth depth = HSVNDepthInfinity;
    /// Of lines that tell the item alone from everything below: what the first item is called, which comes first.
    std::optional<std::string> top = {};

    bool reaches(const char* target, svn_node_kind_t kind)
    {
        if (!top) {
            top = target;
            return true;
        }
        // Those of a repository are told relative to the first.
        const auto prefix = !top->starts_with('/') ? 0 : top->ends_with('/') ? top->size() : top->size() + 1;
        const bool isChild = std::string_view{target}.find('/', prefix) == std::string_view::npos;
        return depth == HSVNDepthInfinity ||
               (isChild && (depth == HSVNDepthImmediates || (depth == HSVNDepthFiles && kind != svn_node_dir)));
    }
};

/// Of either kind of record.
template <class Record>
svn_error_t* receiveInfo(void* baton, const char* target, const Record* record, apr_pool_t*)
{
    auto& call = *static_cast<InfoCall*>(baton);
    if (!call.reaches(target, record->kind)) {
        return nullptr;
    }
    return call.handOver([&] { return infoOf(call.operation, target, *record); });
}

} // namespace

void HSVNInfo(HSVNOperation& operation, const std::string& target, const HSVNRevisionSpec& revision,
              const HSVNInfoChoices& choices, const HSVNReceiver<const HSVNItemInfo&>& receiver)
{
    const HSVNRevisionRecords revisions{revision};
    const auto depth = HSVNDepthForSubversion(choices.depth);
    const char* const item = operation.cString(target);
    InfoCall call{{operation, receiver}};
    if (const auto info = operation.newest(&HSVNReadingFunctions::client_info)) {
        operation.check(info(item, &revisions.peg, &revisions.operative, depth, choices.includeExternals,
                             HSVNFilterArray(operation, choices.changelists), receiveInfo<svn_client_info2_t>, &call,
                             operation.ctx(), operation.pool()));
        return;
    }
    const bool isRecursive = choices.depth != HSVNDepthEmpty && choices.depth != HSVNDepthUnknown;
    call.depth = choices.depth;
    operation.refuse(choices.includeExternals, "includeExternals");
    operation.refuse(!choices.changelists.empty(), "changelists");
    operation.check(operation->client_info(item, &revisions.peg, &revisions.operative, receiveInfo<svn_info_t>, &call,
                                           isRecursive, operation.ctx(), operation.pool()));
}
