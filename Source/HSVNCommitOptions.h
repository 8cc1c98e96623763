#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <memory>
#include <string>

/// Choices for a commit.
class HSVN_EXPORT HSVNCommitOptions : public HSVNOptionsOf<HSVNCommitOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNCommitOptions";

    /// Release the locks held on the committed items. Initially `true`.
    bool releaseLocks() const { return _releaseLocks; }
    void setReleaseLocks(bool releaseLocks) { _releaseLocks = releaseLocks; }
    /// How deep to commit below the given paths. Initially `HSVNDepthUnknown`.
    HSVNDepth depth() const { return _depth; }
    void setDepth(HSVNDepth depth) { _depth = depth; }

    std::string description() const override;

  private:
    bool _releaseLocks = true;
    HSVNDepth _depth = HSVNDepthUnknown;
};

using HSVNCommitOptionsRef = std::shared_ptr<const HSVNCommitOptions>;
