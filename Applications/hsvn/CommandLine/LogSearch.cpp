#include "CommandLine/LogSearch.h"

#include <HSVN/HSVN.h>

#include <algorithm>
#include <utility>

LogSearch::LogSearch(std::vector<std::vector<std::string>> groups) : _groups{std::move(groups)}
{
    for (auto& group : _groups) {
        for (auto& pattern : group) {
            pattern = "*" + HSVNString::stringForSearching(pattern) + "*";
        }
    }
}

bool LogSearch::finds(const std::vector<std::string>& texts) const
{
    std::vector<std::string> forms;
    std::transform(texts.begin(), texts.end(), std::back_inserter(forms), HSVNString::stringForSearching);
    const auto isFound = [&](const std::string& pattern) {
        return std::any_of(forms.begin(), forms.end(),
                           [&](const std::string& text) { return HSVNString::matchesPatternInArray(text, {pattern}); });
    };
    return std::any_of(_groups.begin(), _groups.end(), [&](const std::vector<std::string>& group) {
        return std::all_of(group.begin(), group.end(), isFound);
    });
}
