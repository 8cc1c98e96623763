#pragma once

#include <string_view>

// Names of Subversion's standard properties.

inline constexpr const char* HSVNPropertyExternals =
    "svn:externals"; ///< what of other places belongs below a directory
inline constexpr const char* HSVNPropertyNeedsLock = "svn:needs-lock"; ///< a file that is read-only until it is locked
inline constexpr const char* HSVNPropertyIsExecutable = "svn:executable"; ///< a file that is a program
inline constexpr const char* HSVNPropertyMIMEType = "svn:mime-type";      ///< the type of a file
inline constexpr const char* HSVNPropertyEOLStyle = "svn:eol-style"; ///< how the lines of a file end (HSVNEndOfLine.h)
inline constexpr const char* HSVNPropertyIgnore = "svn:ignore";      ///< names to ignore in a directory, patterns
inline constexpr const char* HSVNPropertyKeywords = "svn:keywords";  ///< which keywords of a file are filled in

/// Whether Subversion lets a property have that name: ASCII letters, digits and ":_-.", not a digit, "-" or "." first.
inline constexpr bool HSVNIsPropertyName(std::string_view name)
{
    constexpr std::string_view first = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ:_";
    constexpr std::string_view further = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ:_0123456789-.";
    return !name.empty() && first.find(name.front()) != std::string_view::npos &&
           name.find_first_not_of(further) == std::string_view::npos;
}
