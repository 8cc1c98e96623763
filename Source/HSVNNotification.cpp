#include "HSVNNotification.h"

#include "HSVNLock.h"
#include "HSVNRevision.h"
#include "HSVNURL.h"
#include "Internal/FurtherKeys.h"
#include "Internal/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace {

struct ActionName
{
    std::int32_t action;
    const char* name;
};

#define HSVN_ACTION_NAME(action)                                                                                       \
    {                                                                                                                  \
        action, #action                                                                                                \
    }
constexpr ActionName actionNames[] = {
    HSVN_ACTION_NAME(HSVNNotifyActionUnknown),
    HSVN_ACTION_NAME(HSVNNotifyActionAdd),
    HSVN_ACTION_NAME(HSVNNotifyActionCopy),
    HSVN_ACTION_NAME(HSVNNotifyActionDelete),
    HSVN_ACTION_NAME(HSVNNotifyActionRestore),
    HSVN_ACTION_NAME(HSVNNotifyActionRevert),
    HSVN_ACTION_NAME(HSVNNotifyActionFailedRevert),
    HSVN_ACTION_NAME(HSVNNotifyActionResolved),
    HSVN_ACTION_NAME(HSVNNotifyActionSkip),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateDelete),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateAdd),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateUpdate),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateCompleted),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateExternal),
    HSVN_ACTION_NAME(HSVNNotifyActionStatusCompleted),
    HSVN_ACTION_NAME(HSVNNotifyActionStatusExternal),
    HSVN_ACTION_NAME(HSVNNotifyActionCommitModified),
    HSVN_ACTION_NAME(HSVNNotifyActionCommitAdded),
    HSVN_ACTION_NAME(HSVNNotifyActionCommitDeleted),
    HSVN_ACTION_NAME(HSVNNotifyActionCommitReplaced),
    HSVN_ACTION_NAME(HSVNNotifyActionCommitPostfixTXDelta),
    HSVN_ACTION_NAME(HSVNNotifyActionBlameRevision),
    HSVN_ACTION_NAME(HSVNNotifyActionLocked),
    HSVN_ACTION_NAME(HSVNNotifyActionUnlocked),
    HSVN_ACTION_NAME(HSVNNotifyActionFailedLock),
    HSVN_ACTION_NAME(HSVNNotifyActionFailedUnlock),
    HSVN_ACTION_NAME(HSVNNotifyActionExists),
    HSVN_ACTION_NAME(HSVNNotifyActionChangeListSet),
    HSVN_ACTION_NAME(HSVNNotifyActionChangeListClear),
    HSVN_ACTION_NAME(HSVNNotifyActionChangeListMoved),
    HSVN_ACTION_NAME(HSVNNotifyActionMergeBegin),
    HSVN_ACTION_NAME(HSVNNotifyActionForeignMergeBegin),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateReplace),
    HSVN_ACTION_NAME(HSVNNotifyActionPropertyAdded),
    HSVN_ACTION_NAME(HSVNNotifyActionPropertyModified),
    HSVN_ACTION_NAME(HSVNNotifyActionPropertyDeleted),
    HSVN_ACTION_NAME(HSVNNotifyActionPropertyDeletedNonExistent),
    HSVN_ACTION_NAME(HSVNNotifyActionRevisionPropertySet),
    HSVN_ACTION_NAME(HSVNNotifyActionRevisionPropertyDeleted),
    HSVN_ACTION_NAME(HSVNNotifyActionMergeCompleted),
    HSVN_ACTION_NAME(HSVNNotifyActionTreeConflict),
    HSVN_ACTION_NAME(HSVNNotifyActionFailedExternal),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateStarted),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateSucceeded),
    HSVN_ACTION_NAME(HSVNNotifyActionUpdateFailed),
    HSVN_ACTION_NAME(HSVNNotifyActionCommitStarted),
    HSVN_ACTION_NAME(HSVNNotifyActionCommitSucceeded),
    HSVN_ACTION_NAME(HSVNNotifyActionCommitFailed),
    HSVN_ACTION_NAME(HSVNNotifyActionCheckOutStarted),
    HSVN_ACTION_NAME(HSVNNotifyActionCheckOutSucceeded),
    HSVN_ACTION_NAME(HSVNNotifyActionCheckOutFailed),
    HSVN_ACTION_NAME(HSVNNotifyActionImportStarted),
    HSVN_ACTION_NAME(HSVNNotifyActionImportSucceeded),
    HSVN_ACTION_NAME(HSVNNotifyActionImportFailed),
    HSVN_ACTION_NAME(HSVNNotifyActionExportStarted),
    HSVN_ACTION_NAME(HSVNNotifyActionExportSucceeded),
    HSVN_ACTION_NAME(HSVNNotifyActionExportFailed),
    HSVN_ACTION_NAME(HSVNNotifyActionInternalExportStarted),
};
#undef HSVN_ACTION_NAME

