#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNReadingChoices.h"

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
    /// Name the function that each difference is in, in a unified text. Initially `false`.
    bool showFunctions() const { return _showFunctions; }
    void setShowFunctions(bool showFunctions) { _showFunctions = showFunctions; }
    /// How many common lines a unified text shows before and after each difference; negative ones are 3. Initially `3`.
    std::int32_t contextLines() const { return _contextLines; }
    void setContextLines(std::int32_t contextLines) { _contextLines = contextLines; }

    /// The same choices for the verb `diff`, with a million context lines at most. A line that cannot show functions,
    /// before 1.5, or another number of lines, before 1.9, says so when it is asked to.
    HSVNDiffChoices choices() const;

  protected:
    std::shared_ptr<HSVNOptions> makeCopy() const override { return defaults(); }

  private:
    std::int32_t _whitespaceCompareBehavior = 0;
    bool _ignoreEOLStyle = false;
    bool _recursive = true;
    bool _showFunctions = false;
    std::int32_t _contextLines = 3;
};

using HSVNDiffOptionsRef = std::shared_ptr<const HSVNDiffOptions>;
