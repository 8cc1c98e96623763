#pragma once

#include "HSVNConflict.h"
#include "HSVNContext.h"
#include "HSVNDiffOptions.h"
#include "HSVNThreeWayDiff.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// One of the choices that a conflict leaves.
struct HSVNConflictOption
{
    HSVNResolutionChoice choice = HSVNResolutionChoice::Unspecified; ///< what `resolve` is given
    std::string label{};                                             ///< up to three words
    std::string description{};                                       ///< one or several lines
};

/// The files, as absolute paths, or the values of a conflict; nil for one that there is not.
struct HSVNConflictSides
{
    std::optional<std::string> base{};     ///< what the working copy was based on
    std::optional<std::string> mine{};     ///< what was there
    std::optional<std::string> theirOld{}; ///< what the change that came in started from
    std::optional<std::string> theirNew{}; ///< what it led to
};

/// Where to look for what an item may have been moved to.
enum class HSVNMovePlace : std::uint8_t
{
    WorkingCopy,
    Repository
};

/// An item of a working copy and what it is in conflict about. Stands for `svn_client_conflict_t`; not offered by lines
/// before 1.10. What it is in conflict about is told as it was when the object was made, also once `resolve` has
/// settled it: a new object, or `HSVNContext::conflicts`, tells what is left. Used by the context's thread, and not
/// longer than the context's line stays the same. What concerns a kind of conflict that the item does not have throws
/// HSVNException, `HSVNStatusCode::ConflictResolverFailure`.
class HSVN_EXPORT HSVNConflictedItem
{
  public:
    /// @param target   a local path
    /// @param context  not nil ("context != nil")
    /// @throws HSVNException for an item that cannot be read; one that is not in conflict has no kind of it
    /// Stands for svn_client_conflict_get.
    HSVNConflictedItem(const HSVNTarget& target, HSVNContextRef context);
    /// Lets go of what was read; conflicts that are not settled stay.
    ~HSVNConflictedItem();
    HSVNConflictedItem(const HSVNConflictedItem&) = delete;
    HSVNConflictedItem& operator=(const HSVNConflictedItem&) = delete;

    /// Whether the file's text is in conflict.
    bool hasTextConflict() const;
    /// Whether the item is in conflict as a part of the tree.
    bool hasTreeConflict() const;
    /// Names of the properties in conflict.
    const std::vector<std::string>& conflictedProperties() const;
    /// Of the file in conflict; nil when it has none.
    const std::optional<std::string>& mimeType() const;
    /// What met the conflict; `NoOperation` where there is none.
    HSVNConflictOperation operation() const;

    /// Asks the repository how a tree conflict came about; descriptions, options and the recommended choice then know.
    ///
    /// Stands for svn_client_conflict_tree_get_details.
    void searchDetails();
    /// What Subversion would choose; `Unspecified` when it recommends nothing.
    HSVNResolutionChoice recommendedChoice();
    /// The choices that a kind of conflict leaves, in Subversion's order.
    std::vector<HSVNConflictOption> options(HSVNConflictKind kind);
    /// What the properties in conflict are about, in Subversion's words, in the user's language.
    std::string descriptionOfPropertyConflict();
    /// What came in, and what was there.
    std::pair<std::string, std::string> descriptionOfTreeConflict();
    /// The files that a text conflict left.
    HSVNConflictSides files();
    /// The values of a property in conflict, as bytes.
    HSVNConflictSides propertyValues(const std::string& property);
    /// Compares the files of a text conflict, section by section; their common ancestor is empty where there is none.
    ///
    /// @param options  not nil ("options != nil"), as in the operation below
    /// @throws HSVNException, `HSVNStatusCode::ClientIsBinaryFile`, for a conflict that left no files to compare,
    ///         as one of a binary type does: it is settled whole
    HSVNThreeWayDiff textComparison(const HSVNDiffOptionsRef& options = HSVNDiffOptions::defaults());
    /// Compares the values of a property in conflict; one that there is not is empty.
    HSVNThreeWayDiff propertyComparison(const std::string& property,
                                        const HSVNDiffOptionsRef& options = HSVNDiffOptions::defaults());

    /// Where the item may have been moved to, for a choice that leaves that open; empty for any other choice.
    std::vector<std::string> moveTargets(HSVNResolutionChoice choice, HSVNMovePlace place);
    /// @param index  into `moveTargets`
    /// @throws HSVNException for an index beyond them
    void chooseMoveTarget(HSVNResolutionChoice choice, HSVNMovePlace place, std::size_t index);

    /// Settles the conflicts of one kind.
    ///
    /// @param property  the property concerned; "" means all
    /// @param merged    the value of a property that was merged; nil otherwise
    /// @throws HSVNException, `HSVNStatusCode::ConflictOptionNotApplicable`, for a choice that does not apply
    /// Stands for svn_client_conflict_text_resolve, svn_client_conflict_prop_resolve and
    /// svn_client_conflict_tree_resolve.
    void resolve(HSVNConflictKind kind, HSVNResolutionChoice choice, const std::string& property = {},
                 const std::optional<std::string>& merged = std::nullopt);

  private:
    struct Conflict;
    std::unique_ptr<Conflict> _conflict;
};