/// The keys of a hunk's fields.
constexpr std::pair<const char*, std::uint64_t HSVNPatchHunk::*> hunkKeys[] = {
    {"hunkOriginalStart", &HSVNPatchHunk::originalStart}, {"hunkOriginalLength", &HSVNPatchHunk::originalLength},
    {"hunkModifiedStart", &HSVNPatchHunk::modifiedStart}, {"hunkModifiedLength", &HSVNPatchHunk::modifiedLength},
    {"hunkMatchedLine", &HSVNPatchHunk::matchedLine},     {"hunkFuzz", &HSVNPatchHunk::fuzz},
};

/// Archives have all keys of a hunk or none.
std::optional<HSVNPatchHunk> decodedHunk(HSVNCoder& decoder)
{
    if (!decoder.containsValueForKey(std::begin(hunkKeys)->first)) {
        return std::nullopt;
    }
    HSVNPatchHunk hunk;
    for (const auto& [key, field] : hunkKeys) {
        hunk.*field = decoder.decodeUnsigned(key);
    }
    return hunk;
}

} // namespace

HSVNNotification::HSVNNotification(HSVNCoder* decoder)
    : _path{HSVNRequireKeyedUnarchiver(decoder)->decodeString("path")},
      _pathPrefix{decoder->decodeString("pathPrefix")}, _url{decoder->decodeObject<const HSVNURL>("url")},
      _alternatePath{decoder->decodeObject<const HSVNPath>("alternatePath")}, _action{decoder->decodeInt32("action")},
      _nodeKind{decoder->decodeInt32("nodeKind")}, _lock{decoder->decodeObject<const HSVNLock>("lock")},
      _error{decoder->decodeException("error")}, _revision{decoder->decodeInt32("revision")},
      _contentState{decoder->decodeInt32("contentState")}, _propertyState{decoder->decodeInt32("propertyState")},
      _lockState{decoder->decodeInt32("lockState")}, _propertyName{decoder->decodeString("propertyName")},
      _mimeType{decoder->decodeString("mimeType")}, _changelistName{decoder->decodeString("changelistName")},
      _mergeStart{decoder->decodeObject<const HSVNRevision>("mergeStart")},
      _mergeEnd{decoder->decodeObject<const HSVNRevision>("mergeEnd")}, _hunk{decodedHunk(*decoder)}
{
}

std::shared_ptr<HSVNNotification> HSVNNotification::notification() { return std::make_shared<HSVNNotification>(); }

std::shared_ptr<HSVNNotification> HSVNNotification::notificationWithAction(std::int32_t action)
{
    auto made = notification();
    made->setAction(action);
    return made;
}

std::string HSVNNotification::stringForAction(std::int32_t action)
{
    const auto* row = std::ranges::find(actionNames, action, &ActionName::action);
    return row == std::end(actionNames) ? fmt::format("<unknown> ({})", action) : row->name;
}

std::shared_ptr<HSVNNotification> HSVNNotification::copy() const { return std::make_shared<HSVNNotification>(*this); }

std::string HSVNNotification::description() const
{
    return fmt::format(
        "{{ {}, action: {}, contentState: {}, error: {}, lock: {}, lockState: {}, nodeKind: {}, path: {}, "
        "alternatePath: {}, propertyState: {}, revision: {} }}",
        objectDescription(), stringForAction(_action), _contentState, _error ? _error->description() : "(null)",
        HSVNDescription(_lock.get()), _lockState, _nodeKind, HSVNDescription(_path),
        HSVNDescription(_alternatePath.get()), _propertyState, _revision);
}

void HSVNNotification::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNRequireKeyedArchiver(encoder);
    encoder->encodeString(_path, "path");
    encoder->encodeObject(_alternatePath, "alternatePath");
    encoder->encodeInteger(_action, "action");
    encoder->encodeInteger(_nodeKind, "nodeKind");
    encoder->encodeObject(_lock, "lock");
    encoder->encodeException(_error, "error");
    encoder->encodeInteger(_revision, "revision");
    encoder->encodeInteger(_contentState, "contentState");
    encoder->encodeInteger(_propertyState, "propertyState");
    encoder->encodeInteger(_lockState, "lockState");
    encoder->encodeString(_pathPrefix, "pathPrefix");
    encoder->encodeObject(_url, "url");
    encoder->encodeString(_propertyName, "propertyName");
    HSVNEncodeFurther(*encoder, _mimeType, "mimeType");
    HSVNEncodeFurther(*encoder, _changelistName, "changelistName");
    HSVNEncodeFurther(*encoder, _mergeStart, "mergeStart");
    HSVNEncodeFurther(*encoder, _mergeEnd, "mergeEnd");
    if (_hunk) {
        for (const auto& [key, field] : hunkKeys) {
            encoder->encodeUnsigned((*_hunk).*field, key);
        }
    }
}
