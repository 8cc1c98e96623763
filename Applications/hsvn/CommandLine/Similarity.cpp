#include "CommandLine/Similarity.h"

#include "Output/Pager.h"

#include <algorithm>
#include <fmt/format.h>
#include <unistd.h>

namespace {

/// Length of the longest text that both contain, with gaps.
std::size_t commonLength(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> lengths(b.size() + 1);
    for (const char character : a) {
        std::size_t diagonal = 0;
        for (std::size_t index = 0; index < b.size(); ++index) {
            const std::size_t above = lengths[index + 1];
            lengths[index + 1] = character == b[index] ? diagonal + 1 : std::max(above, lengths[index]);
            diagonal = above;
        }
    }
    return lengths.back();
}

/// How much two texts have in common, from 0 to 1.
double similarity(std::string_view a, std::string_view b)
{
    const auto whole = static_cast<double>(a.size() + b.size());
    return whole == 0 ? 1 : 2 * static_cast<double>(commonLength(a, b)) / whole;
}

constexpr double leastSimilarity = 0.66;

} // namespace

bool areSimilar(std::string_view a, std::string_view b) { return similarity(a, b) > leastSimilarity; }

std::vector<std::string> namesLike(std::string_view name, std::span<const char* const> known)
{
    std::vector<std::pair<double, std::string>> found;
    for (const char* const candidate : known) {
        if (const double degree = similarity(name, candidate); degree > leastSimilarity) {
            found.emplace_back(degree, candidate);
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<std::string> names;
    names.reserve(found.size());
    for (const auto& [degree, candidate] : found) {
        names.push_back(candidate);
    }
    return names;
}

std::string suggestion(std::string_view name, std::span<const char* const> known, std::string_view prefix)
{
    constexpr std::size_t most = 3;
    if (!Pager::isBeforeTerminal(STDERR_FILENO)) {
        return "";
    }
    auto meant = namesLike(name, known);
    meant.resize(std::min(meant.size(), most));
    return meant.empty() ? "" : fmt::format("; did you mean {}?", choiceOf(meant, prefix));
}

std::string choiceOf(const std::vector<std::string>& names, std::string_view prefix)
{
    std::string text;
    for (std::size_t index = 0; index < names.size(); ++index) {
        const char* const separator = index == 0 ? "" : index + 1 == names.size() ? " or " : ", ";
        text += fmt::format("{}'{}{}'", separator, prefix, names[index]);
    }
    return text;
}
