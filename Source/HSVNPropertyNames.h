#pragma once

// Names of Subversion's standard properties.

inline constexpr const char* HSVNPropertyExternals =
    "svn:externals"; ///< what of other places belongs below a directory
inline constexpr const char* HSVNPropertyNeedsLock = "svn:needs-lock"; ///< a file that is read-only until it is locked
inline constexpr const char* HSVNPropertyIsExecutable = "svn:executable"; ///< a file that is a program
inline constexpr const char* HSVNPropertyMIMEType = "svn:mime-type";      ///< the type of a file
inline constexpr const char* HSVNPropertyEOLStyle = "svn:eol-style"; ///< how the lines of a file end (HSVNEndOfLine.h)
inline constexpr const char* HSVNPropertyIgnore = "svn:ignore";      ///< names to ignore in a directory, patterns
inline constexpr const char* HSVNPropertyKeywords = "svn:keywords";  ///< which keywords of a file are filled in
