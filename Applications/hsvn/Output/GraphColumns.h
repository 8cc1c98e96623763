#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Draws the columns of a graph beside the texts of its nodes: a line for each way that leads on, a star for a node.
class GraphColumns
{
  public:
    /// What stands beside a node.
    struct Drawing
    {
        std::vector<std::string> before; ///< lines above it, without text
        std::string node;                ///< the line of the node itself
        std::vector<std::string> behind; ///< the lines that follow it
        std::string further;             ///< every line after those
    };

    /// Draws the next node. Nodes come before those that they go on from.
    ///
    /// @param parents  what it goes on from, any other nodes that are still to come
    Drawing next(std::size_t node, const std::vector<std::size_t>& parents);

  private:
    std::size_t columnFor(std::size_t node, Drawing& drawing);
    std::string joined(std::size_t column, std::size_t into);
    void branchOff(std::size_t column, std::size_t parent, Drawing& drawing);
    std::string ended(std::size_t column);
    std::string ways() const;
    /// A row of blanks for some columns.
    static std::string row(std::size_t columns) { return std::string(columns == 0 ? 0 : 2 * columns - 1, ' '); }

    std::vector<std::size_t> _awaited; ///< which node each column leads to
};
