#pragma once

/// Names of Subversion's standard properties.
inline constexpr const char* HSVNPropertyExternals = "svn:externals";
inline constexpr const char* HSVNPropertyNeedsLock = "svn:needs-lock";
inline constexpr const char* HSVNPropertyIsExecutable = "svn:executable";
inline constexpr const char* HSVNPropertyMIMEType = "svn:mime-type";
inline constexpr const char* HSVNPropertyEOLStyle = "svn:eol-style";
inline constexpr const char* HSVNPropertyIgnore = "svn:ignore";
inline constexpr const char* HSVNPropertyKeywords = "svn:keywords";
