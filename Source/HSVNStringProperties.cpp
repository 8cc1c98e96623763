#include "HSVNStringProperties.h"

#include "HSVNBundleLoader.h"
#include "HSVNPlatformException.h"
#include "Internal/Characters.h"
#include "Internal/Pool.h"

#include <algorithm>
#include <unordered_set>

namespace HSVNString {

std::vector<std::string> splitOnCharactersInString(const std::string& text, const std::string& chars)
{
    const HSVNBundleScope scope{HSVNBundleLoader::sharedInstance().newestBundle()};
    const HSVNPool pool;
    const apr_array_header_t* const pieces =
        HSVNCurrentEntryPoints().cstring_split(text.c_str(), chars.c_str(), false, pool);
    const auto* const first = reinterpret_cast<const char* const*>(pieces->elts);
    return {first, first + pieces->nelts};
}

std::vector<std::string> ignoreListValue(const std::string& text)
{
    std::vector<std::string> patterns;
    for (const auto piece : HSVNText::split(text, "\n\r\t\v")) {
        if (const auto pattern = HSVNText::trimmed(piece); !pattern.empty()) {
            patterns.emplace_back(pattern);
        }
    }
    return patterns;
}

std::optional<std::string> stringFromIgnoreList(const std::optional<std::vector<std::string>>& patterns)
{
    if (!patterns) {
        return std::nullopt;
    }
    std::string text;
    std::unordered_set<std::string_view> written;
    for (const auto& pattern : *patterns) {
        if (!pattern.empty() && written.insert(pattern).second) {
            text += (text.empty() ? "" : "\n") + pattern;
        }
    }
    return text;
}

std::optional<std::string> stringFromIgnoreList(std::initializer_list<const char*> patterns)
{
    HSVNAssertParameter(std::ranges::all_of(patterns, [](const char* pattern) { return pattern != nullptr; }),
                        "pattern != NULL");
    return patterns.size() == 0 ? std::nullopt
                                : stringFromIgnoreList(std::vector<std::string>(patterns.begin(), patterns.end()));
}

std::vector<std::string> keywordListValue(const std::string& text)
{
    const auto pieces = HSVNText::split(text, " ");
    return {pieces.begin(), pieces.end()};
}

std::string stringFromKeywordList(const std::vector<std::string>& keywords)
{
    std::string text;
    for (const auto& keyword : keywords) {
        text += (text.empty() ? "" : " ") + keyword;
    }
    return text;
}

} // namespace HSVNString
