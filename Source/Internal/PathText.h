#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

/// The texts of paths and URLs: their components, the home directory's "~" and percent escapes.
namespace HSVNPathText {

/// Throws an HSVNInvalidArgumentException that quotes the text unless it is UTF-8 without a NUL in it.
void requireText(std::string_view text);

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
/// The bytes with every escape decoded.
std::string percentDecodedBytes(std::string_view text);
/// The text with escapes decoded, those left that are no UTF-8 or a NUL.
std::string percentDecoded(std::string_view text);

} // namespace HSVNPathText

/// The order of Subversion's sorted paths: what lies in a directory comes right after it.
inline bool HSVNIsPathBefore(std::string_view a, std::string_view b)
{
    const auto weight = [](char character) { return character == '/' ? 0 : static_cast<unsigned char>(character); };
    const auto [x, y] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return y != b.end() && (x == a.end() || weight(*x) < weight(*y));
}
