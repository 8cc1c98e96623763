#pragma once

#include <string>

/// A text as Subversion takes it, which ends at its first NUL; as long-lived as the text.
///
/// @throws HSVNInvalidArgumentException that quotes a text with a NUL in it: what it stands before would be used
/// instead
const char* HSVNCString(const std::string& text);
