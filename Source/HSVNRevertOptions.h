#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>

/// Choices for undoing local changes.
class HSVN_EXPORT HSVNRevertOptions : public HSVNOptionsOf<HSVNRevertOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNRevertOptions";

    /// Revert everything below a folder too. Initially `true`.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }

    std::string description() const override;

  private:
    bool _recursive = true;
};

using HSVNRevertOptionsRef = std::shared_ptr<const HSVNRevertOptions>;
