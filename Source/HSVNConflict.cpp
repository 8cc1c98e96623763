#include "HSVNConflict.h"

const char* HSVNTextOfConflictKind(HSVNConflictKind kind)
{
    switch (kind) {
    case HSVNConflictKind::Text:
        return "text";
    case HSVNConflictKind::Property:
        return "property";
    case HSVNConflictKind::Tree:
        return "tree";
    }
    return "unknown";
}

const char* HSVNTextOfConflictAction(HSVNConflictAction action)
{
    switch (action) {
    case HSVNConflictAction::Edit:
        return "edit";
    case HSVNConflictAction::Add:
        return "add";
    case HSVNConflictAction::Delete:
        return "delete";
    case HSVNConflictAction::Replace:
        return "replace";
    }
    return "unknown";
}

const char* HSVNTextOfConflictReason(HSVNConflictReason reason)
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
        return "moved away";
    case HSVNConflictReason::MovedHere:
        return "moved here";
    }
    return "unknown";
}

const char* HSVNTextOfConflictOperation(HSVNConflictOperation operation)
{
    switch (operation) {
    case HSVNConflictOperation::NoOperation:
        return "none";
    case HSVNConflictOperation::Update:
        return "update";
    case HSVNConflictOperation::Switch:
        return "switch";
    case HSVNConflictOperation::Merge:
        return "merge";
    }
    return "unknown";
}
