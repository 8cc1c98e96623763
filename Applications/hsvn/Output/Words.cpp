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
    const bool isMissingInMerge = reason == HSVNConflictReason::Missing && operation == HSVNConflictOperation::Merge;
    return isMissingInMerge ? "missing or deleted or moved away" : HSVNTextOfConflictReason(reason);
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

/// Whether a configuration's value is one of the words, in capitals or not.
bool isOneOf(const std::string& value, const std::array<const char*, 4>& words)
{
    return std::any_of(words.begin(), words.end(),
                       [&](const char* word) { return strcasecmp(word, value.c_str()) == 0; });
}

} // namespace

bool isTrueWord(const std::string& value) { return isOneOf(value, {"true", "yes", "on", "1"}); }

bool isFalseWord(const std::string& value) { return isOneOf(value, {"false", "no", "off", "0"}); }

const char* wordOf(HSVNNodeKind kind) { return kind == HSVNNodeKindDirectory ? "dir" : HSVNTextOfNodeKind(kind); }

const char* wordOf(HSVNStatusKind status)
{
    return status == HSVNStatusKindUnknown ? "none" : HSVNTextOfStatusKind(status);
}

char letterOf(HSVNStatusKind status)
{
    switch (status) {
    case HSVNStatusKindNone:
    case HSVNStatusKindNormal:
        return ' ';
    case HSVNStatusKindAdded:
        return 'A';
    case HSVNStatusKindMissing:
    case HSVNStatusKindIncomplete:
        return '!';
    case HSVNStatusKindDeleted:
        return 'D';
    case HSVNStatusKindReplaced:
        return 'R';
    case HSVNStatusKindModified:
        return 'M';
    case HSVNStatusKindConflicted:
        return 'C';
    case HSVNStatusKindObstructed:
        return '~';
    case HSVNStatusKindIgnored:
        return 'I';
    case HSVNStatusKindExternal:
        return 'X';
    case HSVNStatusKindMerged:
        return 'G';
    case HSVNStatusKindUnversioned:
    case HSVNStatusKindUnknown:
        break;
    }
    return '?';
}

const char* wordOf(HSVNConflictReason reason)
{
    switch (reason) {
    case HSVNConflictReason::MovedAway:
        return "moved-away";
    case HSVNConflictReason::MovedHere:
        return "moved-here";
    default:
        return HSVNTextOfConflictReason(reason);
    }
}

std::string descriptionOfIncomingEdit(const HSVNConflictRecord& conflict)
{
    const auto kind = conflict.sourceLeft ? conflict.sourceLeft->kind : HSVNNodeKindUnknown;
    return fmt::format("incoming {} upon {}", incomingWords(HSVNConflictAction::Edit, kind),
                       HSVNTextOfConflictOperation(conflict.operation));
}

std::string descriptionOfTreeConflict(const HSVNConflictRecord& conflict)
{
    return fmt::format("local {}{}, incoming {} upon {}", kindPrefix(conflict.nodeKind),
                       longWordOf(conflict.reason, conflict.operation),
                       incomingWords(conflict.action, incomingKind(conflict)),
                       HSVNTextOfConflictOperation(conflict.operation));
}

bool isBinaryMIMEType(std::string_view type)
{
    type = type.substr(0, type.find_first_of("; "));
    return !type.starts_with("text/") && type != "image/x-xbitmap" && type != "image/x-xpixmap";
}
