#pragma once

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

} // namespace HSVNAdapter
