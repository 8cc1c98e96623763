#pragma once

#include "HSVNConflict.h"
#include "Internal/BundleExtensions.h"
#include "Internal/Operation.h"

#include <optional>

/// A conflict as Subversion from 1.7 on describes it.
///
/// @param line  whose record it is: no field is read that it does not have
HSVNConflictRecord HSVNConflictRecordOf(const svn_wc_conflict_description2_t& record, const HSVNVersion& line);

/// One side of it, also of a description of 1.6; nil for null.
std::optional<HSVNConflictVersion> HSVNConflictVersionOf(const svn_wc_conflict_version_t* record,
                                                         const HSVNVersion& line);

/// Has a chooser settle the conflicts that a call of the bundle's second table meets.
class HSVNConflictChoosing
{
  public:
    /// @param chooser  nil leaves all conflicts; outlives the object
    HSVNConflictChoosing(HSVNOperation& operation, const HSVNConflictChooser& chooser);
    HSVNConflictChoosing(const HSVNConflictChoosing&) = delete;
    HSVNConflictChoosing& operator=(const HSVNConflictChoosing&) = delete;

    /// What the call is handed: null when nobody is asked.
    const HSVNConflictFunctions::Choosing* record() const { return _chooser ? &_record : nullptr; }

  private:
    static svn_error_t* choose(void* baton, int* choice, const svn_wc_conflict_description2_t* conflict);
    HSVNResolutionChoice choiceFor(const svn_wc_conflict_description2_t& conflict) const;

    HSVNOperation& _operation;
    const HSVNConflictChooser& _chooser;
    HSVNConflictFunctions::Choosing _record;
};
