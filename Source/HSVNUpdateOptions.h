#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <memory>
#include <string>

/// Choices for bringing a working copy up to date.
class HSVN_EXPORT HSVNUpdateOptions : public HSVNOptionsOf<HSVNUpdateOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNUpdateOptions";

    /// Keep the depth in the working copy for later updates; Subversion 1.5 and later. Initially `false`.
    bool depthIsSticky() const { return _depthIsSticky; }
    void setDepthIsSticky(bool depthIsSticky) { _depthIsSticky = depthIsSticky; }
    /// Update externals too. Initially `true`.
    bool processExternals() const { return _processExternals; }
    void setProcessExternals(bool processExternals) { _processExternals = processExternals; }
    /// Take unversioned items that are in the way as local changes; Subversion 1.5 and later. Initially `false`.
    bool allowUnversionedObstructions() const { return _allowUnversionedObstructions; }
    void setAllowUnversionedObstructions(bool allowUnversionedObstructions)
    {
        _allowUnversionedObstructions = allowUnversionedObstructions;
    }
    /// How deep to update; unknown follows the depth of the working copy. Initially `HSVNDepthUnknown`.
    HSVNDepth depth() const { return _depth; }
    void setDepth(HSVNDepth depth) { _depth = depth; }

    std::string description() const override;

  private:
    bool _depthIsSticky = false;
    bool _processExternals = true;
    bool _allowUnversionedObstructions = false;
    HSVNDepth _depth = HSVNDepthUnknown;
};

using HSVNUpdateOptionsRef = std::shared_ptr<const HSVNUpdateOptions>;
