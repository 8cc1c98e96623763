#pragma once

#include "HSVNExport.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

/// Where one side of a conflict comes from.
struct HSVNConflictVersion
{
    std::optional<std::string> repositoryURL{};           ///< of the repository's root
    std::optional<std::string> uuid{};                    ///< of the repository
    HSVNRevisionNumber pegRevision = HSVNInvalidRevision; ///< in which the path is found
    std::optional<std::string> pathInRepository{};        ///< without a leading "/"
    HSVNNodeKind kind = HSVNNodeKindUnknown;              ///< of the item there; none where it is not there
};

/// What kind of change a conflict is about; the values equal those of `svn_wc_conflict_kind_t`.
enum class HSVNConflictKind : std::int32_t
{
    Text = 0,
    Property = 1,
    Tree = 2
};

/// What an operation tried to do; the values equal those of `svn_wc_conflict_action_t`.
enum class HSVNConflictAction : std::int32_t
{
    Edit = 0,
    Add = 1,
    Delete = 2,
    Replace = 3
};

/// What kept it from doing so; the values equal those of `svn_wc_conflict_reason_t`.
enum class HSVNConflictReason : std::int32_t
{
    Edited = 0,
    Obstructed = 1,
    Deleted = 2,
    Missing = 3,
    Unversioned = 4,
    Added = 5,
    Replaced = 6,
    MovedAway = 7,
    MovedHere = 8
};

/// The operation that met a conflict; the values equal those of `svn_wc_operation_t`.
enum class HSVNConflictOperation : std::int32_t
{
    NoOperation = 0,
    Update = 1,
    Switch = 2,
    Merge = 3
};

/// What a conflict is about: "text", "property" or "tree".
HSVN_EXPORT const char* HSVNTextOfConflictKind(HSVNConflictKind kind);
/// What an operation tried to do: "edit", "add", "delete" or "replace".
HSVN_EXPORT const char* HSVNTextOfConflictAction(HSVNConflictAction action);
/// What kept it from doing so, such as "obstruction" or "moved away".
HSVN_EXPORT const char* HSVNTextOfConflictReason(HSVNConflictReason reason);
/// The operation: "update", "switch", "merge" or "none".
HSVN_EXPORT const char* HSVNTextOfConflictOperation(HSVNConflictOperation operation);

/// One conflict of a working copy's item.
struct HSVNConflictRecord
{
    HSVNConflictKind kind = HSVNConflictKind::Text;                       ///< of what kind the change is
    HSVNNodeKind nodeKind = HSVNNodeKindUnknown;                          ///< of the item in conflict
    HSVNConflictAction action = HSVNConflictAction::Edit;                 ///< what was tried
    HSVNConflictReason reason = HSVNConflictReason::Edited;               ///< what kept it from being done
    HSVNConflictOperation operation = HSVNConflictOperation::NoOperation; ///< which operation tried
    std::optional<std::string> propertyName{};                            ///< of a property conflict
    // Files that the conflict left, as absolute paths.
    std::optional<std::string> basePath{};            ///< the common ancestor
    std::optional<std::string> theirPath{};           ///< what came in
    std::optional<std::string> myPath{};              ///< what was there
    std::optional<std::string> propertyRejectPath{};  ///< properties that could not be merged
    std::optional<HSVNConflictVersion> sourceLeft{};  ///< what the change started from
    std::optional<HSVNConflictVersion> sourceRight{}; ///< what it led to
};

/// A way to settle a conflict; the values equal those of `svn_client_conflict_option_id_t`, and newer ones pass through
/// unnamed.
enum class HSVNResolutionChoice : std::int32_t
{
    Postpone = 0,
    BaseText = 1,
    IncomingText = 2,
    WorkingText = 3,
    IncomingTextWhereConflicted = 4,
    WorkingTextWhereConflicted = 5,
    MergedText = 6,
    Unspecified = 7,
    // Of tree conflicts
    AcceptCurrentState = 8,
    UpdateMoveDestination = 9,
    UpdateMovedAwayChildren = 10,
    IncomingAddIgnore = 11,
    IncomingAddedFileTextMerge = 12,
    IncomingAddedFileReplaceAndMerge = 13,
    IncomingAddedFolderMerge = 14,
    IncomingAddedFolderReplace = 15,
    IncomingAddedFolderReplaceAndMerge = 16,
    IncomingDeleteIgnore = 17,
    IncomingDeleteAccept = 18,
    IncomingMoveFileTextMerge = 19,
    IncomingMoveFolderMerge = 20,
    LocalMoveFileTextMerge = 21,
    LocalMoveFolderMerge = 22,
    SiblingMoveFileTextMerge = 23,
    SiblingMoveFolderMerge = 24,
    BothMovedFileMerge = 25,
    BothMovedFileMoveMerge = 26,
    BothMovedFolderMerge = 27,
    BothMovedFolderMoveMerge = 28
};

/// Answers how a conflict is settled while an operation goes on, by a choice from `Postpone` to `MergedText`. An
/// exception ends the operation and reaches its caller.
///
/// @param path      of the item, absolute
/// @param conflict  what it is about and where its sides lie
using HSVNConflictChooser =
    std::function<HSVNResolutionChoice(const std::string& path, const HSVNConflictRecord& conflict)>;
