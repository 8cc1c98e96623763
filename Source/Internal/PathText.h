#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The texts of paths and URLs: their components, the home directory's "~" and percent escapes.
namespace HSVNPathText {

/// Throws an HSVNInvalidArgumentException that quotes the text unless it is UTF-8 without a NUL in it.
void requireText(std::string_view text);

/// Where the last "/" is; npos for none. Scans ask it several times an item, and the standard search goes byte by byte.
inline std::size_t lastSlash(std::string_view text)
{
    const auto* const slash = static_cast<const char*>(::memrchr(text.data(), '/', text.size()));
    return slash == nullptr ? std::string_view::npos : static_cast<std::size_t>(slash - text.data());
}
/// The last component; "/" for a text of "/" alone. "/" at the end does not count.
std::string_view lastComponent(std::string_view path);
/// The path without its last component: "/" for /a, empty for a lone name.
std::string_view deletingLastComponent(std::string_view path);
/// The path and a component with one "/" between them.
std::string joined(std::string_view path, std::string_view component);

/// A leading "~" or "~user" replaced by the home directory; an unknown one stays.
std::string expandingTilde(std::string_view path);
/// The calling user's home directory at the start of a path replaced by "~".
std::string abbreviatingHome(std::string_view path);

/// Every byte that Subversion escapes in a URL's path escaped: all but letters, digits and -._~!$&'()*+,/:=@
std::string percentEncoded(std::string_view text);
/// Whether a text is the escaped form of another, which is not made.
bool isPercentEncoded(std::string_view escaped, std::string_view text);
/// The text with escapes decoded, those left that are no UTF-8 or a NUL.
std::string percentDecoded(std::string_view text);

/// Gives the parts of a relative path to a receiver, "." and empty ones aside, until it answers false.
template <class Receiver>
void forEachStep(std::string_view path, Receiver receiver)
{
    bool goesOn = true;
    while (!path.empty() && goesOn) {
        const auto part = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        goesOn = part.empty() || part == "." || receiver(std::string{part});
    }
}

} // namespace HSVNPathText

/// Begin with the text itself, and end with the text that has no parent: how long those are that `parentOf` answers one
/// after the other, each the beginning of the one before.
template <class ParentOf>
std::vector<std::size_t> HSVNSizesOfAncestors(std::string_view text, ParentOf parentOf)
{
    std::vector<std::size_t> sizes{text.size()};
    while (const std::optional<std::string_view> parent = parentOf(text.substr(0, sizes.back()))) {
        sizes.push_back(parent->size());
    }
    return sizes;
}

/// The order of Subversion's sorted paths: what lies in a directory comes right after it.
inline bool HSVNIsPathBefore(std::string_view a, std::string_view b)
{
    const auto weight = [](char character) { return character == '/' ? 0 : static_cast<unsigned char>(character); };
    const auto [x, y] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return y != b.end() && (x == a.end() || weight(*x) < weight(*y));
}
