#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

/// Properties by name; values are bytes, which for names that begin with "svn:" are UTF-8 text.
using HSVNPropertyMap = std::map<std::string, std::string>;

/// The properties of one item.
struct HSVNItemProperties
{
    /// As the target was given, relative targets relative where the line can; a URL's item as a URL.
    std::string path{};
    HSVNPropertyMap properties{}; ///< of the item itself
    /// What directories above the item set, the topmost first: each one's path or URL, and its properties.
    std::vector<std::pair<std::string, HSVNPropertyMap>> inherited{};
};

/// One property of several items.
struct HSVNPropertyValues
{
    std::vector<std::pair<std::string, std::string>> values{};        ///< absolute path or URL and value, by path
    std::vector<std::pair<std::string, HSVNPropertyMap>> inherited{}; ///< as in `HSVNItemProperties`
};
