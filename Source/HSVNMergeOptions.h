#pragma once

#include "HSVNConflict.h"
#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Choices of the merges of `HSVNContext`.
struct HSVNMergeChoices
{
    HSVNDepth depth = HSVNDepthUnknown;   ///< how far below the target; unknown is what the working copy has
    bool ignoreMergeInfo = false;         ///< neither read nor write what was merged before
    bool diffIgnoreAncestry = false;      ///< compare unrelated items of one kind as related
    bool forceDelete = false;             ///< delete items although they are changed or unversioned
    bool recordOnly = false;              ///< write down what was merged, and merge nothing else
    bool dryRun = false;                  ///< tell what would be done and leave the working copy as it is
    bool allowMixedRevisions = false;     ///< into a working copy of several; lines before 1.7 do in any case
    std::vector<std::string> arguments{}; ///< of the program, external or not, that merges texts
    HSVNConflictChooser chooser{};        ///< asked how each conflict is settled; nil leaves all
};

/// Choices for merging the difference of two sources.
class HSVN_EXPORT HSVNMergeOptions : public HSVNOptionsOf<HSVNMergeOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNMergeOptions";

    /// How deep to merge. Initially `HSVNDepthInfinity`.
    HSVNDepth depth() const { return _depth; }
    void setDepth(HSVNDepth depth) { _depth = depth; }
    /// 0 compares all white space, 1 ignores changes in its amount, 2 ignores it altogether. Initially `0`.
    std::int32_t whitespaceCompareBehavior() const { return _whitespaceCompareBehavior; }
    void setWhitespaceCompareBehavior(std::int32_t whitespaceCompareBehavior)
    {
        _whitespaceCompareBehavior = whitespaceCompareBehavior;
    }
    /// Compare items by name alone, related or not. Initially `false`.
    bool ignoreAncestry() const { return _ignoreAncestry; }
    void setIgnoreAncestry(bool ignoreAncestry) { _ignoreAncestry = ignoreAncestry; }
    /// Delete items with local changes where the merge deletes them. Initially `false`.
    bool force() const { return _force; }
    void setForce(bool force) { _force = force; }
    /// Only record the merge; Subversion 1.5 and later. Initially `false`.
    bool recordOnly() const { return _recordOnly; }
    void setRecordOnly(bool recordOnly) { _recordOnly = recordOnly; }
    /// Change nothing, only report what would be done. Initially `false`.
    bool dryRun() const { return _dryRun; }
    void setDryRun(bool dryRun) { _dryRun = dryRun; }
    /// Ignore differences in line ends. Initially `false`.
    bool ignoreEOLStyle() const { return _ignoreEOLStyle; }
    void setIgnoreEOLStyle(bool ignoreEOLStyle) { _ignoreEOLStyle = ignoreEOLStyle; }

    /// The same choices for the verb `mergeDifference`.
    HSVNMergeChoices choices() const;

  private:
    HSVNDepth _depth = HSVNDepthInfinity;
    std::int32_t _whitespaceCompareBehavior = 0;
    bool _ignoreAncestry = false;
    bool _force = false;
    bool _recordOnly = false;
    bool _dryRun = false;
    bool _ignoreEOLStyle = false;
};

using HSVNMergeOptionsRef = std::shared_ptr<const HSVNMergeOptions>;
