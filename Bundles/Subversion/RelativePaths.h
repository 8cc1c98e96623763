#pragma once

#include <algorithm>
#include <string_view>

namespace HSVNAdapter {

/// Whether a text is relative, without empty names and those that lead elsewhere; "" is.
inline bool isRelativePath(std::string_view text)
{
    if (text.find('\0') != std::string_view::npos || text.ends_with('/')) {
        return false;
    }
    while (!text.empty()) {
        const auto name = text.substr(0, text.find('/'));
        if (name.empty() || name == "." || name == "..") {
            return false;
        }
        text.remove_prefix(name.size() < text.size() ? name.size() + 1 : name.size());
    }
    return true;
}

/// Whether a path comes above where it begins: "a/../../b" does, "a/../b" does not.
inline bool leadsAbove(std::string_view path)
{
    int depth = 0;
    while (!path.empty() && depth >= 0) {
        const auto name = path.substr(0, path.find('/'));
        depth += name == ".." ? -1 : 1;
        path.remove_prefix(std::min(name.size() + 1, path.size()));
    }
    return depth < 0;
}

} // namespace HSVNAdapter
