#pragma once

#include <optional>
#include <string>

// Styles of line ends, as the property svn:eol-style and exports name them.

/// No style: the file's own line ends.
inline const std::optional<std::string> HSVNEndOfLineDefault = std::nullopt;
inline const std::optional<std::string> HSVNEndOfLineNative = "native";
inline const std::optional<std::string> HSVNEndOfLineCRLF = "CRLF";
inline const std::optional<std::string> HSVNEndOfLineCR = "CR";
inline const std::optional<std::string> HSVNEndOfLineLF = "LF";
