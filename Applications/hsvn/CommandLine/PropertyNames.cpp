#include "CommandLine/PropertyNames.h"

#include "CommandLine/Errors.h"
#include "CommandLine/Similarity.h"
#include "CommandLine/TextFiles.h"

#include <HSVN/HSVN.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <fmt/format.h>
#include <span>
#include <vector>

namespace {

constexpr std::string_view reservedPrefix = "svn:";

constexpr std::array itemNames{"mime-type",      "ignore",    "eol-style", "keywords",  "executable",
                               "needs-lock",     "special",   "externals", "mergeinfo", "auto-props",
                               "global-ignores", "text-time", "owner",     "group",     "unix-mode"};
constexpr std::array revisionNames{
    "author",    "log",           "date",           "autoversioned",        "original-date",
    "sync-lock", "sync-from-url", "sync-from-uuid", "sync-last-merged-rev", "sync-currently-copying"};

[[noreturn]] void failSuggesting(const std::string& name, const std::vector<std::string>& meant, const char* verb)
{
    const auto begin = fmt::format("'{}' is not a valid {} property name; ", name, reservedPrefix);
    if (meant.empty()) {
        fail(PropertyName, begin + fmt::format("use '--force' to {} it", verb));
    }
    fail(PropertyName, fmt::format("Use '--force' to {} the '{}' property.", verb, name),
         failure(PropertyName, fmt::format("{}did you mean {}?", begin, choiceOf(meant, reservedPrefix))));
}

} // namespace

void requirePropertyName(const std::string& name)
{
    if (!HSVNIsPropertyName(name)) {
        fail(PropertyName, fmt::format("'{}' is not a valid Subversion property name", name));
    }
}

void requireKnownPropertyName(const std::string& name, bool isOfRevision, const char* verb)
{
    const auto known =
        isOfRevision ? std::span<const char* const>{revisionNames} : std::span<const char* const>{itemNames};
    const bool hasPrefix = name.starts_with(reservedPrefix);
    // A prefix of the same length may be a misspelled one; then the rest must be right.
    const bool isMisspelled = !hasPrefix && name.find(':') == reservedPrefix.size() - 1 &&
                              areSimilar(std::string_view{name}.substr(0, reservedPrefix.size()), reservedPrefix);
    if (!hasPrefix && !isMisspelled) {
        return;
    }
    const std::string rest = name.substr(reservedPrefix.size());
    const bool isKnown = std::find(known.begin(), known.end(), rest) != known.end();
    if (hasPrefix && !isKnown) {
        failSuggesting(name, namesLike(rest, known), verb);
    }
    if (isMisspelled && isKnown) {
        failSuggesting(name, {rest}, verb);
    }
}

bool isOwnProperty(std::string_view name) { return name.starts_with("svn:"); }

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
