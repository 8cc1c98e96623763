#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Text between the user's locale and UTF-8, as Subversion converts it.
namespace NativeText {

/// An argument or a file's text as UTF-8.
///
/// @throws HSVNException, status 22, for bytes that the locale's encoding does not have
std::string toUTF8(std::string_view native);

/// Text of a named encoding as UTF-8, of the locale's for nil.
///
/// @throws HSVNException, status 22, for bytes that the encoding does not have, or bytes outside ASCII of an encoding
///         that the system does not know
std::string toUTF8(std::string_view text, const std::optional<std::string>& encoding);
/// UTF-8 in a named encoding, of the locale's for nil.
///
/// @throws as `toUTF8`
std::string fromUTF8(std::string_view text, const std::optional<std::string>& encoding);

/// UTF-8 as the locale writes it; what has characters that the locale lacks, or is no text, is approximated.
std::string fromUTF8(std::string_view text);
/// UTF-8 as it is; what is no text is approximated.
std::string wellFormed(std::string_view text);
/// UTF-8 as the locale writes it; what has characters that the locale lacks, or is no text, is refused.
///
/// @throws HSVNException, status 22
std::string exactlyFromUTF8(std::string_view text);

/// Name of the locale's encoding.
const char* localeEncoding();

/// Whether no character needs a conversion.
bool isASCII(std::string_view text);

/// Number of columns that UTF-8 text takes on a terminal.
std::size_t width(std::string_view text);

} // namespace NativeText
