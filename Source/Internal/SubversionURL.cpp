#include "Internal/SubversionURL.h"

#include "HSVNURL.h"
#include "Internal/TrustedText.h"

#include <algorithm>
#include <string_view>

namespace {

bool isLowerCase(char letter) { return letter >= 'a' && letter <= 'z'; }

/// Whether no URL escapes the character, and it means nothing in one but an end of a component.
bool isPlain(char letter)
{
    return isLowerCase(letter) || (letter >= 'A' && letter <= 'Z') || (letter >= '-' && letter <= '9') ||
           letter == '_' || letter == '~'; // between '-' and '9': "./" and digits
}

/// Whether a text is plainly a URL as it is kept. Most are, and parsing each takes as long as all else that is made of
/// a commit's item.
bool isPlainURL(std::string_view text)
{
    const auto schemeEnd = text.find("://");
    return schemeEnd != 0 && schemeEnd != std::string_view::npos && !text.ends_with('/') &&
           std::ranges::all_of(text.substr(0, schemeEnd), isLowerCase) &&
           std::ranges::all_of(text.substr(schemeEnd + 3), isPlain);
}

} // namespace

HSVNURLRef HSVNURLWithSubversionText(const char* text)
{
    if (isPlainURL(text)) {
        return HSVNURLOfTrustedText(text);
    }
    try {
        return HSVNURL::URLWithString(text);
    } catch (const HSVNPlatformException&) {
        return HSVNURL::URLEncodeString(text);
    }
}
