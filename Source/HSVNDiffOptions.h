#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <cstdint>
#include <memory>

/// Choices for comparing files. A copy has the initial values, not those of its source.
class HSVN_EXPORT HSVNDiffOptions : public HSVNOptionsOf<HSVNDiffOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNDiffOptions";

    /// 0 compares all white space, 1 ignores changes in its amount, 2 ignores it altogether. Initially `0`.
    std::int32_t whitespaceCompareBehavior() const { return _whitespaceCompareBehavior; }
    void setWhitespaceCompareBehavior(std::int32_t behavior) { _whitespaceCompareBehavior = behavior; }
    /// Ignore differences in line ends. Initially `false`.
    bool ignoreEOLStyle() const { return _ignoreEOLStyle; }
    void setIgnoreEOLStyle(bool ignoreEOLStyle) { _ignoreEOLStyle = ignoreEOLStyle; }
    /// Compare everything below a folder. Initially `true`.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }

  protected:
    std::shared_ptr<HSVNOptions> makeCopy() const override { return defaults(); }

  private:
    std::int32_t _whitespaceCompareBehavior = 0;
    bool _ignoreEOLStyle = false;
    bool _recursive = true;
};

using HSVNDiffOptionsRef = std::shared_ptr<const HSVNDiffOptions>;
