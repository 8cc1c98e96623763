#include "Output/LogGraph.h"

#include "Output/GraphColumns.h"
#include "Output/Output.h"

#include <algorithm>
#include <fmt/format.h>
#include <string_view>

namespace {

/// The text of a node with what is drawn beside it.
std::string beside(const GraphColumns::Drawing& drawing, std::string_view text)
{
    std::vector<std::string_view> columns{drawing.node};
    columns.insert(columns.end(), drawing.behind.begin(), drawing.behind.end());
    columns.emplace_back(drawing.further);
    const auto widest = std::max_element(columns.begin(), columns.end(),
                                         [](const auto& a, const auto& b) { return a.size() < b.size(); });
    std::string result;
    const auto add = [&, width = widest->size()](std::string_view left, std::string_view right) {
        result += right.empty() ? std::string{left} : fmt::format("{:<{}} {}", left, width, right);
        result += '\n';
    };
    for (const auto& line : drawing.before) {
        add(line, {});
    }
    std::size_t number = 0;
    for (; !text.empty(); ++number) {
        const auto end = std::min(text.find('\n'), text.size() - 1);
        add(columns[std::min(number, columns.size() - 1)], text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    for (; number + 1 < columns.size(); ++number) {
        add(columns[number], {});
    }
    return result;
}

} // namespace

void LogGraph::print()
{
    auto nodes = _graph.nodes([this](const HSVNLogItem& item) { return _printer.isWanted(item); });
    GraphColumns columns;
    for (std::size_t index = nodes.size(); index-- > 0; nodes.pop_back()) {
        const auto& [item, parents] = nodes.back();
        item->setTellsChangedPaths(_options.verbose);
        const auto drawing = columns.next(index, parents);
        Output::write(beside(drawing, _printer.textOf(*item)));
        if (!_options.quiet && index > 0) {
            Output::write(drawing.further + "\n");
        }
    }
}
