#include "PropertyNames.h"

#include "Errors.h"
#include "TextFiles.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fmt/format.h>
#include <span>
#include <vector>

namespace {

constexpr std::string_view prefix = "svn:";

constexpr std::array itemNames{"mime-type",      "ignore",    "eol-style", "keywords",  "executable",
                               "needs-lock",     "special",   "externals", "mergeinfo", "auto-props",
                               "global-ignores", "text-time", "owner",     "group",     "unix-mode"};
constexpr std::array revisionNames{
    "author",    "log",           "date",           "autoversioned",        "original-date",
    "sync-lock", "sync-from-url", "sync-from-uuid", "sync-last-merged-rev", "sync-currently-copying"};

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

bool areSimilar(double similarity) { return similarity > 0.66; }

/// The known names that resemble a name, the most similar one first.
std::vector<std::string> namesLike(std::string_view name, std::span<const char* const> known)
{
    std::vector<std::pair<double, std::string>> found;
    for (const char* const candidate : known) {
        if (const double degree = similarity(name, candidate); areSimilar(degree)) {
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

/// "'svn:a', 'svn:b' or 'svn:c'"
std::string choice(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t index = 0; index < names.size(); ++index) {
        const char* const separator = index == 0 ? "" : index + 1 == names.size() ? " or " : ", ";
        text += fmt::format("{}'{}{}'", separator, prefix, names[index]);
    }
    return text;
}

[[noreturn]] void failSuggesting(const std::string& name, const std::vector<std::string>& meant)
{
    const auto begin = fmt::format("'{}' is not a valid {} property name; ", name, prefix);
    if (meant.empty()) {
        fail(PropertyName, begin + "use '--force' to set it");
    }
    fail(PropertyName, fmt::format("Use '--force' to set the '{}' property.", name),
         failure(PropertyName, fmt::format("{}did you mean {}?", begin, choice(meant))));
}

bool isPropertyName(std::string_view name)
{
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ:_";
    constexpr std::string_view further = "0123456789-.";
    return !name.empty() && letters.find(name.front()) != std::string_view::npos &&
           std::all_of(name.begin(), name.end(), [&](char character) {
               return letters.find(character) != std::string_view::npos ||
                      further.find(character) != std::string_view::npos;
           });
}

} // namespace

void requirePropertyName(const std::string& name)
{
    if (!isPropertyName(name)) {
        fail(PropertyName, fmt::format("'{}' is not a valid Subversion property name", name));
    }
}

void requireKnownPropertyName(const std::string& name, bool isOfRevision)
{
    const auto known =
        isOfRevision ? std::span<const char* const>{revisionNames} : std::span<const char* const>{itemNames};
    const bool hasPrefix = name.starts_with(prefix);
    // A prefix of the same length may be a misspelled one; then the rest must be right.
    const bool isMisspelled = !hasPrefix && name.find(':') == prefix.size() - 1 &&
                              areSimilar(similarity(name.substr(0, prefix.size()), prefix));
    if (!hasPrefix && !isMisspelled) {
        return;
    }
    const std::string rest = name.substr(prefix.size());
    const bool isKnown = std::find(known.begin(), known.end(), rest) != known.end();
    if (hasPrefix && !isKnown) {
        failSuggesting(name, namesLike(rest, known));
    }
    if (isMisspelled && isKnown) {
        failSuggesting(name, {rest});
    }
}

bool isBooleanProperty(std::string_view name)
{
    return name == "svn:executable" || name == "svn:needs-lock" || name == "svn:special";
}

bool looksLikeOff(std::string_view value)
{
    const auto words = split(value, "");
    std::string word = words.empty() ? "" : words.front();
    std::transform(word.begin(), word.end(), word.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    constexpr std::array offs{"", "no", "off", "false", "0"};
    return std::find(offs.begin(), offs.end(), word) != offs.end();
}
