#include "HSVNCanonicalPathPrivate.h"
#include "HSVNLocalPath.h"

#include <filesystem>

HSVNLocalPathRef HSVNCanonicalLocalPath(const HSVNPathRef& path)
{
    auto text = std::filesystem::absolute(path->string()).lexically_normal().string();
    while (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    return HSVNLocalPath::pathWithString(text);
}
