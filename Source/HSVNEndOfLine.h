#pragma once

#include <optional>
#include <string>

// Styles of line ends, as the property svn:eol-style and exports name them. They are never destroyed: an application's
// static objects may use them in their destructors.

/// No style: the file's own line ends.
inline const std::optional<std::string>& HSVNEndOfLineDefault = *new std::optional<std::string>{};
/// The system's line ends.
inline const std::optional<std::string>& HSVNEndOfLineNative = *new std::optional<std::string>{"native"};
/// CR LF in every working copy.
inline const std::optional<std::string>& HSVNEndOfLineCRLF = *new std::optional<std::string>{"CRLF"};
/// CR in every working copy.
inline const std::optional<std::string>& HSVNEndOfLineCR = *new std::optional<std::string>{"CR"};
/// LF in every working copy.
inline const std::optional<std::string>& HSVNEndOfLineLF = *new std::optional<std::string>{"LF"};
