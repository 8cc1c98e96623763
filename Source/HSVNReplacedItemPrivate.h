#pragma once

#include "HSVNFileManagerPrivate.h"
#include "HSVNForward.h"
#include "HSVNProperties.h"
#include "HSVNStatusKind.h"
#include "HSVNTypes.h"

#include <optional>
#include <vector>

/// Refuses to let an item take the place of another one that must stay.
///
/// @throws HSVNAssertionException for a source that is no local path; HSVNInvalidArgumentException when one of the two
///         contains the other; HSVNNoSuchEntryException when there is nothing at the source
void HSVNCheckReplacement(const HSVNPathRef& path, const HSVNPathRef& source, const HSVNContextRef& context);

/// An item that is about to be deleted for another one to take its place, and what it takes to bring it back.
class HSVNReplacedItem
{
  public:
    /// Sets a copy of an item on disk aside, and notes what is scheduled in it and its changed properties; of an item
    /// in a repository, notes a revision that holds it.
    ///
    /// @throws HSVNException when that cannot be done; the item is then as it was
    HSVNReplacedItem(HSVNPathRef path, HSVNContextRef context);

    /// Brings the old item back as far as possible, even while the delegate wants to cancel. What had been copied from
    /// elsewhere comes back without its history.
    void restore() noexcept;

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
    void restoreOnDisk() noexcept;
    void restoreInRepository() const;

    HSVNPathRef _path;
    HSVNContextRef _context;
    bool _isVersioned = false;
    std::optional<HSVNSetAsideItem> _copy;
    std::vector<Change> _changes;
    HSVNRevisionNumber _revision = HSVNInvalidRevision;
};
