#include "HSVNTextTable.h"

#include "HSVNPlatformException.h"
#include "Internal/Everlasting.h"

#include <algorithm>

namespace {

std::size_t codePointCount(std::string_view text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & '\xC0') != '\x80'; }));
}

std::string blanksUpTo(std::string_view text, std::size_t length)
{
    const std::size_t count = codePointCount(text);
    std::string blanks(count < length ? length - count : 0, ' ');
    return blanks;
}

} // namespace

std::shared_ptr<HSVNTextTable> HSVNTextTable::tableWithColumns(std::size_t columns)
{
    return std::make_shared<HSVNTextTable>(columns);
}

HSVNTextTable::HSVNTextTable(std::size_t columns) : _columns(columns) {}

void HSVNTextTable::addRow() { _rows.emplace_back(); }

void HSVNTextTable::setString(const std::optional<std::string>& text, std::size_t row, std::size_t column)
{
    checkColumn(column);
    HSVNAssertParameter(row < 16777216, "row < 16777216");
    _rows.resize(std::max(_rows.size(), row + 1));
    _rows[row].resize(_columns.size());
    std::string& cell = _rows[row][column];
    cell = text.value_or("");
    _columns[column].width = std::max(_columns[column].width, codePointCount(cell));
}

const std::string& HSVNTextTable::stringAtRow(std::size_t row, std::size_t column) const
{
    HSVNAssertParameter(row < _rows.size(), "row >= 0 && row < [rows count]");
    checkColumn(column);
    static const HSVNEverlasting<std::string> empty;
    return _rows[row].empty() ? *empty : _rows[row][column];
}

std::size_t HSVNTextTable::widthForColumn(std::size_t column) const
{
    checkColumn(column);
    return _columns[column].width;
}

void HSVNTextTable::setWidth(std::size_t width, std::size_t column)
{
    checkColumn(column);
    _columns[column].width = width;
}

HSVNTextAlignment HSVNTextTable::alignmentForColumn(std::size_t column) const
{
    checkColumn(column);
    return _columns[column].alignment;
}

void HSVNTextTable::setAlignment(HSVNTextAlignment alignment, std::size_t column)
{
    checkColumn(column);
    _columns[column].alignment = alignment;
}

std::string HSVNTextTable::leftPadString(std::string_view text, std::size_t length)
{
    return blanksUpTo(text, length).append(text);
}

std::string HSVNTextTable::stringValue() const
{
    std::string text;
    for (std::size_t row = 0; row < _rows.size(); ++row) {
        text += (row > 0 ? "\n" : "") + rowText(_rows[row]);
    }
    return text.empty() ? text : text + '\n';
}

std::string HSVNTextTable::rowText(const std::vector<std::string>& row) const
{
    std::string text;
    for (std::size_t column = 0; column < _columns.size(); ++column) {
        const auto [width, alignment] = _columns[column];
        const std::string_view cell = row.empty() ? std::string_view{} : row[column];
        if (width == 0) {
            continue;
        }
        if (!text.empty()) {
            text += ' ';
        }
        if (alignment == HSVNTextAlignmentRight) {
            text += leftPadString(cell, width);
        } else {
            text += cell;
            if (column + 1 < _columns.size()) {
                text += blanksUpTo(cell, width);
            }
        }
    }
    return text;
}

void HSVNTextTable::checkColumn(std::size_t column) const
{
    HSVNAssertParameter(column < _columns.size(), "column >= 0 && column < columns");
}
