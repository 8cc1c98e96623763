#include "HSVNStringPaths.h"

#include "HSVNPlatformException.h"
#include "Internal/Characters.h"
#include "Internal/Pool.h"
#include "Internal/Unicode.h"

#include <cstring>

std::string HSVNString::stringWithSVNString(const svn_string_t* string)
{
    HSVNAssertParameter(string != nullptr, "string != NULL");
    return {string->data, string->len};
}

svn_string_t* HSVNString::SVNStringUsingPool(const std::string& text, apr_pool_t* pool)
{
    const HSVNBundleEntryPoints& entryPoints = HSVNCurrentEntryPoints();
    HSVNAssertParameter(pool != nullptr, "pool != NULL");
    if (text.find('\0') == std::string::npos) {
        return entryPoints.string_create(text.c_str(), pool);
    }
    // Made from a C string, it would end at the first NUL.
    auto* const data = static_cast<char*>(entryPoints.apr_palloc(pool, text.size() + 1));
    std::memcpy(data, text.c_str(), text.size() + 1);
    auto* const counted = static_cast<svn_string_t*>(entryPoints.apr_palloc(pool, sizeof(svn_string_t)));
    counted->data = data;
    counted->len = text.size();
    return counted;
}

std::string HSVNString::stringByURLEncodingSpaces(std::string_view text)
{
    return stringByReplacingCharactersInSet(text, " ", "%20");
}

std::string HSVNString::stringByReplacingCharactersInSet(std::string_view text, std::string_view set,
                                                         std::string_view replacement)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto character = HSVNText::prefix(text, 1);
        result += set.find(character) == std::string_view::npos ? character : replacement;
        text.remove_prefix(character.size());
    }
    return result;
}

std::optional<std::string> HSVNString::plainASCIIString(std::string_view text)
{
    return HSVNText::isWellFormed(text) ? std::optional{HSVNUnicode::shared().plainForm(text)} : std::nullopt;
}

std::string HSVNString::stringForSearching(std::string_view text)
{
    return HSVNText::isWellFormed(text) ? HSVNText::searchForm(text) : std::string{text};
}
