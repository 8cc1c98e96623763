#pragma once

#include "HSVNConflict.h"
#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <memory>
#include <string>

/// Choices of `HSVNContext::resolve`.
struct HSVNResolveChoices
{
    HSVNDepth depth = HSVNDepthEmpty;                               ///< how far below the targets
    HSVNResolutionChoice choice = HSVNResolutionChoice::MergedText; ///< from `Postpone` to `MergedText`
};

/// Choices for marking conflicts as resolved.
class HSVN_EXPORT HSVNResolveOptions : public HSVNOptionsOf<HSVNResolveOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNResolveOptions";

    /// Resolve everything below a folder too. Initially `true`.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }

    /// The same choices for the verb `resolve`.
    HSVNResolveChoices choices() const;
    std::string description() const override;

  private:
    bool _recursive = true;
};

using HSVNResolveOptionsRef = std::shared_ptr<const HSVNResolveOptions>;
