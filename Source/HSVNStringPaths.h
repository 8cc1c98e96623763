#pragma once

#include "HSVNExport.h"

#include <optional>
#include <string>
#include <string_view>

struct apr_pool_t;
struct svn_string_t;

/// Conversions of texts where they meet Subversion and its URLs.
namespace HSVNString {

/// The bytes of a Subversion string, which must not be null ("string != NULL").
HSVN_EXPORT std::string stringWithSVNString(const svn_string_t* string);
/// A Subversion string in a pool; needs a current bundle. A text with a NUL is taken whole.
///
/// @param pool  not null ("pool != NULL")
/// Stands for svn_string_create.
HSVN_EXPORT svn_string_t* SVNStringUsingPool(const std::string& text, apr_pool_t* pool);
/// The text with every " " as "%20".
HSVN_EXPORT std::string stringByURLEncodingSpaces(std::string_view text);
/// The text with every character of a set replaced.
///
/// @param set  the characters, such as "/\\"; none leaves the text as it is
/// @param replacement  put in the place of each
HSVN_EXPORT std::string stringByReplacingCharactersInSet(std::string_view text, std::string_view set,
                                                         std::string_view replacement);
/// UTF-8 text in ASCII letters as good as they can say it: accents are dropped, dashes and single quotation marks
/// become plain ones, and any other character its number, "{U+03B1}". Nil for a text that is not UTF-8.
///
/// Stands for svn_utf_cstring_from_utf8_fuzzy.
HSVN_EXPORT std::optional<std::string> plainASCIIString(std::string_view text);
/// UTF-8 text without accents and in lower case, by which searches compare texts; ill-formed UTF-8 unchanged.
HSVN_EXPORT std::string stringForSearching(std::string_view text);

} // namespace HSVNString
