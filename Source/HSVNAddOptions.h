#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <memory>
#include <string>

/// Choices of `HSVNContext::add`.
struct HSVNAddChoices
{
    HSVNDepth depth = HSVNDepthInfinity; ///< how far below the targets
    bool force = false;                  ///< pass over items that are versioned already, and go on below them
    bool matchIgnorePatterns = true;     ///< leave ignored items below the targets out
    bool automaticProperties = true;     ///< set what configuration and inherited properties ask for
    bool makeParents = false;            ///< add unversioned directories between the working copy and a target, too
};

/// Choices for putting items under version control.
class HSVN_EXPORT HSVNAddOptions : public HSVNOptionsOf<HSVNAddOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNAddOptions";

    /// Add everything below a folder too. Initially `true`.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }
    /// Do not fail on items that are under version control already. Initially `true`.
    bool force() const { return _force; }
    void setForce(bool force) { _force = force; }
    /// Leave items out that match an ignore pattern. Initially `true`.
    bool matchIgnorePatterns() const { return _matchIgnorePatterns; }
    void setMatchIgnorePatterns(bool matchIgnorePatterns) { _matchIgnorePatterns = matchIgnorePatterns; }

    /// The same choices for the verb `add`.
    HSVNAddChoices choices() const;
    std::string description() const override;

  private:
    bool _recursive = true;
    bool _force = true;
    bool _matchIgnorePatterns = true;
};

using HSVNAddOptionsRef = std::shared_ptr<const HSVNAddOptions>;
