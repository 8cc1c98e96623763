#pragma once

#include "HSVNExport.h"
#include "HSVNOptionsWithRevision.h"
#include "HSVNTypes.h"

#include <memory>
#include <string>

/// Choices of `HSVNContext::checkout`.
struct HSVNCheckOutChoices
{
    HSVNDepth depth = HSVNDepthUnknown; ///< unknown is all
    bool processExternals = true;       ///< check out what externals definitions place, too
    bool allowObstructions = false;     ///< unversioned items in the way become versioned, their contents unchanged
};

/// Choices for checking out a new working copy. The inherited `revision` is initially `HSVNRevisionSpec::HEAD()`.
class HSVN_EXPORT HSVNCheckOutOptions : public HSVNOptionsOf<HSVNCheckOutOptions, HSVNOptionsWithRevision>
{
  public:
    static constexpr const char* staticClassName = "HSVNCheckOutOptions";

    /// The initial values, as `defaults` has them.
    HSVNCheckOutOptions();

    /// Check externals out too. Initially `true`.
    bool processExternals() const { return _processExternals; }
    void setProcessExternals(bool processExternals) { _processExternals = processExternals; }
    /// Take unversioned items that are in the way as local changes; Subversion 1.5 and later. Initially `false`.
    bool allowUnversionedObstructions() const { return _allowUnversionedObstructions; }
    void setAllowUnversionedObstructions(bool allow) { _allowUnversionedObstructions = allow; }
    /// How deep to check out; neither unknown nor exclude. Initially `HSVNDepthInfinity`.
    HSVNDepth depth() const { return _depth; }
    void setDepth(HSVNDepth depth) { _depth = depth; }

    /// The same choices for the verb `checkout`.
    HSVNCheckOutChoices choices() const;
    std::string description() const override;

  private:
    bool _processExternals = true;
    bool _allowUnversionedObstructions = false;
    HSVNDepth _depth = HSVNDepthInfinity;
};

using HSVNCheckOutOptionsRef = std::shared_ptr<const HSVNCheckOutOptions>;
