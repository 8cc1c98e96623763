#include "HSVNStringPaths.h"

#include "HSVNPlatformException.h"
#include "HSVNPoolPrivate.h"

#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <cstdint>

std::string HSVNString::stringWithSVNString(const svn_string_t* string)
{
    HSVNAssertParameter(string != nullptr, "string != NULL");
    return {string->data, string->len};
}

svn_string_t* HSVNString::SVNStringUsingPool(const std::string& text, apr_pool_t* pool)
{
    return HSVNCurrentEntryPoints().string_create(text.c_str(), pool);
}

std::string HSVNString::stringByURLEncodingSpaces(std::string_view text)
{
    return stringByReplacingCharactersInSet(text, " ", "%20");
}

std::string HSVNString::stringByReplacingCharactersInSet(std::string_view text, std::string_view set,
                                                         std::string_view replacement)
{
    icu::UnicodeSet members;
    members.addAll(icu::UnicodeString::fromUTF8(icu::StringPiece{set.data(), static_cast<std::int32_t>(set.size())}));
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto size = static_cast<std::int64_t>(text.size());
    std::string result;
    result.reserve(text.size());
    for (std::int64_t offset = 0; offset < size;) {
        const std::int64_t start = offset;
        UChar32 character = 0;
        U8_NEXT(bytes, offset, size, character);
        const bool isMember = character >= 0 && members.contains(character);
        result += isMember ? replacement
                           : text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(offset - start));
    }
    return result;
}
