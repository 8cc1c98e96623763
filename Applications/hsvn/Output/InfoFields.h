#pragma once

#include <HSVN/HSVN.h>

#include <optional>
#include <string>

// Fields of an item as `info` shows them in every form.

/// The item's path relative to the current folder, or what Subversion calls a URL's item.
std::string shownTarget(const HSVNItemInfo& info);
/// The URL below the repository's root, as "^/trunk/f"; nil when one of the two is unknown.
std::optional<std::string> relativeURL(const HSVNItemInfo& info);
/// An absolute path relative to the current folder.
std::optional<std::string> relativePathOf(const std::optional<std::string>& absolute);
/// A revision number, or nil for none.
std::optional<std::string> textOf(HSVNRevisionNumber revision);
