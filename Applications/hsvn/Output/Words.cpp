#include "Output/Words.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <strings.h>

namespace {

/// The side of the conflict that tells what kind of item the operation was about.
HSVNNodeKind incomingKind(const HSVNConflictRecord& conflict)
{
    const bool goes = conflict.action == HSVNConflictAction::Edit || conflict.action == HSVNConflictAction::Delete;
    const auto& version = goes ? conflict.sourceLeft : conflict.sourceRight;
    return version ? version->kind : HSVNNodeKindUnknown;
}

/// "file ", "dir " or nothing.
std::string kindPrefix(HSVNNodeKind kind)
{
    return kind == HSVNNodeKindFile ? "file " : kind == HSVNNodeKindDirectory ? "dir " : "";
}

/// A reason as a conflict's description says it.
const char* longWordOf(HSVNConflictReason reason, HSVNConflictOperation operation)
{
    switch (reason) {
    case HSVNConflictReason::Missing:
        return operation == HSVNConflictOperation::Merge ? "missing or deleted or moved away" : "missing";
    case HSVNConflictReason::MovedAway:
        return "moved away";
    case HSVNConflictReason::MovedHere:
        return "moved here";
    default:
        return wordOf(reason);
    }
}

std::string incomingWords(HSVNConflictAction action, HSVNNodeKind kind)
{
    switch (action) {
    case HSVNConflictAction::Edit:
        return kindPrefix(kind) + "edit";
    case HSVNConflictAction::Add:
        return kindPrefix(kind) + "add";
    case HSVNConflictAction::Delete:
        return kindPrefix(kind) + "delete or move";
    case HSVNConflictAction::Replace:
        return kind == HSVNNodeKindFile        ? "replace with file"
               : kind == HSVNNodeKindDirectory ? "replace with dir"
                                               : "replace";
    }
    return "";
}

/// A status kind's word and the letter of its column.
struct StatusName
{
    const char* word;
    char letter;
};

StatusName nameOf(HSVNStatusKind status)
{
    switch (status) {
    case HSVNStatusKindNone:
        return {"none", ' '};
    case HSVNStatusKindNormal:
        return {"normal", ' '};
    case HSVNStatusKindAdded:
        return {"added", 'A'};
    case HSVNStatusKindMissing:
        return {"missing", '!'};
    case HSVNStatusKindIncomplete:
        return {"incomplete", '!'};
    case HSVNStatusKindDeleted:
        return {"deleted", 'D'};
    case HSVNStatusKindReplaced:
        return {"replaced", 'R'};
    case HSVNStatusKindModified:
        return {"modified", 'M'};
    case HSVNStatusKindConflicted:
        return {"conflicted", 'C'};
    case HSVNStatusKindObstructed:
        return {"obstructed", '~'};
    case HSVNStatusKindIgnored:
        return {"ignored", 'I'};
    case HSVNStatusKindExternal:
        return {"external", 'X'};
    case HSVNStatusKindUnversioned:
        return {"unversioned", '?'};
    case HSVNStatusKindMerged:
        return {"merged", 'G'};
    case HSVNStatusKindUnknown:
        break;
    }
    return {"none", '?'};
}

/// Whether a configuration's value is one of the words, in capitals or not.
bool isOneOf(const std::string& value, const std::array<const char*, 4>& words)
{
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return strcasecmp(word, value.c_str()) == 0; });
}

} // namespace

bool isTrueWord(const std::string& value) { return isOneOf(value, {"true", "yes", "on", "1"}); }

bool isFalseWord(const std::string& value) { return isOneOf(value, {"false", "no", "off", "0"}); }

const char* wordOf(HSVNNodeKind kind)
{
    switch (kind) {
    case HSVNNodeKindNone:
        return "none";
    case HSVNNodeKindFile:
        return "file";
    case HSVNNodeKindDirectory:
        return "dir";
    case HSVNNodeKindUnknown:
        break;
    }
    return "unknown";
}

const char* wordOf(HSVNDepth depth)
{
    switch (depth) {
    case HSVNDepthExclude:
        return "exclude";
    case HSVNDepthEmpty:
        return "empty";
    case HSVNDepthFiles:
        return "files";
    case HSVNDepthImmediates:
        return "immediates";
    case HSVNDepthInfinity:
        return "infinity";
    case HSVNDepthUnknown:
        break;
    }
    return "unknown";
}

const char* wordOf(HSVNSchedule schedule)
{
    switch (schedule) {
    case HSVNScheduleAdd:
        return "add";
    case HSVNScheduleDelete:
        return "delete";
    case HSVNScheduleReplace:
        return "replace";
    case HSVNScheduleNormal:
        return "normal";
    case HSVNScheduleInvalid:
        break;
    }
    return "none";
}

const char* wordOf(HSVNStatusKind status) { return nameOf(status).word; }

char letterOf(HSVNStatusKind status) { return nameOf(status).letter; }

const char* wordOf(HSVNConflictOperation operation)
{
    switch (operation) {
    case HSVNConflictOperation::Update:
        return "update";
    case HSVNConflictOperation::Switch:
        return "switch";
    case HSVNConflictOperation::Merge:
        return "merge";
    case HSVNConflictOperation::NoOperation:
        break;
    }
    return "none";
}

const char* wordOf(HSVNConflictAction action)
{
    switch (action) {
    case HSVNConflictAction::Edit:
        return "edit";
    case HSVNConflictAction::Add:
        return "add";
    case HSVNConflictAction::Delete:
        return "delete";
    case HSVNConflictAction::Replace:
        break;
    }
    return "replace";
}

const char* wordOf(HSVNConflictReason reason)
{
    switch (reason) {
    case HSVNConflictReason::Edited:
        return "edit";
    case HSVNConflictReason::Obstructed:
        return "obstruction";
    case HSVNConflictReason::Deleted:
        return "delete";
    case HSVNConflictReason::Missing:
        return "missing";
    case HSVNConflictReason::Unversioned:
        return "unversioned";
    case HSVNConflictReason::Added:
        return "add";
    case HSVNConflictReason::Replaced:
        return "replace";
    case HSVNConflictReason::MovedAway:
        return "moved-away";
    case HSVNConflictReason::MovedHere:
        break;
    }
    return "moved-here";
}

std::string descriptionOfIncomingEdit(const HSVNConflictRecord& conflict)
{
    const auto kind = conflict.sourceLeft ? conflict.sourceLeft->kind : HSVNNodeKindUnknown;
    return fmt::format("incoming {} upon {}", incomingWords(HSVNConflictAction::Edit, kind),
                       wordOf(conflict.operation));
}

std::string descriptionOfTreeConflict(const HSVNConflictRecord& conflict)
{
    return fmt::format("local {}{}, incoming {} upon {}", kindPrefix(conflict.nodeKind),
                       longWordOf(conflict.reason, conflict.operation),
                       incomingWords(conflict.action, incomingKind(conflict)), wordOf(conflict.operation));
}

bool isBinaryMIMEType(std::string_view type)
{
    type = type.substr(0, type.find_first_of("; "));
    return !type.starts_with("text/") && type != "image/x-xbitmap" && type != "image/x-xpixmap";
}
