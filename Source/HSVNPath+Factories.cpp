#include "HSVNLocalPath.h"
#include "HSVNURL.h"

namespace {

bool isURLText(const std::string& text) { return text.find("://") != std::string::npos; }

} // namespace

HSVNPathRef HSVNPath::pathWithString(const std::string& string)
{
    if (isURLText(string)) {
        return HSVNURL::URLWithString(string);
    }
    return HSVNLocalPath::pathWithString(string);
}

HSVNPathRef HSVNPath::pathWithDenormalizedString(const std::string& string)
{
    if (isURLText(string)) {
        return HSVNURL::URLEncodeString(string);
    }
    return HSVNLocalPath::pathWithString(string);
}
