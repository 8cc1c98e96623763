#pragma once

#include "HSVNExport.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

/// Conversions between the texts of Subversion's standard properties and lists. Texts are UTF-8.
namespace HSVNString {

/// The pieces of a text between any of the characters in `chars`, white space kept; empty pieces are left out.
///
/// @throws HSVNInvalidArgumentException when no bundle is loaded
/// Stands for svn_cstring_split of the newest loaded bundle.
HSVN_EXPORT std::vector<std::string> splitOnCharactersInString(const std::string& text, const std::string& chars);

/// The patterns of an ignore text: its pieces between line feeds, carriage returns, tabs and vertical tabs, without
/// white space at either end, empty ones left out. Blanks do not separate.
HSVN_EXPORT std::vector<std::string> ignoreListValue(const std::string& text);

/// The ignore text of a list: each pattern where it occurs first, empty ones left out, one a line without a line feed
/// after the last; nil for nil.
HSVN_EXPORT std::optional<std::string> stringFromIgnoreList(const std::optional<std::vector<std::string>>& patterns);
/// The same of patterns that are written out, none null ("pattern != NULL"); nil for none.
HSVN_EXPORT std::optional<std::string> stringFromIgnoreList(std::initializer_list<const char*> patterns);

/// The keywords of a text: its pieces at every single blank, empty ones kept.
HSVN_EXPORT std::vector<std::string> keywordListValue(const std::string& text);

/// The keywords in order, each after the first with a blank before it.
HSVN_EXPORT std::string stringFromKeywordList(const std::vector<std::string>& keywords);

} // namespace HSVNString
