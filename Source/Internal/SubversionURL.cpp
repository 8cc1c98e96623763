#include "Internal/SubversionURL.h"

#include "HSVNURL.h"

HSVNURLRef HSVNURLWithSubversionText(const char* text)
{
    try {
        return HSVNURL::URLWithString(text);
    } catch (const HSVNPlatformException&) {
        return HSVNURL::URLEncodeString(text);
    }
}
