#include "Internal/CanonicalPath.h"

#include "HSVNException.h"
#include "HSVNLocalPath.h"
#include "Internal/PathKind.h"

#include <filesystem>
#include <fmt/format.h>
#include <system_error>

void HSVNRequireLocalPath(const HSVNPathRef& path)
{
    if (HSVNIsURL(path)) {
        throw HSVNException(fmt::format("'{}' is not a local path", path->string()));
    }
}

HSVNLocalPathRef HSVNCanonicalLocalPath(const HSVNPathRef& path)
{
    HSVNRequireLocalPath(path);
    std::error_code error;
    auto text = std::filesystem::absolute(path->string(), error).lexically_normal().string();
    if (error) {
        HSVNException::exceptionWithReason(
            fmt::format("Cannot tell what '{}' is relative to: {}", path->string(), error.message()), error.value())
            ->raise();
    }
    while (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    return HSVNLocalPath::pathWithString(text);
}
