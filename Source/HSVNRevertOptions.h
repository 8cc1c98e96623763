#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <memory>
#include <string>
#include <vector>

/// Choices of `HSVNContext::revert`.
struct HSVNRevertChoices
{
    HSVNDepth depth = HSVNDepthEmpty;       ///< how far below the targets
    std::vector<std::string> changelists{}; ///< only items of these; none means all
    bool clearChangelists = false;          ///< take reverted items out of their changelists
    bool metadataOnly = false;              ///< leave files and directories on disk alone
    /// On disk, unversioned. Otherwise added targets go, and with an added directory what was added in it; Subversion
    /// leaves an added item below a target that was there before.
    bool keepAddedItems = true;
};

/// Choices for undoing local changes.
class HSVN_EXPORT HSVNRevertOptions : public HSVNOptionsOf<HSVNRevertOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNRevertOptions";

    /// Revert everything below a folder too. Initially `true`.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }

    /// The same choices for the verb `revert`.
    HSVNRevertChoices choices() const;
    std::string description() const override;

  private:
    bool _recursive = true;
};

using HSVNRevertOptionsRef = std::shared_ptr<const HSVNRevertOptions>;
