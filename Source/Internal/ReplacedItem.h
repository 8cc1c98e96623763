#pragma once

#include "HSVNForward.h"
#include "HSVNProperties.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"
#include "Internal/FileManager.h"

#include <optional>
#include <string>
#include <vector>

/// Refuses to let an item take the place of another one that must stay.
///
/// @throws HSVNAssertionException for a source that is no local path; HSVNInvalidArgumentException when one of the two
///         contains the other; HSVNNoSuchEntryException when there is nothing at the source
void HSVNCheckReplacement(const HSVNPathRef& path, const HSVNPathRef& source, const HSVNContextRef& context);

/// What kept an item from taking the place of another one.
enum class HSVNReplacementFailure
{
    Refused,   ///< the application stopped it between two calls of Subversion
    Deletion,  ///< Subversion failed to delete the old item
    Operation, ///< Subversion failed to bring the new item, nothing of which is there
    Arrived    ///< the same, but the new item is there already, and its source may be gone
};

/// An item that is about to be deleted for another one to take its place, and what it takes to bring it back.
///
/// What was set aside stays on disk until the new item has taken the place or the old one is back in it.
class HSVNReplacedItem
{
  public:
    /// Sets an item on disk aside, and notes what is scheduled in it and its changed properties; of an item in a
    /// repository, notes a revision that holds it.
    ///
    /// @throws HSVNException when that cannot be done; the item is then as it was
    HSVNReplacedItem(HSVNPathRef path, HSVNContextRef context);

    /// Whether setting it aside left anything to delete.
    bool needsDeletion() const;
    /// Removes what was set aside: another item has taken the place.
    void discard() noexcept;
    /// Brings the old item back as far as possible, even while the delegate wants to cancel. What had been copied from
    /// elsewhere comes back without its history.
    ///
    /// An item on disk comes back only where nothing that Subversion left unfinished will touch it later; a working
    /// copy that the failed call left locked is cleaned up for it.
    ///
    /// @return where an item is kept that could not come back; nil when it did
    std::optional<std::string> restore(HSVNReplacementFailure failure) noexcept;

  private:
    /// What a deletion that is reverted would not bring back.
    struct Change
    {
        HSVNPathRef path;
        HSVNSchedule schedule;
        std::optional<HSVNProperties> properties; // when they were changed
    };

    void noteChanges();
    void noteChange(const HSVNNode& node);
    void noteRevision();
    /// Takes back what is scheduled at the path, and leaves nothing unfinished there.
    void takeBackChanges() const;
    HSVNPathRef folderToCleanUp() const noexcept;
    /// Brings the working copy to where the old item can be put back.
    ///
    /// @return whether that succeeded
    bool clearTheWay(HSVNReplacementFailure failure) noexcept;
    bool restoreOnDisk(HSVNReplacementFailure failure) noexcept;
    void restoreInRepository() const;
    /// The topmost folder at or above the item that Subversion holds locked, or that holds locked the item; nil when
    /// none does.
    HSVNPathRef lockedFolder() const;

    HSVNPathRef _path;
    HSVNContextRef _context;
    bool _isVersioned = false;
    bool _wasLocked = false;
    std::optional<HSVNSetAsideItem> _original;
    std::vector<Change> _changes;
    HSVNRevisionNumber _revision = HSVNInvalidRevision;
};
