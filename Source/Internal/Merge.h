#pragma once

#include "HSVNMergeOptions.h"
#include "HSVNTarget.h"
#include "Internal/ConflictRecord.h"
#include "Internal/Operation.h"

/// The choices of a merge as the bundle's second table takes them.
class HSVNMergeRecord
{
  public:
    /// @param choices  outlive the record
    HSVNMergeRecord(HSVNOperation& operation, const HSVNMergeChoices& choices);

    const HSVNMergeFunctions::Merging* record() const { return &_record; }

  private:
    HSVNConflictChoosing _choosing;
    HSVNMergeFunctions::Merging _record;
};

/// Refuses two answers on ancestry, of which functions before 1.8 know one only.
void HSVNRefuseTwoAncestries(const HSVNOperation& operation, const HSVNMergeChoices& choices);

/// One side of a merge.
struct HSVNMergeSource
{
    const char* target;
    svn_opt_revision_t revision;
};

/// An item of a merge in the revision given; without one, in its present state.
HSVNMergeSource HSVNMergeSourceOf(HSVNOperation& operation, const HSVNTarget& target, const HSVNRevision& revision);

/// Applies the difference of two trees to a working copy.
///
/// @param operation  of `HSVNContext::mergeDifference` or of the class operation
/// @throws HSVNInvalidArgumentException for a depth, or for choosing a mere record, which Subversion 1.4 cannot express
void HSVNMergeDifference(HSVNOperation& operation, const HSVNMergeSource& first, const HSVNMergeSource& second,
                         const std::string& target, const HSVNMergeChoices& choices);
