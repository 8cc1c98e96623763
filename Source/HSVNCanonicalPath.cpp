#include "HSVNCanonicalPathPrivate.h"

#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "HSVNPathKindPrivate.h"

#include <filesystem>
#include <fmt/format.h>

void HSVNRequireLocalPath(const HSVNPathRef& path)
{
    if (HSVNIsURL(path)) {
        throw HSVNException(fmt::format("'{}' is not a local path", path->string()));
    }
}

HSVNLocalPathRef HSVNCanonicalLocalPath(const HSVNPathRef& path)
{
    HSVNRequireLocalPath(path);
    auto text = std::filesystem::absolute(path->string()).lexically_normal().string();
    while (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    return HSVNLocalPath::pathWithString(text);
}
