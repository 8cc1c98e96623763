#pragma once

#include "Internal/Unicode.h"

/// The operations of HSVNUnicode on characters.
namespace UnicodeTexts {

std::size_t offsetAfterCharacter(std::string_view text, std::size_t offset);
std::string_view trimmed(std::string_view text);
std::string plainForm(std::string_view text);
std::string searchForm(std::string_view text);
HSVNUnicode::EncodedText encoded(std::string_view text, const std::string& encoding);

} // namespace UnicodeTexts
