#include "Output/GraphColumns.h"

#include <algorithm>

GraphColumns::Drawing GraphColumns::next(std::size_t node, const std::vector<std::size_t>& parents)
{
    Drawing drawing;
    const std::size_t column = columnFor(node, drawing);
    drawing.node = ways();
    drawing.node[2 * column] = '*';
    if (parents.empty()) {
        const std::string line = ended(column);
        if (column < _awaited.size()) {
            drawing.behind.push_back(line);
        }
    } else {
        _awaited[column] = parents.front();
        for (std::size_t index = 1; index < parents.size(); ++index) {
            branchOff(column, parents[index], drawing);
        }
    }
    drawing.further = ways();
    return drawing;
}

std::size_t GraphColumns::columnFor(std::size_t node, Drawing& drawing)
{
    const auto found = std::find(_awaited.begin(), _awaited.end(), node);
    const auto column = static_cast<std::size_t>(found - _awaited.begin());
    if (found == _awaited.end()) {
        _awaited.push_back(node);
        return column;
    }
    for (std::size_t other = _awaited.size() - 1; other > column; --other) {
        if (_awaited[other] == node) {
            drawing.before.push_back(joined(other, column));
        }
    }
    return column;
}

/// Leads a column into one to its left; those to its right close up.
std::string GraphColumns::joined(std::size_t column, std::size_t into)
{
    std::string line = row(_awaited.size());
    for (std::size_t each = 0; each < _awaited.size(); ++each) {
        const bool stays = each < column;
        line[stays ? 2 * each : 2 * each - 1] = stays ? '|' : '/';
    }
    for (std::size_t gap = 2 * into + 1; gap < 2 * column - 1; gap += 2) {
        line[gap] = '_';
    }
    _awaited.erase(_awaited.begin() + static_cast<std::ptrdiff_t>(column));
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

/// Draws the way from a node to a further parent: into the column beside it that leads there, or into a new one.
void GraphColumns::branchOff(std::size_t column, std::size_t parent, Drawing& drawing)
{
    const auto found = std::find(_awaited.begin(), _awaited.end(), parent);
    const auto other = static_cast<std::size_t>(found - _awaited.begin());
    if (found != _awaited.end() && other <= column + 1) {
        std::string line = ways();
        for (std::size_t gap = 2 * other + 1; other < column && gap < 2 * column - 1; gap += 2) {
            line[gap] = '_';
        }
        line[other < column ? 2 * column - 1 : 2 * column + 1] = other < column ? '/' : '\\';
        drawing.behind.push_back(line);
        return;
    }
    const auto place = _awaited.begin() + static_cast<std::ptrdiff_t>(column) + 1;
    std::string line = row(_awaited.size() + 1);
    for (std::size_t each = 0; each < _awaited.size(); ++each) {
        line[each <= column ? 2 * each : 2 * each + 1] = each <= column ? '|' : '\\';
    }
    line[2 * column + 1] = '\\';
    const bool isAwaited = found != _awaited.end();
    _awaited.insert(place, parent);
    drawing.behind.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
    if (isAwaited) {
        drawing.behind.push_back(joined(other + 1, column + 1));
    }
}

/// Ends a column; those to its right close up.
std::string GraphColumns::ended(std::size_t column)
{
    std::string line = row(_awaited.size());
    for (std::size_t each = 0; each < _awaited.size(); ++each) {
        if (each != column) {
            line[each < column ? 2 * each : 2 * each - 1] = each < column ? '|' : '/';
        }
    }
    _awaited.erase(_awaited.begin() + static_cast<std::ptrdiff_t>(column));
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

std::string GraphColumns::ways() const
{
    std::string line = row(_awaited.size());
    for (std::size_t each = 0; each < _awaited.size(); ++each) {
        line[2 * each] = '|';
    }
    return line;
}
