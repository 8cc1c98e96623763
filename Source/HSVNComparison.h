#pragma once

#include "HSVNDiffSection.h"
#include "HSVNDiffWords.h"
#include "HSVNExport.h"
#include "HSVNPlatformException.h"
#include "HSVNReceiver.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// How the lines of a text end. A plain value.
struct HSVN_EXPORT HSVNLineEnds
{
    std::int64_t lf = 0;         ///< how many lines end with LF
    std::int64_t crlf = 0;       ///< with CR LF
    std::int64_t cr = 0;         ///< with CR alone
    bool lastLineIsOpen = false; ///< whether the last line has no end

    /// Whether there is more than one kind.
    bool isMixed() const { return (lf > 0) + (crlf > 0) + (cr > 0) > 1; }
    /// The one kind that there is, as HSVNEndOfLine.h names it; nil for none and for several.
    std::optional<std::string> style() const;

    friend bool operator==(const HSVNLineEnds&, const HSVNLineEnds&) = default;
};

/// What a comparison of texts found: sections, and the lines behind them, which are read when they are asked for. A
/// line ends with LF, CR or CR LF, and with the text; its end is part of it.
///
/// Files stay where they are. Their lines can be read as long as they are what they were when they were compared:
/// whatever reads them throws an `HSVNException` with `HSVNStatusCode::DiffSourceModified` and the file's name for one
/// that was changed, replaced or removed since.
///
/// A comparison is used by one thread at a time.
class HSVN_EXPORT HSVNComparison
{
  public:
    ~HSVNComparison();
    /// Takes over what another comparison found; that one is as nil ("comparison != nil").
    HSVNComparison(HSVNComparison&& other) noexcept;
    /// The same.
    HSVNComparison& operator=(HSVNComparison&& other) noexcept;

    /// All sections in order; none of texts without a line.
    const std::vector<HSVNDiffSection>& sections() const&;
    /// The same of a comparison that ends with the statement.
    std::vector<HSVNDiffSection> sections() &&;
    /// Whether any section is other than common.
    bool hasDifferences() const;

    /// Hands out lines of a text, one call a line.
    ///
    /// @param lines     those that the text has are handed out
    /// @param receiver  not nil ("receiver != nil")
    void readLines(HSVNDiffSide side, const HSVNDiffLines& lines, const HSVNContentsReceiver& receiver) const;
    /// The lines of a section.
    std::vector<std::string> lines(const HSVNDiffSection& section, HSVNDiffSide side) const;
    /// The lines of a section as one text.
    std::string text(const HSVNDiffSection& section, HSVNDiffSide side) const;
    /// The words of a section that two of the texts do not have in common; see `HSVNCompareWords`.
    HSVNChangedWords words(const HSVNDiffSection& section, HSVNDiffSide original = HSVNDiffSide::Original,
                           HSVNDiffSide modified = HSVNDiffSide::Modified) const;
    /// How the lines of a text end. The first call for a side reads it once, as does the first call for lines.
    const HSVNLineEnds& lineEnds(HSVNDiffSide side) const;

    /// What a comparison consists of; the library's own.
    struct Parts;

  protected:
    explicit HSVNComparison(std::unique_ptr<Parts> parts);
    Parts& parts() const
    {
        HSVNAssertParameter(_parts != nullptr, "comparison != nil");
        return *_parts;
    }

  private:
    std::unique_ptr<Parts> _parts;
};
