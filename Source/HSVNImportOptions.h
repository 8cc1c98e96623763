#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>

/// Choices for importing an unversioned tree.
class HSVN_EXPORT HSVNImportOptions : public HSVNOptionsOf<HSVNImportOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNImportOptions";

    /// Import everything below the folder. Initially `true`.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }
    /// Leave items out that match an ignore pattern. Initially `true`.
    bool matchIgnorePatterns() const { return _matchIgnorePatterns; }
    void setMatchIgnorePatterns(bool matchIgnorePatterns) { _matchIgnorePatterns = matchIgnorePatterns; }

    std::string description() const override;

  private:
    bool _recursive = true;
    bool _matchIgnorePatterns = true;
};

using HSVNImportOptionsRef = std::shared_ptr<const HSVNImportOptions>;
