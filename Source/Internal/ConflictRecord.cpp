#include "Internal/ConflictRecord.h"

#include "HSVNPlatformException.h"
#include "Internal/RevisionNumber.h"
#include "Internal/Text.h"

#include <fmt/format.h>

std::optional<HSVNConflictVersion> HSVNConflictVersionOf(const svn_wc_conflict_version_t* record,
                                                         const HSVNVersion& line)
{
    if (!record) {
        return std::nullopt;
    }
    const bool tellsUUID = !line.isLessThan({1, 8}); // else the record ends before it
    return HSVNConflictVersion{HSVNTextOrNil(record->repos_url),
                               tellsUUID ? HSVNTextOrNil(record->repos_uuid) : std::nullopt,
                               HSVNRevisionNumberFromSubversion(record->peg_rev), HSVNTextOrNil(record->path_in_repos),
                               static_cast<HSVNNodeKind>(record->node_kind)};
}

HSVNConflictRecord HSVNConflictRecordOf(const svn_wc_conflict_description2_t& record, const HSVNVersion& line)
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
    if (!line.isLessThan({1, 9})) {
        conflict.propertyRejectPath = HSVNTextOrNil(record.prop_reject_abspath);
    }
    conflict.sourceLeft = HSVNConflictVersionOf(record.src_left_version, line);
    conflict.sourceRight = HSVNConflictVersionOf(record.src_right_version, line);
    return conflict;
}

HSVNConflictChoosing::HSVNConflictChoosing(HSVNOperation& operation, const HSVNConflictChooser& chooser)
    : _operation{operation}, _chooser{chooser}, _record{choose, this}
{
}

HSVNResolutionChoice HSVNConflictChoosing::choiceFor(const svn_wc_conflict_description2_t& conflict) const
{
    if (!_operation.isInnermost()) {
        return HSVNResolutionChoice::Postpone; // met by an operation that a callback runs
    }
    const auto choice = _chooser(conflict.local_abspath, HSVNConflictRecordOf(conflict, _operation.version()));
    if (choice < HSVNResolutionChoice::Postpone || choice > HSVNResolutionChoice::MergedText) {
        throw HSVNInvalidArgumentException(fmt::format("The choice {} does not settle the conflict of '{}' at once",
                                                       static_cast<std::int32_t>(choice), conflict.local_abspath));
    }
    return choice;
}

svn_error_t* HSVNConflictChoosing::choose(void* baton, int* choice, const svn_wc_conflict_description2_t* conflict)
{
    const auto& choosing = *static_cast<const HSVNConflictChoosing*>(baton);
    return HSVNGuardCallback(*choosing._operation.context(), [&]() -> svn_error_t* {
        *choice = static_cast<int>(choosing.choiceFor(*conflict));
        return nullptr;
    });
}
