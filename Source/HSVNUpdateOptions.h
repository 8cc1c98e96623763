#pragma once

#include "HSVNConflict.h"
#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <memory>
#include <string>

/// Choices of `HSVNContext::update`.
struct HSVNUpdateChoices
{
    HSVNDepth depth = HSVNDepthUnknown; ///< unknown keeps what the working copy has
    bool depthIsSticky = false;         ///< the working copy keeps the depth
    bool processExternals = true;       ///< bring externals along
    bool allowObstructions = false;     ///< unversioned items in the way become versioned, their contents unchanged
    bool addsAsModification = false;    ///< a local addition where the repository adds, too, is a change of it
    bool makeParents = false;           ///< check missing parent directories out, at depth empty
    HSVNConflictChooser chooser{};      ///< asked how each conflict is settled; nil leaves all
};

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

    /// The same choices for the verb `update`.
    HSVNUpdateChoices choices() const;
    std::string description() const override;

  private:
    bool _depthIsSticky = false;
    bool _processExternals = true;
    bool _allowUnversionedObstructions = false;
    HSVNDepth _depth = HSVNDepthUnknown;
};

using HSVNUpdateOptionsRef = std::shared_ptr<const HSVNUpdateOptions>;
