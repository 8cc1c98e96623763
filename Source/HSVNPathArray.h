#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"

#include <string>
#include <vector>

class HSVNParsedURL;

/// Conversions of lists of paths. Each makes a new array in the order of the given one unless it says otherwise; paths
/// must not be nil ("path != nil").
namespace HSVNArray {

/// Local paths and URLs, none nil.
using Paths = std::vector<HSVNPathRef>;

/// Every `string`.
HSVN_EXPORT std::vector<std::string> arrayWithStringsOfPaths(const Paths& paths);
/// `HSVNPath::pathWithString` of every text.
HSVN_EXPORT Paths arrayWithPathsForStrings(const std::vector<std::string>& strings);
/// The parts of every path's URL, its scheme as it is.
///
/// @throws HSVNInvalidArgumentException for a URL whose scheme RFC 3986 does not allow
HSVN_EXPORT std::vector<HSVNParsedURL> arrayWithNSURLsForPaths(const Paths& paths);
/// Every `lastComponent`.
HSVN_EXPORT std::vector<std::string> arrayWithLastPathComponents(const Paths& paths);
/// Every `denormalizedLastComponent`.
HSVN_EXPORT std::vector<std::string> arrayWithDenormalizedLastPathComponents(const Paths& paths);
/// The URLs of the servers (`hostAndScheme`) that the paths' URLs are on, each once, in no particular order.
HSVN_EXPORT std::vector<HSVNURLRef> arrayWithUniqueHostURLsOfPaths(const Paths& paths);
/// Every `canonicalize`.
HSVN_EXPORT Paths arrayWithCanonicalPaths(const Paths& paths);
/// Every `stripUser`.
HSVN_EXPORT Paths arrayWithPathsStrippedOfUsers(const Paths& paths);

} // namespace HSVNArray
