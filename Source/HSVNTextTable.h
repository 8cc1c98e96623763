#pragma once

#include "HSVNExport.h"
#include "HSVNObject.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// How a column of a text table is padded.
enum HSVNTextAlignment : std::int32_t
{
    HSVNTextAlignmentLeft = 0, ///< padded on the right
    HSVNTextAlignmentRight = 1 ///< padded on the left
};

/// Rows of text in aligned columns. Lengths are counted in code points.
class HSVN_EXPORT HSVNTextTable : public HSVNObject
{
  public:
    /// A table without rows.
    ///
    /// @param columns  how many columns each row has; fixed
    static std::shared_ptr<HSVNTextTable> tableWithColumns(std::size_t columns);
    /// As `tableWithColumns`.
    explicit HSVNTextTable(std::size_t columns);

    std::string className() const override { return "HSVNTextTable"; }

    /// How many columns each row has.
    std::size_t columnCount() const { return _columns.size(); }
    /// How many rows there are.
    std::size_t rowCount() const { return _rows.size(); }

    /// Appends a row of empty texts.
    void addRow();
    /// Stores a text, nil as an empty one; makes rows until the row exists and widens the column when the text is
    /// longer.
    ///
    /// @param row  below 16,777,216 ("row < 16777216")
    /// @throws an assertion "Invalid parameter not satisfying: column >= 0 && column < columns"
    void setString(const std::optional<std::string>& text, std::size_t row, std::size_t column);
    /// The text at a place.
    ///
    /// @throws an assertion naming "row >= 0 && row < [rows count]" or "column >= 0 && column < columns"
    const std::string& stringAtRow(std::size_t row, std::size_t column) const;

    /// Width of a column in code points; 0 leaves the column out of the text. These four test the column.
    std::size_t widthForColumn(std::size_t column) const;
    void setWidth(std::size_t width, std::size_t column);
    /// On which side a column is padded; left unless set.
    HSVNTextAlignment alignmentForColumn(std::size_t column) const;
    void setAlignment(HSVNTextAlignment alignment, std::size_t column);

    /// The text with blanks before it up to the length.
    static std::string leftPadString(std::string_view text, std::size_t length);

    /// All rows, each ended by a line feed; empty for a table without text. Columns are set apart by one blank, the
    /// last one is not padded on the right.
    std::string stringValue() const;

  private:
    struct Column
    {
        std::size_t width = 0;
        HSVNTextAlignment alignment = HSVNTextAlignmentLeft;
    };

    void checkColumn(std::size_t column) const;
    std::string rowText(const std::vector<std::string>& row) const;

    std::vector<Column> _columns;
    std::vector<std::vector<std::string>> _rows; // one without text may be empty
};
