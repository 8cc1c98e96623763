#include "Output/ConflictStatistics.h"

#include <algorithm>
#include <fmt/format.h>

void ConflictStatistics::add(const std::string& path, ConflictKind kind)
{
    _counts.at(static_cast<std::size_t>(kind)).paths.insert(path);
}

void ConflictStatistics::resolve(const std::string& path, ConflictKind kind)
{
    Count& count = _counts.at(static_cast<std::size_t>(kind));
    count.resolved += count.paths.erase(path);
}

bool ConflictStatistics::hasConflicts() const
{
    return std::any_of(_counts.begin(), _counts.end(), [](const Count& count) { return !count.paths.empty(); });
}

bool ConflictStatistics::hasResolved() const
{
    return std::any_of(_counts.begin(), _counts.end(), [](const Count& count) { return count.resolved > 0; });
}

std::set<std::pair<std::string, ConflictKind>> ConflictStatistics::items() const
{
    std::set<std::pair<std::string, ConflictKind>> all;
    for (const auto kind : {ConflictKind::Text, ConflictKind::Property, ConflictKind::Tree}) {
        for (const auto& path : _counts.at(static_cast<std::size_t>(kind)).paths) {
            all.emplace(path, kind);
        }
    }
    return all;
}

std::string ConflictStatistics::summary() const
{
    std::array<ConflictCount, 3> counts;
    std::transform(_counts.begin(), _counts.end(), counts.begin(), [](const Count& count) {
        return ConflictCount{count.paths.size(), count.resolved};
    });
    return conflictSummary(counts, _skipped);
}

std::string conflictSummary(const std::array<ConflictCount, 3>& counts, int skipped)
{
    constexpr std::array names{"Text", "Property", "Tree"};
    const bool tellsResolved =
        std::any_of(counts.begin(), counts.end(), [](const auto& count) { return count.resolved > 0; });
    std::string text;
    for (std::size_t index = 0; index < names.size(); ++index) {
        const auto [remaining, resolved] = counts.at(index);
        if (remaining == 0 && resolved == 0) {
            continue;
        }
        text += tellsResolved ? fmt::format("  {} conflicts: {} remaining (and {} already resolved)\n", names.at(index),
                                            remaining, resolved)
                              : fmt::format("  {} conflicts: {}\n", names.at(index), remaining);
    }
    if (skipped > 0) {
        text += fmt::format("  Skipped paths: {}\n", skipped);
    }
    return text.empty() ? text : "Summary of conflicts:\n" + text;
}
