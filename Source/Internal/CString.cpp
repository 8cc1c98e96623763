#include "Internal/CString.h"

#include "HSVNPlatformException.h"
#include "Internal/Characters.h"

#include <fmt/format.h>

const char* HSVNCString(const std::string& text)
{
    if (text.find('\0') != std::string::npos) {
        throw HSVNInvalidArgumentException(fmt::format("\"{}\" has a NUL character in it", HSVNText::quoted(text)));
    }
    return text.c_str();
}
